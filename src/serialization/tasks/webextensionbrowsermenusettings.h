#pragma once

#include "pmxserializable.h"

/// Which context-menu entries the extension shows.
class WebExtensionBrowserMenuSettings : public pmxSerializable {
public:
    /// Without dlvideo: a change of that alone does not count as one.
    bool operator==(const WebExtensionBrowserMenuSettings &other) const;

    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    bool dllink = true;
    bool dlall = true;
    bool dlselected = true;
    bool dlvideo = true;
    bool dlpage = false;
    bool dlYtChannel = true;
};
