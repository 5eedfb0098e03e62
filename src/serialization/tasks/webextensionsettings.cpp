#include "webextensionsettings.h"

#include "pmxoptionalmembers.h"
#include "pmxserializationiostream.h"

bool WebExtensionSettings::Serialize(pmxSerializationIoStream *stream, unsigned int flags)
{
    return pmxSerializeOptionalRecord(stream, "browser", browser, flags)
        && stream->SerializeValue("locale", locale, false);
}

bool WebExtensionSettings::operator==(const WebExtensionSettings &other) const
{
    return browser == other.browser && locale == other.locale;
}
