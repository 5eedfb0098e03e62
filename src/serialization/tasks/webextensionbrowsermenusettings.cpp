#include "webextensionbrowsermenusettings.h"

#include "pmxoptionalmembers.h"

bool WebExtensionBrowserMenuSettings::Serialize(pmxSerializationIoStream *stream, unsigned int)
{
    return pmxSerializeOptionalBools(stream,
                                     {{"dllink", &dllink},
                                      {"dlall", &dlall},
                                      {"dlselected", &dlselected},
                                      {"dlvideo", &dlvideo},
                                      {"dlpage", &dlpage},
                                      {"dlYtChannel", &dlYtChannel}});
}

bool WebExtensionBrowserMenuSettings::operator==(const WebExtensionBrowserMenuSettings &other) const
{
    return dllink == other.dllink && dlall == other.dlall && dlselected == other.dlselected
        && dlpage == other.dlpage && dlYtChannel == other.dlYtChannel;
}
