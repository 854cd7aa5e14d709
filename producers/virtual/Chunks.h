/// @file
/// Data behind the image, in the chunk layout of GigE Vision: behind each chunk
/// stand its identifier and its length, four bytes each, the high byte first.
/// Numbers in a chunk have their high byte first too.
#ifndef OV_VIRTUAL_CHUNKS_H
#define OV_VIRTUAL_CHUNKS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "GenTL/GenTL.h"
#include "virtual/CameraSettings.h"

namespace OvVirtual {

/// The chunks of a frame, in their order. The image is always one of them.
enum class Chunk : std::int64_t {
    Image = 0,
    FrameId,
    Timestamp,
    ExposureTime,
    Gain,
    LineStatusAll,
    Count
};

constexpr auto kChunks = static_cast<std::int64_t>(Chunk::Count);

/// As the ports of the description name it.
constexpr std::uint64_t ChunkId(Chunk chunk) {
    constexpr std::uint64_t kFirst = 0x0C000000;
    return kFirst + static_cast<std::uint64_t>(chunk);
}

/// What the chunks of one frame hold.
struct ChunkValues {
    std::uint64_t frameId = 0;
    std::uint64_t timestamp = 0;  ///< ticks
    double exposure = 0;          ///< microseconds
    double gain = 0;              ///< decibels
    std::uint32_t lineStatus = 0;
};

/// The levels of all lines, a bit each. Nothing is wired to a virtual camera:
/// Line0 rests at the level from which the trigger's edge leads away.
std::uint32_t LineStatus(const CameraSettings& settings);

/// Bytes of a frame with its chunks; those of the image alone in a camera whose
/// chunk mode is off.
std::size_t PayloadSize(const CameraSettings& settings, std::size_t imageSize);

/// Writes what follows the image. `memory` begins with the image and holds the
/// whole payload.
/// @param enabled  a bit for each chunk
/// @return the places of the chunks
std::vector<GenTL::S_SINGLE_CHUNK_DATA> AppendChunks(std::span<std::byte> memory,
                                                     std::size_t imageSize, std::int64_t enabled,
                                                     const ChunkValues& values);

}  // namespace OvVirtual

#endif
