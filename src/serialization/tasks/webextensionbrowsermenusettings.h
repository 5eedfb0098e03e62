#pragma once

#include "pmxmembers.h"
#include "pmxserializable.h"

#include <tuple>

/// Which context-menu entries the extension shows.
class WebExtensionBrowserMenuSettings : public pmxSerializable {
public:
    /// Without dlvideo: a change of that alone does not count as one.
    bool operator==(const WebExtensionBrowserMenuSettings &other) const
    {
        return pmxEqualMembers(*this, other);
    }

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return pmxSerializeMembers(stream, *this, flags);
    }

    bool dllink = true;
    bool dlall = true;
    bool dlselected = true;
    bool dlvideo = true;
    bool dlpage = false;
    bool dlYtChannel = true;

    static constexpr auto members()
    {
        using Record = WebExtensionBrowserMenuSettings;
        return std::tuple(pmxMember("dllink", &Record::dllink), pmxMember("dlall", &Record::dlall),
                          pmxMember("dlselected", &Record::dlselected),
                          pmxMember("dlvideo", &Record::dlvideo).notCompared(),
                          pmxMember("dlpage", &Record::dlpage),
                          pmxMember("dlYtChannel", &Record::dlYtChannel));
    }
};
