#pragma once
/// The frames that the cameras of this folder send.

#include <cstdint>

/// More than their 64 pixels.
inline constexpr int64_t kPayloadSize = 4096;
