#pragma once

#include <QString>

/// The keys and values that are common to the messages of several parts of the link.
namespace VhIpcKeys {
/// The name of the message's part.
inline QString name() { return QStringLiteral("name"); }
/// The kind of message.
inline QString reason() { return QStringLiteral("reason"); }
inline QString id() { return QStringLiteral("id"); }
} // namespace VhIpcKeys
