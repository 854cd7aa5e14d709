#pragma once
/// The stream protocol: how packets of image data begin.
///
/// A camera sends blocks. A block is a leader, data packets and a trailer, numbered from 0
/// upwards, or a single packet with all three.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "gige/protocol/BigEndian.h"
#include "gige/protocol/Gvcp.h"

namespace OvGige {

/// What a packet is. A camera may send values that aren't listed.
enum class PacketFormat : uint8_t {
    Leader = 1,
    Trailer = 2,
    Data = 3,
    AllIn = 4,  ///< a whole block
    H264Data = 5,
    MultiZoneData = 6,
    MultiPartData = 7,
    GenDcData = 8,
};

/// Bytes of the two forms of a packet's header.
constexpr size_t kStreamHeaderSize = 8;
constexpr size_t kExtendedStreamHeaderSize = 20;
/// Bytes of IP and UDP before the header. A camera's packet size counts them.
constexpr size_t kIpUdpHeaderSize = 28;

/// Bits of `StreamHeader::flags`.
///@{
constexpr uint16_t kStreamFlagRangeError = 0x0004;  ///< a resend asked for what doesn't exist
constexpr uint16_t kStreamFlagBlockDropped = 0x0002;
constexpr uint16_t kStreamFlagResent = 0x0001;
///@}

/// Last numbers of blocks and packets in the short form. Blocks count from 1; 0 is none.
constexpr uint64_t kShortBlockIdMax = 0xFFFF;
constexpr uint32_t kShortPacketIdMax = 0xFFFFFF;

/// The header of a packet. Its extended form has 64-bit block ids; a camera decides for each
/// packet which form it uses.
struct StreamHeader {
    Status status = Status::Success;
    bool isExtended = false;
    uint16_t flags = 0;  ///< extended form only
    PacketFormat format = PacketFormat::Data;
    /// Of a leader in the extended form: how many parts the block has, or how many zones beyond
    /// the first.
    uint8_t parts = 0;
    uint64_t blockId = 0;
    uint32_t packetId = 0;

    bool operator==(const StreamHeader&) const = default;

    size_t Size() const { return isExtended ? kExtendedStreamHeaderSize : kStreamHeaderSize; }
    /// Whether the camera says that it sends the packet again.
    bool IsResent() const {
        return status == Status::PacketResend || (flags & kStreamFlagResent) != 0;
    }
    /// Whether the packet carries what its format says. Others are a header and a status.
    bool IsGood() const { return status == Status::Success || status == Status::PacketResend; }
};

/// Reads the header of a packet from anyone. Nothing is returned for less than a header.
std::optional<StreamHeader> ParseStreamHeader(ByteView packet);
/// Writes `header.Size()` bytes to `to`, which must have as many.
void WriteStreamHeader(std::span<std::byte> to, const StreamHeader& header);

/// What precedes the data in a packet whose format says more than the packet's number does.
struct DataPrefix {
    uint8_t part = 0;        ///< multi-part: which one
    uint8_t zoneInfo = 0;    ///< multi-part and multi-zone
    uint64_t offset = 0;     ///< multi-part and multi-zone: where in the block the data belongs
    uint64_t timestamp = 0;  ///< H.264

    bool operator==(const DataPrefix&) const = default;
};

/// Whether the format carries data.
bool IsData(PacketFormat format);
/// Whether the data's place is in the prefix, not in the packet's number.
bool HasOffset(PacketFormat format);
/// Bytes of the prefix; 0 for formats without one.
size_t PrefixSize(PacketFormat format);
/// Reads a prefix; `payload` is what follows the header and must be as long as the prefix.
DataPrefix ParseDataPrefix(PacketFormat format, ByteView payload);
/// Writes `PrefixSize(format)` bytes to `to`, which must have as many.
void WriteDataPrefix(std::span<std::byte> to, PacketFormat format, const DataPrefix& prefix);

/// Bytes of data in a full packet of a camera whose packet size is set so; 0 if there is no
/// room for any.
size_t DataPerPacket(size_t packetSize, bool isExtended, PacketFormat format);

}  // namespace OvGige
