#include "gige/assembly/BlockFrame.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace OvGige {
namespace {

struct PayloadName {
    size_t payloadType;
    PayloadType type;
    bool isImage;
};
constexpr PayloadName kPayloads[] = {
    {GenTL::PAYLOAD_TYPE_IMAGE, PayloadType::Image, true},
    {GenTL::PAYLOAD_TYPE_RAW_DATA, PayloadType::Raw, false},
    {GenTL::PAYLOAD_TYPE_FILE, PayloadType::File, false},
    {GenTL::PAYLOAD_TYPE_CHUNK_DATA, PayloadType::Chunk, true},
    {GenTL::PAYLOAD_TYPE_CHUNK_DATA, PayloadType::ExtendedChunk, true},
    {GenTL::PAYLOAD_TYPE_JPEG, PayloadType::Jpeg, true},
    {GenTL::PAYLOAD_TYPE_JPEG2000, PayloadType::Jpeg2000, true},
    {GenTL::PAYLOAD_TYPE_H264, PayloadType::H264, true},
    {GenTL::PAYLOAD_TYPE_IMAGE, PayloadType::MultiZone, true},
    {GenTL::PAYLOAD_TYPE_MULTI_PART, PayloadType::MultiPart, true},
};

void NamePayload(OvProducer::FrameInfo& frame, const BlockLeader& leader) {
    frame.payloadType = leader.payloadType >= kDeviceSpecificPayload
                            ? GenTL::PAYLOAD_TYPE_DEVICE_SPECIFIC
                            : GenTL::PAYLOAD_TYPE_UNKNOWN;
    frame.imagePresent = false;
    for (const PayloadName& name : kPayloads) {
        if (name.type == leader.Type()) {
            frame.payloadType = name.payloadType;
            frame.imagePresent = name.isImage;
        }
    }
}

/// The bytes that a block must have, if its leader or its trailer says so.
uint64_t LeastDataSize(const Block& block) {
    const BlockLeader& leader = *block.leader;
    const PayloadType type = leader.Type();
    if (type == PayloadType::Image && !leader.HasChunks()) {
        const uint32_t lines =
            block.trailer && block.trailer->sizeY ? *block.trailer->sizeY : leader.shape.sizeY;
        return LeastImageSize(leader.shape, std::min(lines, leader.shape.sizeY));
    }
    if (leader.HasChunks()) {
        return block.trailer ? block.trailer->chunkPayloadLength.value_or(0) : 0;
    }
    return DataSizeOf(leader, block.partsLength).value_or(0);
}

/// Where the chunks end: some cameras fill their last packet up.
size_t ChunkEnd(const Block& block) {
    const size_t said = block.trailer ? block.trailer->chunkPayloadLength.value_or(0) : 0;
    return said == 0 ? block.filledEnd : std::min(said, block.filledEnd);
}

/// Where the data begins that reaches the end of an incomplete block without a gap. Nothing is
/// returned if the end itself is missing or its place isn't known.
std::optional<size_t> BeginOfEnd(const Block& block) {
    if (!block.trailer || block.trailer->chunkPayloadLength.value_or(0) > block.filledEnd ||
        block.IsLarger() || block.isDamaged || HasOffset(block.form.format)) {
        return {};
    }
    const uint32_t last = block.dataCount.value_or(0);
    uint32_t first = last + 1;
    // What follows a packet that was cut counts only from the next one on.
    while (first > 1 && block.packets.Has(first - 1) &&
           (first - 1 == last || first - 1 != block.shortId)) {
        --first;
    }
    return first > last ? std::nullopt : std::optional(block.PlaceOf(first));
}

}  // namespace

bool LacksData(const Block& block) {
    if (!block.leader || block.IsLarger() || block.isDamaged ||
        block.packets.Count() < block.WantedEnd()) {
        return true;
    }
    // Without its trailer a block is whole only if its leader said how much it has.
    if (!block.trailer && !DataSizeOf(*block.leader, block.partsLength)) {
        return true;
    }
    return block.filledEnd < LeastDataSize(block);
}

const OvProducer::FrameInfo& BlockFrame::Describe(const Block& block) {
    // The memory of the last frame's chunks and name serves again.
    OvProducer::FrameInfo frame;
    frame.chunks.swap(m_frame.chunks);
    frame.chunks.clear();
    frame.fileName.swap(m_frame.fileName);
    frame.fileName = block.fileName;
    m_frame = std::move(frame);
    m_frame.imagePresent = false;
    m_frame.payloadType = GenTL::PAYLOAD_TYPE_UNKNOWN;
    m_frame.frameId = block.number;
    m_frame.sizeFilled = block.filledEnd;
    m_frame.incomplete = LacksData(block);
    m_frame.largerThanBuffer = block.IsLarger();
    if (block.leader) {
        TakeLeader(*block.leader);
    }
    m_frame.timestampNs = Nanoseconds(block);
    if (block.trailer) {
        TakeTrailer(*block.trailer);
    }
    if (block.leader && block.leader->HasChunks()) {
        m_frame.sizeFilled = ChunkEnd(block);
        TakeChunks(block);
    }
    return m_frame;
}

void BlockFrame::TakeLeader(const BlockLeader& leader) {
    NamePayload(m_frame, leader);
    m_frame.width = leader.shape.sizeX;
    m_frame.height = leader.shape.sizeY;
    m_frame.offsetX = leader.shape.offsetX;
    m_frame.offsetY = leader.shape.offsetY;
    m_frame.paddingX = leader.shape.paddingX;
    m_frame.paddingY = leader.shape.paddingY;
    m_frame.deliveredHeight = leader.shape.sizeY;
    m_frame.pixelFormat = leader.shape.pixelFormat;
    m_frame.timestamp = leader.timestamp;
}

void BlockFrame::TakeTrailer(const BlockTrailer& trailer) {
    if (trailer.sizeY) {
        m_frame.deliveredHeight = *trailer.sizeY;
    }
    m_frame.chunkPayloadSize = trailer.chunkPayloadLength.value_or(0);
    m_frame.chunkLayoutId = trailer.chunkLayoutId.value_or(0);
}

// Chunks are found from their end, so those after the last gap are as good as in a whole block.
void BlockFrame::TakeChunks(const Block& block) {
    const std::optional<size_t> begin = m_frame.incomplete ? BeginOfEnd(block) : 0;
    m_places.clear();
    if (begin && *begin < m_frame.sizeFilled) {
        const ByteView memory(block.buffer->Memory());
        FindChunks(memory.subspan(*begin, m_frame.sizeFilled - *begin), m_places);
    }
    for (const ChunkPlace& place : m_places) {
        m_frame.chunks.push_back(
            {place.id, static_cast<int64_t>(*begin + place.offset), place.length});
    }
    m_frame.hasWrongChunks = !m_frame.incomplete && m_places.empty();
}

uint64_t BlockFrame::Nanoseconds(const Block& block) const {
    constexpr uint64_t kPerSecond = 1'000'000'000;
    uint64_t frequency = m_tickFrequency;
    if (block.leader && block.leader->tickFrequency != 0) {
        frequency = block.leader->tickFrequency;
    }
    // A camera without a clock leaves only this machine's.
    if (frequency == 0) {
        return static_cast<uint64_t>(
            std::chrono::nanoseconds(block.begin.time_since_epoch()).count());
    }
    const uint64_t ticks = m_frame.timestamp;
    return ticks / frequency * kPerSecond + ticks % frequency * kPerSecond / frequency;
}

}  // namespace OvGige
