#pragma once
/// Addresses that no chunk is long enough to have: reads of 8 bytes from them are about the chunk
/// itself.

#include <cstdint>

namespace GenApi_3_0_ORVANE {

/// Where the chunk is in memory.
inline constexpr int64_t kChunkPlaceAddress = 0x7FFFFFFFFFFFFFFF;
/// How long the chunk is, in bytes.
inline constexpr int64_t kChunkLengthAddress = 0x7FFFFFFFFFFFFFF0;

}  // namespace GenApi_3_0_ORVANE
