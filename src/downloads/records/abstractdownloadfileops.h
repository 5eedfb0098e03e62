#pragma once

#include <QString>

namespace AbstractDownloadFileOps {

/// How to prepare a file on disk before a download writes to it.
struct FileInitializeOperation {
    QString path;
    /// The size to reserve in bytes; -1 if it is not known.
    qint64 size = -1;
    /// Fill the reserved space with zeros instead of leaving the file sparse.
    bool allocate = false;

    bool operator==(const FileInitializeOperation &) const = default;
};

} // namespace AbstractDownloadFileOps
