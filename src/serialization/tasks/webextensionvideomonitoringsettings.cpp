#include "webextensionvideomonitoringsettings.h"

#include "pmxoptionalmembers.h"

bool WebExtensionVideoMonitoringSettings::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    return pmxSerializeOptionalBools(stream,
                                     {{"enable", &enable},
                                      {"enableSnifferDll", &enableSnifferDll},
                                      {"showButton", &showButton}});
}

bool WebExtensionVideoMonitoringSettings::operator==(
    const WebExtensionVideoMonitoringSettings &other) const
{
    return enable == other.enable && enableSnifferDll == other.enableSnifferDll
        && showButton == other.showButton;
}
