#pragma once

constexpr int millisecondsPerSecond = 1000;
constexpr int millisecondsPerMinute = 60 * millisecondsPerSecond;
constexpr int nanosecondsPerMillisecond = 1'000'000;
