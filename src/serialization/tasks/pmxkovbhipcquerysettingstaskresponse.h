#pragma once

#include "pmxkovbhipctaskresponse.h"
#include "webextensionsettings.h"

#include <memory>

/**
 * The extension settings.
 *
 * The record is shared with its owner, so that the answer says what holds when it is written.
 * Reading makes a record of its own.
 */
class pmxKovBhIpcQuerySettingsTaskResponse : public pmxKovBhIpcTaskResponse {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    /// Not set: the defaults.
    std::shared_ptr<const WebExtensionSettings> settings;
};
