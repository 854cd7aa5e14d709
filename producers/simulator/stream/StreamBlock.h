#pragma once
/// A frame on its way: the packets that a camera makes of it.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "framework/FrameInfo.h"
#include "gige/protocol/Address.h"
#include "gige/protocol/Gvsp.h"

namespace OvSimulator {

/// How a host wants frames to come.
struct StreamSetup {
    OvGige::Endpoint destination;  ///< port 0: no frames are sent
    size_t packetSize = 0;         ///< with the headers of IP, UDP and the stream
    uint64_t delay = 0;            ///< nanoseconds between packets
    bool isExtended = false;       ///< whether blocks have numbers of 64 bits
    bool doNotFragment = true;
    bool marksChunks = true;  ///< whether a leader says both image and chunks

    bool IsOpen() const { return destination.port != 0 && !destination.ip.IsNone(); }
};

/// Packets are numbered: the leader is 0, the trailer the last.
class StreamBlock {
public:
    /// Room for a frame; what was in the block before is gone.
    std::span<std::byte> MakeRoom(size_t bytes);
    /// Makes packets of the frame in the room.
    void Fill(const StreamSetup& setup, const OvProducer::FrameInfo& frame);

    uint64_t Id() const { return m_id; }
    /// Gives the block another number, as a camera does that has lost count.
    void Renumber(uint64_t id) { m_id = id; }
    /// Makes the leader say another size than the frame has.
    void SpoilLeader();
    /// Makes the end of a chunk say another length or identifier.
    /// @param choice  any number: of which chunk, and what is wrong
    /// @return false if the frame has no chunks
    bool SpoilChunk(uint64_t choice);
    uint32_t PacketCount() const;
    bool IsExtended() const { return m_isExtended; }
    /// @param packetId  below `PacketCount()`
    OvGige::StreamHeader Header(uint32_t packetId) const;
    /// What follows the header.
    OvGige::ByteView Payload(uint32_t packetId) const;

private:
    OvGige::Bytes m_room;
    size_t m_size = 0;  ///< of the frame, in bytes
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> m_chunks;
    size_t m_dataPerPacket = 1;
    bool m_isExtended = false;
    uint64_t m_id = 0;
    OvGige::Bytes m_leader;
    OvGige::Bytes m_trailer;
};

/// The number of the block after the camera's frame `frame`, which counts from 0. No block has
/// the number 0.
uint64_t BlockIdOf(uint64_t frame, bool isExtended);

}  // namespace OvSimulator
