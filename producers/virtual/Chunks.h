#pragma once
/// Data behind the image, in the chunk layout of GigE Vision: behind each chunk
/// stand its identifier and its length, four bytes each, the high byte first.
/// Numbers in a chunk have their high byte first too.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "GenTL/GenTL.h"
#include "virtual/CameraSettings.h"

namespace OvVirtual {

/// The chunks of a frame, in their order. The image is always one of them.
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

/// As the ports of the description name it.
constexpr uint64_t ChunkId(Chunk chunk) {
    constexpr uint64_t kFirst = 0x0C000000;
    return kFirst + static_cast<uint64_t>(chunk);
}

/// What the chunks of one frame hold.
struct ChunkValues {
    uint64_t frameId = 0;
    uint64_t timestamp = 0;  ///< ticks
    double exposure = 0;     ///< microseconds
    double gain = 0;         ///< decibels
    uint32_t lineStatus = 0;
};

/// The levels of all lines, a bit each. Nothing is wired to a virtual camera:
/// Line0 rests at the level from which the trigger's edge leads away.
uint32_t LineStatus(const CameraSettings& settings);

/// Bytes of a frame with its chunks; those of the image alone in a camera whose
/// chunk mode is off.
size_t PayloadSize(const CameraSettings& settings, size_t imageSize);

/// Writes what follows the image. `memory` begins with the image and holds the
/// whole payload.
/// @param enabled  a bit for each chunk
/// @return the places of the chunks
std::vector<GenTL::S_SINGLE_CHUNK_DATA> AppendChunks(std::span<std::byte> memory, size_t imageSize,
                                                     int64_t enabled, const ChunkValues& values);

}  // namespace OvVirtual
