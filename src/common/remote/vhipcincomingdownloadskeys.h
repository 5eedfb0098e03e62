#pragma once

#include <QString>

/// The keys and values in messages of the part "incomingDownloads", besides VhIpcKeys; for both
/// ends.
namespace VhIpcIncomingDownloadsKeys {
inline QString partName() { return QStringLiteral("incomingDownloads"); }

/// From the client: a job, with its id.
inline QString addReason() { return QStringLiteral("add"); }
inline QString request() { return QStringLiteral("request"); }

/// The answer, with the id of the job.
inline QString finishedReason() { return QStringLiteral("finished"); }
inline QString added() { return QStringLiteral("added"); }
inline QString aborted() { return QStringLiteral("aborted"); }
inline QString abortReason() { return QStringLiteral("abortReason"); }
inline QString error() { return QStringLiteral("error"); }
inline QString isSilent() { return QStringLiteral("isSilent"); }
} // namespace VhIpcIncomingDownloadsKeys
