#include "simulator/stream/StreamBlock.h"

#include <algorithm>

#include "Base/OvAssert.h"
#include "gige/protocol/GvspBlock.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

/// Bytes of a chunk's identifier and length, which follow it.
constexpr uint32_t kChunkEnd = 8;
/// What can be wrong with them.
constexpr uint64_t kChunkFaults = 4;

uint16_t PayloadTypeOf(const StreamSetup& setup, const OvProducer::FrameInfo& frame) {
    if (frame.payloadType != GenTL::PAYLOAD_TYPE_CHUNK_DATA) {
        return static_cast<uint16_t>(PayloadType::Image);
    }
    return setup.marksChunks
               ? static_cast<uint16_t>(static_cast<uint16_t>(PayloadType::Image) | kChunkMark)
               : static_cast<uint16_t>(PayloadType::Chunk);
}

ImageShape ShapeOf(const OvProducer::FrameInfo& frame) {
    return {.pixelFormat = static_cast<uint32_t>(frame.pixelFormat),
            .sizeX = static_cast<uint32_t>(frame.width),
            .sizeY = static_cast<uint32_t>(frame.height),
            .offsetX = static_cast<uint32_t>(frame.offsetX),
            .offsetY = static_cast<uint32_t>(frame.offsetY)};
}

}  // namespace

std::span<std::byte> StreamBlock::MakeRoom(size_t bytes) {
    m_size = 0;
    m_room.resize(bytes);
    return m_room;
}

void StreamBlock::Fill(const StreamSetup& setup, const OvProducer::FrameInfo& frame) {
    BlockLeader leader;
    leader.payloadType = PayloadTypeOf(setup, frame);
    leader.timestamp = frame.timestamp;
    leader.shape = ShapeOf(frame);
    BlockTrailer trailer{.payloadType = leader.payloadType};
    trailer.sizeY = leader.shape.sizeY;
    trailer.chunkPayloadLength = static_cast<uint32_t>(frame.chunkPayloadSize);
    trailer.chunkLayoutId = static_cast<uint32_t>(frame.chunkLayoutId);
    m_leader = BuildLeader(leader);
    m_trailer = BuildTrailer(trailer);
    m_isExtended = setup.isExtended;
    m_id = BlockIdOf(frame.frameId, m_isExtended);
    m_size = frame.sizeFilled;
    m_chunks = frame.chunks;
    m_dataPerPacket =
        std::max<size_t>(DataPerPacket(setup.packetSize, m_isExtended, PacketFormat::Data), 1);
}

void StreamBlock::SpoilLeader() {
    auto leader = ParseLeader(m_leader);
    OV_ASSERT(leader);
    leader->shape.sizeY *= 2;
    m_leader = BuildLeader(*leader);
}

bool StreamBlock::SpoilChunk(uint64_t choice) {
    if (m_chunks.empty()) {
        return false;
    }
    const GenTL::S_SINGLE_CHUNK_DATA& chunk = m_chunks[choice % m_chunks.size()];
    const size_t end = static_cast<size_t>(chunk.ChunkOffset) + chunk.ChunkLength;
    const auto id = std::span(m_room).subspan(end, sizeof(uint32_t));
    const auto length = std::span(m_room).subspan(end + id.size(), sizeof(uint32_t));
    switch (choice / m_chunks.size() % kChunkFaults) {
        case 0:  // begins before the frame
            WriteBig(length, static_cast<uint32_t>(end + 1));
            break;
        case 1:
            WriteBig(length, static_cast<uint32_t>(chunk.ChunkLength - 1));
            break;
        case 2:  // together with its end's own length, 0
            WriteBig(length, ~uint32_t{0} - (kChunkEnd - 1));
            break;
        default:
            WriteBig(id, ~static_cast<uint32_t>(chunk.ChunkID));
    }
    return true;
}

uint32_t StreamBlock::PacketCount() const {
    return static_cast<uint32_t>((m_size + m_dataPerPacket - 1) / m_dataPerPacket) + 2;
}

StreamHeader StreamBlock::Header(uint32_t packetId) const {
    StreamHeader header;
    header.isExtended = m_isExtended;
    header.blockId = m_id;
    header.packetId = packetId;
    if (packetId == 0) {
        header.format = PacketFormat::Leader;
    } else if (packetId + 1 == PacketCount()) {
        header.format = PacketFormat::Trailer;
    }
    return header;
}

ByteView StreamBlock::Payload(uint32_t packetId) const {
    if (packetId == 0) {
        return m_leader;
    }
    if (packetId + 1 == PacketCount()) {
        return m_trailer;
    }
    const size_t at = (packetId - 1) * m_dataPerPacket;
    return ByteView(m_room).subspan(at, std::min(m_dataPerPacket, m_size - at));
}

uint64_t BlockIdOf(uint64_t frame, bool isExtended) {
    return isExtended ? frame + 1 : frame % kShortBlockIdMax + 1;
}

}  // namespace OvSimulator
