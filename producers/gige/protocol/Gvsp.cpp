#include "gige/protocol/Gvsp.h"

namespace OvGige {
namespace {

constexpr uint8_t kExtendedMark = 0x80;

// Offsets within the header.
constexpr size_t kWordAt = 2;  // short form: block id; extended form: flags
constexpr size_t kFormatAt = 4;
constexpr size_t kPartsAt = 7;
constexpr size_t kBlockAt = 8;
constexpr size_t kPacketAt = 16;

// Offsets within a prefix.
constexpr size_t kZoneInfoAt = 1;

constexpr uint64_t kOffsetMask = 0xFFFF'FFFF'FFFF;  // 48 bits

/// Formats with a prefix before their data.
struct FormatTraits {
    size_t prefixSize;
    PacketFormat format;
    bool hasOffset;
};
constexpr FormatTraits kDataFormats[] = {
    {0, PacketFormat::Data, false},         {8, PacketFormat::H264Data, false},
    {8, PacketFormat::MultiZoneData, true}, {8, PacketFormat::MultiPartData, true},
    {16, PacketFormat::GenDcData, false},
};

const FormatTraits* TraitsOf(PacketFormat format) {
    for (const FormatTraits& traits : kDataFormats) {
        if (traits.format == format) {
            return &traits;
        }
    }
    return nullptr;
}

}  // namespace

std::optional<StreamHeader> ParseStreamHeader(ByteView packet) {
    if (packet.size() < kStreamHeaderSize) {
        return {};
    }
    StreamHeader header;
    header.status = Status{ReadBig<uint16_t>(packet)};
    const auto format = std::to_integer<uint8_t>(packet[kFormatAt]);
    header.format = PacketFormat{static_cast<uint8_t>(format & ~kExtendedMark)};
    header.isExtended = (format & kExtendedMark) != 0;
    const auto word = ReadBig<uint16_t>(packet.subspan(kWordAt));
    if (!header.isExtended) {
        header.blockId = word;
        header.packetId = ReadBig<uint32_t>(packet.subspan(kFormatAt)) & kShortPacketIdMax;
        return header;
    }
    if (packet.size() < kExtendedStreamHeaderSize) {
        return {};
    }
    header.flags = word;
    header.parts = std::to_integer<uint8_t>(packet[kPartsAt]);
    header.blockId = ReadBig<uint64_t>(packet.subspan(kBlockAt));
    header.packetId = ReadBig<uint32_t>(packet.subspan(kPacketAt));
    return header;
}

void WriteStreamHeader(std::span<std::byte> to, const StreamHeader& header) {
    const auto format = static_cast<uint32_t>(header.format);
    WriteBig(to, static_cast<uint16_t>(header.status));
    if (!header.isExtended) {
        WriteBig(to.subspan(kWordAt), static_cast<uint16_t>(header.blockId));
        WriteBig(to.subspan(kFormatAt), format << 24 | (header.packetId & kShortPacketIdMax));
        return;
    }
    WriteBig(to.subspan(kWordAt), header.flags);
    WriteBig(to.subspan(kFormatAt), (format | kExtendedMark) << 24 | header.parts);
    WriteBig(to.subspan(kBlockAt), header.blockId);
    WriteBig(to.subspan(kPacketAt), header.packetId);
}

bool IsData(PacketFormat format) {
    return TraitsOf(format) != nullptr;
}

bool HasOffset(PacketFormat format) {
    const FormatTraits* const traits = TraitsOf(format);
    return traits != nullptr && traits->hasOffset;
}

size_t PrefixSize(PacketFormat format) {
    const FormatTraits* const traits = TraitsOf(format);
    return traits == nullptr ? 0 : traits->prefixSize;
}

DataPrefix ParseDataPrefix(PacketFormat format, ByteView payload) {
    DataPrefix prefix;
    if (HasOffset(format)) {
        prefix.part = std::to_integer<uint8_t>(payload[0]);
        prefix.zoneInfo = std::to_integer<uint8_t>(payload[kZoneInfoAt]);
        prefix.offset = ReadBig<uint64_t>(payload) & kOffsetMask;
    } else if (format == PacketFormat::H264Data) {
        prefix.timestamp = ReadBig<uint64_t>(payload);
    }
    return prefix;
}

void WriteDataPrefix(std::span<std::byte> to, PacketFormat format, const DataPrefix& prefix) {
    if (HasOffset(format)) {
        WriteBig(to, prefix.offset & kOffsetMask);
        to[0] = std::byte{prefix.part};
        to[kZoneInfoAt] = std::byte{prefix.zoneInfo};
    } else if (format == PacketFormat::H264Data) {
        WriteBig(to, prefix.timestamp);
    }
}

size_t DataPerPacket(size_t packetSize, bool isExtended, PacketFormat format) {
    const size_t around = kIpUdpHeaderSize + PrefixSize(format) +
                          (isExtended ? kExtendedStreamHeaderSize : kStreamHeaderSize);
    return packetSize > around ? packetSize - around : 0;
}

}  // namespace OvGige
