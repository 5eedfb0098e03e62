#pragma once

#include <QString>

/// The keys and values that the messages of several parts of the link have in common.
namespace VhIpcKeys {
/// Names the part that a message belongs to.
inline QString name() { return QStringLiteral("name"); }
/// What the message is about.
inline QString reason() { return QStringLiteral("reason"); }
inline QString id() { return QStringLiteral("id"); }
} // namespace VhIpcKeys
