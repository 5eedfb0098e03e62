#pragma once

#include "pmxkovbhipcdownloadinfo.h"
#include "pmxserializable.h"
#include "pmxserializablesharedobjvector.h"

/// Downloads that the application is to make.
class pmxKovBhIpcTaskCreateDownloads : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override;

    pmxSerializableSharedObjVector<pmxKovBhIpcDownloadInfo> downloads;
    /// The browser was about to make them; otherwise the user asked for them.
    bool catchedDownloads = false;
    bool waitResponse = false;
    /// The capture rules do not apply.
    bool ignoreSettings = false;
};
