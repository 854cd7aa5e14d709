#pragma once
/// The ends of a block: its leader, which says what follows, and its trailer.

#include <cstddef>
#include <cstdint>
#include <optional>

#include "gige/protocol/BigEndian.h"

namespace OvGige {

/// What a block carries. A camera may send values that aren't listed; those from 0x8000 on are
/// its maker's own.
enum class PayloadType : uint16_t {
    Image = 1,
    Raw = 2,
    File = 3,
    Chunk = 4,          ///< chunks, none of which need be an image
    ExtendedChunk = 5,  ///< chunks, the first of which is an image
    Jpeg = 6,
    Jpeg2000 = 7,
    H264 = 8,
    MultiZone = 9,  ///< an image that is read out in several strips at once
    MultiPart = 0xA,
    GenDc = 0xB,
};

/// Added to a payload type: chunks follow the data, which is the first of them.
constexpr uint16_t kChunkMark = 0x4000;
constexpr uint16_t kDeviceSpecificPayload = 0x8000;

/// A video stream's own settings.
struct H264Facts {
    uint8_t packetizationMode = 0;
    uint16_t packetSize = 0;
    uint8_t profile = 0;
    uint8_t constraints = 0;
    uint8_t level = 0;
    uint16_t interleavingDepth = 0;
    uint16_t orderDifferenceMax = 0;
    uint32_t deinterleaveBuffer = 0;
    uint32_t initialBufferTime = 0;

    bool operator==(const H264Facts&) const = default;
};

/// An image within its sensor.
struct ImageShape {
    uint32_t pixelFormat = 0;
    uint32_t sizeX = 0;
    uint32_t sizeY = 0;
    uint32_t offsetX = 0;
    uint32_t offsetY = 0;
    uint16_t paddingX = 0;  ///< bytes after each line
    uint16_t paddingY = 0;  ///< bytes after the image

    bool operator==(const ImageShape&) const = default;
};

/// One part of a multi-part block. Parts that aren't images have no shape.
struct BlockPart {
    uint16_t dataType = 0;
    uint64_t length = 0;  ///< bytes
    uint8_t source = 0;
    uint8_t extraZones = 0;
    uint32_t zoneDirections = 0;
    uint16_t purpose = 0;
    uint16_t region = 0;
    ImageShape shape = {};

    bool operator==(const BlockPart&) const = default;
};
constexpr size_t kBlockPartSize = 48;

/// A leader. Which fields there are depends on the payload type; the others are 0.
struct BlockLeader {
    uint8_t fieldInfo = 0;
    uint8_t genericFlags = 0;
    uint16_t payloadType = 0;  ///< with `kChunkMark` where the camera sets it
    uint64_t timestamp = 0;    ///< in ticks of the camera's clock
    ImageShape shape;
    uint64_t size = 0;  ///< bytes; of raw data, files, compressed pictures
    uint64_t tickFrequency = 0;
    uint32_t dataFormat = 0;
    uint32_t zoneDirections = 0;
    H264Facts h264;
    ByteView fileName;  ///< of a file; belongs to the packet that it was read from
    ByteView parts;     ///< records of `kBlockPartSize` bytes; belongs to the packet, too

    PayloadType Type() const;
    bool HasChunks() const;
    size_t PartCount() const { return parts.size() / kBlockPartSize; }
    /// @param index below `PartCount()`
    BlockPart Part(size_t index) const;
};

/// A trailer.
struct BlockTrailer {
    uint16_t payloadType = 0;
    /// Lines that were really sent.
    std::optional<uint32_t> sizeY = std::nullopt;
    /// Bytes of a series of chunks.
    std::optional<uint32_t> chunkPayloadLength = std::nullopt;
    /// Changes when the order or the sizes of chunks do.
    std::optional<uint32_t> chunkLayoutId = std::nullopt;

    bool operator==(const BlockTrailer&) const = default;
};

/// Reads what follows the header of a leader. Nothing is returned for one that is too short for
/// its type.
std::optional<BlockLeader> ParseLeader(ByteView payload);
/// Reads what follows the header of a trailer. Nothing is returned for one without a type;
/// other fields that a short trailer lacks are left out.
std::optional<BlockTrailer> ParseTrailer(ByteView payload);

Bytes BuildLeader(const BlockLeader& leader);
/// The fields of the payload type; those that the trailer lacks are 0.
Bytes BuildTrailer(const BlockTrailer& trailer);
/// A record of `BlockLeader::parts`.
Bytes BuildPart(const BlockPart& part);

/// A block in a single packet.
struct WholeBlock {
    BlockLeader leader;
    BlockTrailer trailer;
    ByteView data;
};
/// Reads what follows the header of a packet with a whole block. Nothing is returned for one
/// that is too short for its type, or of a type that can't be sent so.
std::optional<WholeBlock> ParseWholeBlock(ByteView payload);
Bytes BuildWholeBlock(const WholeBlock& block);

}  // namespace OvGige
