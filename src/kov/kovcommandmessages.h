#pragma once

#include <QString>

/// How "kov set …" and the like reach the running application: a part of the link of their own.
namespace KovCommandMessages {
inline QString partName() { return QStringLiteral("kovCommands"); }

/// To the application, with the words of the command line.
inline QString runReason() { return QStringLiteral("run"); }
inline QString arguments() { return QStringLiteral("arguments"); }

/// The answer.
inline QString doneReason() { return QStringLiteral("done"); }
inline QString exitCode() { return QStringLiteral("exitCode"); }
inline QString output() { return QStringLiteral("output"); }
} // namespace KovCommandMessages
