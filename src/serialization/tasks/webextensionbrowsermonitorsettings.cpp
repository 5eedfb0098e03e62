#include "webextensionbrowsermonitorsettings.h"

#include "pmxoptionalmembers.h"
#include "pmxserializationiostream.h"

bool WebExtensionBrowserMonitorSettings::Serialize(pmxSerializationIoStream *stream,
                                                   unsigned int flags)
{
    return pmxSerializeOptionalRecord(stream, "video", video, flags)
        && pmxSerializeOptionalBools(stream,
                                     {{"enable", &enable}, {"allowDownload", &allowDownload}})
        && stream->SerializeValueS("skipSmallerThan", skipSmallerThan, false)
        && stream->SerializeValue("skipExtensions", skipExtensions, false)
        && stream->SerializeBoolValue("skipServersEnabled", skipServersEnabled, false)
        && stream->SerializeValue("skipServers", skipServers, false)
        && stream->SerializeBoolValue("skipIfKeyPressed", skipIfKeyPressed, false);
}

bool WebExtensionBrowserMonitorSettings::operator==(
    const WebExtensionBrowserMonitorSettings &other) const
{
    return video == other.video && enable == other.enable && allowDownload == other.allowDownload
        && skipSmallerThan == other.skipSmallerThan && skipExtensions == other.skipExtensions
        && skipServersEnabled == other.skipServersEnabled && skipServers == other.skipServers
        && skipIfKeyPressed == other.skipIfKeyPressed;
}
