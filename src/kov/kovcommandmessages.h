#pragma once

#include <QString>

/// The messages of "kov add …" and the like: a part of the link of their own.
namespace KovCommandMessages {
inline QString partName() { return QStringLiteral("kovCommands"); }

/// To the application, with the words of the command line.
inline QString runReason() { return QStringLiteral("run"); }
inline QString arguments() { return QStringLiteral("arguments"); }

/// The answer.
inline QString doneReason() { return QStringLiteral("done"); }
inline QString exitCode() { return QStringLiteral("exitCode"); }
inline QString output() { return QStringLiteral("output"); }

/// The members of a download in the JSON array that answers "jobs".
namespace JobKeys {
inline QString id() { return QStringLiteral("id"); }
/// See stateName().
inline QString state() { return QStringLiteral("state"); }
inline QString url() { return QStringLiteral("url"); }
/// Where the file is or will be; empty while that is not known.
inline QString path() { return QStringLiteral("path"); }
inline QString partialPath() { return QStringLiteral("partialPath"); }
inline QString receivedBytes() { return QStringLiteral("receivedBytes"); }
/// -1 while unknown.
inline QString totalBytes() { return QStringLiteral("totalBytes"); }
/// Whole percents; -1 while unknown.
inline QString percent() { return QStringLiteral("percent"); }
/// In bytes per second; 0 when it is not running.
inline QString speed() { return QStringLiteral("bytesPerSecond"); }
/// -1 while unknown.
inline QString secondsLeft() { return QStringLiteral("secondsLeft"); }
inline QString connections() { return QStringLiteral("connections"); }
/// Consecutive attempts without progress.
inline QString attempts() { return QStringLiteral("attempts"); }
/// Until the next attempt; -1 when none is scheduled.
inline QString retryInSeconds() { return QStringLiteral("retryInSeconds"); }
inline QString error() { return QStringLiteral("error"); }
/// ISO 8601, or empty.
inline QString added() { return QStringLiteral("added"); }
inline QString finished() { return QStringLiteral("finished"); }
} // namespace JobKeys
} // namespace KovCommandMessages
