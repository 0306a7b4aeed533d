// Stands in for the system's header: what the plug-in uses of it.

#pragma once

#include <cstdint>

using CGEventFlags = std::uint64_t;
using CGEventSourceStateID = std::int32_t;

inline constexpr CGEventFlags kCGEventFlagMaskShift = 1U << 17;
inline constexpr CGEventFlags kCGEventFlagMaskCommand = 1U << 20;
inline constexpr CGEventSourceStateID kCGEventSourceStateHIDSystemState = 1;

extern "C" CGEventFlags CGEventSourceFlagsState(CGEventSourceStateID state);
