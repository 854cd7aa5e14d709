#pragma once
/// Data after the image, in the chunk layout of GigE Vision: each chunk is followed by
/// its identifier and its length, four bytes each. All numbers have their highest byte
/// first.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "GenTL/GenTL.h"
#include "virtual/CameraSettings.h"

namespace OvVirtual {

/// The chunks of a frame, in order. The image is always the first.
enum class Chunk : int64_t {
    Image = 0,
    FrameId,
    Timestamp,
    ExposureTime,
    Gain,
    LineStatusAll,
    Count
};

constexpr auto kChunks = static_cast<int64_t>(Chunk::Count);

/// The identifier that the description's ports have.
constexpr uint64_t ChunkId(Chunk chunk) {
    constexpr uint64_t kFirst = 0x0C000000;
    return kFirst + static_cast<uint64_t>(chunk);
}

/// The values in the chunks of one frame.
struct ChunkValues {
    uint64_t frameId = 0;
    uint64_t timestamp = 0;  ///< ticks
    double exposure = 0;     ///< microseconds
    double gain = 0;         ///< decibels
    uint32_t lineStatus = 0;
};

/// The levels of all lines, a bit for each. Nothing is connected to a virtual camera:
/// Line0 has the level from which the edge of the trigger would start.
uint32_t LineStatus(const CameraSettings& settings);

/// Size of a frame in bytes, with its chunks if chunk mode is on.
size_t PayloadSize(const CameraSettings& settings, size_t imageSize);

/// Writes the chunks after the image. `memory` has room for the whole payload and begins
/// with the image.
/// @param enabled  a bit for each chunk
/// @return the places of the chunks
std::vector<GenTL::S_SINGLE_CHUNK_DATA> AppendChunks(std::span<std::byte> memory, size_t imageSize,
                                                     int64_t enabled, const ChunkValues& values);

}  // namespace OvVirtual
