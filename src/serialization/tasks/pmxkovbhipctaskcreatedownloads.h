#pragma once

#include "pmxkovbhipcdownloadinfo.h"
#include "pmxoptionalmembers.h"
#include "pmxserializable.h"
#include "pmxserializablesharedobjvector.h"

/// Downloads for the application.
class pmxKovBhIpcTaskCreateDownloads : public pmxSerializable {
public:
    bool Serialize(pmxSerializationIoStream *stream, unsigned int flags) override
    {
        return pmxSerializeOptionalRecord(stream, "downloads", downloads, flags)
            && pmxSerializeOptionalTextBools(stream,
                                             {{"catchedDownloads", &catchedDownloads},
                                              {"waitResponse", &waitResponse},
                                              {"ignoreSettings", &ignoreSettings}});
    }

    pmxSerializableSharedObjVector<pmxKovBhIpcDownloadInfo> downloads;
    /// The extension caught them in the browser; otherwise the user picked them.
    bool catchedDownloads = false;
    bool waitResponse = false;
    /// The capture rules do not apply.
    bool ignoreSettings = false;
};
