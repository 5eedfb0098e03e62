#pragma once

/// What a received message may ask for. Messages of honest peers stay far below.
namespace VhBodyLimits {
/// Levels of lists and maps, the message itself being the first. Decoding descends, and the stack
/// is finite.
constexpr int maxDepth = 100;
/// Date-times with a time zone: each may be looked up in the file system.
constexpr int maxTimeZones = 1000;
} // namespace VhBodyLimits
