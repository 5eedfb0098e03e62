#include "pmxkovbhipcquerysettingstaskresponse.h"

#include "pmxserializationiostream.h"

bool pmxKovBhIpcQuerySettingsTaskResponse::Serialize(pmxSerializationIoStream *stream,
                                                     unsigned int flags)
{
    const auto node = stream->SelectOrCreateNode("settings", false);
    if (!node)
        return false;
    // The owner's record is const; Serialize() could also read into it.
    auto record = std::make_shared<WebExtensionSettings>();
    if (settings && !stream->isReading())
        *record = *settings;
    if (!record->Serialize(node.get(), flags))
        return false;
    if (stream->isReading())
        settings = record;
    return pmxKovBhIpcTaskResponse::Serialize(stream, flags);
}
