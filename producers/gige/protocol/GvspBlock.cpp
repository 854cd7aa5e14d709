#include "gige/protocol/GvspBlock.h"

#include <algorithm>

namespace OvGige {
namespace {

constexpr size_t kPartLengthBytes = 6;
constexpr size_t kTypeEnd = 4;  // of leaders and trailers: reserved bytes and the type

/// Takes fields from the beginning of a payload. What is read beyond its end is 0.
class FieldReader {
public:
    explicit FieldReader(ByteView from) : m_from(from) {}

    bool IsShort() const { return m_isShort; }
    ByteView Rest() const { return m_from; }

    template <std::unsigned_integral T>
    void Number(T& value) {
        value = Has(sizeof(T)) ? ReadBig<T>(m_from) : T{0};
        Skip(sizeof(T));
    }
    void Length(uint64_t& value) {
        uint16_t high = 0;
        uint32_t low = 0;
        Number(high);
        Number(low);
        value = static_cast<uint64_t>(high) << 32 | low;
    }
    void Skip(size_t count) {
        m_isShort = m_isShort || !Has(count);
        m_from = m_from.subspan(std::min(count, m_from.size()));
    }
    void Records(ByteView& records) {
        records = m_from.first(m_from.size() / kBlockPartSize * kBlockPartSize);
        Skip(records.size());
    }
    /// A text with its zero.
    void Text(ByteView& text) {
        const auto end = std::find(m_from.begin(), m_from.end(), std::byte{0});
        text = m_from.first(static_cast<size_t>(end - m_from.begin()));
        Skip(std::min(text.size() + 1, m_from.size()));
    }

private:
    bool Has(size_t count) const { return count <= m_from.size(); }

    ByteView m_from;
    bool m_isShort = false;
};

/// Appends fields.
class FieldWriter {
public:
    explicit FieldWriter(Bytes& to) : m_to(to) {}

    template <std::unsigned_integral T>
    void Number(T value) {
        Append(m_to, value);
    }
    void Length(uint64_t value) {
        const size_t at = m_to.size();
        Append(m_to, value << (8 * (sizeof value - kPartLengthBytes)));
        m_to.resize(at + kPartLengthBytes);
    }
    void Skip(size_t count) { AppendZeros(m_to, count); }
    void Records(ByteView records) { Append(m_to, records); }
    void Text(ByteView text) {
        Append(m_to, text);
        AppendZeros(m_to, 1);
    }

private:
    Bytes& m_to;
};

// The layouts, each of them once for reading and writing: `Fields` is a FieldReader or a
// FieldWriter, and the other argument is constant if it is written.

template <typename Fields, typename Shape>
void WalkShape(Fields& fields, Shape& shape) {
    fields.Number(shape.pixelFormat);
    fields.Number(shape.sizeX);
    fields.Number(shape.sizeY);
    fields.Number(shape.offsetX);
    fields.Number(shape.offsetY);
    fields.Number(shape.paddingX);
    fields.Number(shape.paddingY);
}

template <typename Fields, typename Facts>
void WalkH264(Fields& fields, Facts& facts) {
    fields.Skip(1);
    fields.Number(facts.packetizationMode);
    fields.Number(facts.packetSize);
    fields.Skip(1);
    fields.Number(facts.profile);
    fields.Number(facts.constraints);
    fields.Number(facts.level);
    fields.Number(facts.interleavingDepth);
    fields.Number(facts.orderDifferenceMax);
    fields.Number(facts.deinterleaveBuffer);
    fields.Number(facts.initialBufferTime);
}

template <typename Fields, typename Leader>
void WalkTyped(Fields& fields, Leader& leader) {
    switch (leader.Type()) {
        case PayloadType::Image:
        case PayloadType::ExtendedChunk:
            WalkShape(fields, leader.shape);
            break;
        case PayloadType::Raw:
            fields.Number(leader.size);
            break;
        case PayloadType::File:
            fields.Number(leader.size);
            fields.Text(leader.fileName);
            break;
        case PayloadType::Jpeg:
        case PayloadType::Jpeg2000:
            fields.Number(leader.size);
            fields.Number(leader.tickFrequency);
            fields.Number(leader.dataFormat);
            break;
        case PayloadType::MultiZone:
            fields.Number(leader.zoneDirections);
            WalkShape(fields, leader.shape);
            break;
        case PayloadType::MultiPart:
            fields.Records(leader.parts);
            break;
        default:
            break;
    }
}

template <typename Fields, typename Leader>
void WalkLeader(Fields& fields, Leader& leader) {
    fields.Number(leader.fieldInfo);
    fields.Number(leader.genericFlags);
    fields.Number(leader.payloadType);
    // Video has its time in each packet instead.
    if (leader.Type() == PayloadType::H264) {
        fields.Number(leader.size);
        WalkH264(fields, leader.h264);
        return;
    }
    fields.Number(leader.timestamp);
    WalkTyped(fields, leader);
}

template <typename Fields, typename Part>
void WalkPart(Fields& fields, Part& part) {
    fields.Number(part.dataType);
    fields.Length(part.length);
    fields.Number(part.shape.pixelFormat);
    fields.Skip(2);
    fields.Number(part.source);
    fields.Number(part.extraZones);
    fields.Number(part.zoneDirections);
    fields.Number(part.purpose);
    fields.Number(part.region);
    fields.Number(part.shape.sizeX);
    fields.Number(part.shape.sizeY);
    fields.Number(part.shape.offsetX);
    fields.Number(part.shape.offsetY);
    fields.Number(part.shape.paddingX);
    fields.Number(part.shape.paddingY);
    fields.Skip(4);
}

PayloadType TypeOf(uint16_t payloadType) {
    const bool isMarked = payloadType < kDeviceSpecificPayload && (payloadType & kChunkMark) != 0;
    return PayloadType{isMarked ? static_cast<uint16_t>(payloadType & ~kChunkMark) : payloadType};
}

bool IsChunkMarked(uint16_t payloadType) {
    return payloadType < kDeviceSpecificPayload && (payloadType & kChunkMark) != 0;
}

/// Which fields a trailer has, in their order.
struct TrailerFields {
    bool hasLengthFirst = false;
    bool hasSizeY = false;
    bool hasLayoutId = false;
    bool hasLengthLast = false;
};

TrailerFields FieldsOf(uint16_t payloadType) {
    TrailerFields fields;
    const PayloadType type = TypeOf(payloadType);
    fields.hasLengthFirst = type == PayloadType::Chunk || type == PayloadType::ExtendedChunk;
    fields.hasLayoutId = type == PayloadType::ExtendedChunk;
    fields.hasSizeY = type == PayloadType::Image || type == PayloadType::MultiZone ||
                      type == PayloadType::ExtendedChunk;
    fields.hasLengthLast = IsChunkMarked(payloadType) && !fields.hasLengthFirst;
    return fields;
}

size_t TrailerSize(uint16_t payloadType) {
    BlockTrailer trailer;
    trailer.payloadType = payloadType;
    return BuildTrailer(trailer).size();
}

std::optional<uint32_t> NumberIf(bool isThere, FieldReader& reader) {
    uint32_t value = 0;
    if (!isThere) {
        return {};
    }
    reader.Number(value);
    return reader.IsShort() ? std::nullopt : std::optional(value);
}

}  // namespace

PayloadType BlockLeader::Type() const {
    return TypeOf(payloadType);
}

bool BlockLeader::HasChunks() const {
    return IsChunkMarked(payloadType) || Type() == PayloadType::Chunk ||
           Type() == PayloadType::ExtendedChunk;
}

BlockPart BlockLeader::Part(size_t index) const {
    FieldReader reader(parts.subspan(index * kBlockPartSize, kBlockPartSize));
    BlockPart part;
    WalkPart(reader, part);
    return part;
}

std::optional<BlockLeader> ParseLeader(ByteView payload) {
    FieldReader reader(payload);
    BlockLeader leader;
    WalkLeader(reader, leader);
    return reader.IsShort() ? std::nullopt : std::optional(leader);
}

std::optional<BlockTrailer> ParseTrailer(ByteView payload) {
    if (payload.size() < kTypeEnd) {
        return {};
    }
    FieldReader reader(payload);
    BlockTrailer trailer;
    reader.Skip(2);
    reader.Number(trailer.payloadType);
    const TrailerFields fields = FieldsOf(trailer.payloadType);
    trailer.chunkPayloadLength = NumberIf(fields.hasLengthFirst, reader);
    trailer.sizeY = NumberIf(fields.hasSizeY, reader);
    trailer.chunkLayoutId = NumberIf(fields.hasLayoutId, reader);
    // The two words that the mark adds follow whatever the type has; a multi-part trailer has a
    // record for each part.
    if (fields.hasLengthLast && reader.Rest().size() >= 2 * sizeof(uint32_t)) {
        reader.Skip(reader.Rest().size() - 2 * sizeof(uint32_t));
        trailer.chunkPayloadLength = NumberIf(true, reader);
        trailer.chunkLayoutId = NumberIf(true, reader);
    }
    return trailer;
}

Bytes BuildLeader(const BlockLeader& leader) {
    Bytes payload;
    FieldWriter writer(payload);
    WalkLeader(writer, leader);
    return payload;
}

Bytes BuildTrailer(const BlockTrailer& trailer) {
    Bytes payload;
    AppendZeros(payload, 2);
    Append(payload, trailer.payloadType);
    const TrailerFields fields = FieldsOf(trailer.payloadType);
    const auto add = [&payload](bool isThere, std::optional<uint32_t> value) {
        if (isThere) {
            Append(payload, value.value_or(0));
        }
    };
    add(fields.hasLengthFirst, trailer.chunkPayloadLength);
    add(fields.hasSizeY, trailer.sizeY);
    add(fields.hasLayoutId, trailer.chunkLayoutId);
    add(fields.hasLengthLast, trailer.chunkPayloadLength);
    add(fields.hasLengthLast, trailer.chunkLayoutId);
    return payload;
}

Bytes BuildPart(const BlockPart& part) {
    Bytes record;
    FieldWriter writer(record);
    WalkPart(writer, part);
    return record;
}

std::optional<WholeBlock> ParseWholeBlock(ByteView payload) {
    FieldReader reader(payload);
    WholeBlock block;
    WalkLeader(reader, block.leader);
    const PayloadType type = block.leader.Type();
    const size_t trailerSize = TrailerSize(block.leader.payloadType);
    if (reader.IsShort() || type == PayloadType::MultiPart || type == PayloadType::GenDc ||
        reader.Rest().size() < trailerSize) {
        return {};
    }
    const auto trailer = ParseTrailer(reader.Rest().first(trailerSize));
    if (!trailer || trailer->payloadType != block.leader.payloadType) {
        return {};
    }
    block.trailer = *trailer;
    block.data = reader.Rest().subspan(trailerSize);
    return block;
}

Bytes BuildWholeBlock(const WholeBlock& block) {
    Bytes payload = BuildLeader(block.leader);
    Append(payload, BuildTrailer(block.trailer));
    Append(payload, block.data);
    return payload;
}

}  // namespace OvGige
