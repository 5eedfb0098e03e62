#pragma once

/// Limits for received messages. Legitimate messages stay far below them.
namespace VhBodyLimits {
/// Nesting of lists and maps, the message itself being the first level. Decoding is recursive, and
/// the stack is finite.
constexpr int maxDepth = 100;
/// Date-times with a time zone: each may need a lookup in the file system.
constexpr int maxTimeZones = 1000;
} // namespace VhBodyLimits
