#pragma once

#include "pmxkovbhipctaskresponse.h"
#include "webextensionsettings.h"

#include <memory>

/**
 * The extension settings.
 *
 * The record is shared with its owner, so that the answer has the settings at the time when it is
 * written. Reading creates a separate record.
 */
class pmxKovBhIpcQuerySettingsTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    /// Not set: the defaults.
    std::shared_ptr<const WebExtensionSettings> settings;
};
