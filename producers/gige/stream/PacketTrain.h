#pragma once
/// Packets of one size that the system hands over as one message, with their data where it
/// belongs.

#include <netinet/in.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>

#include "gige/assembly/BlockAssembler.h"
#include "gige/protocol/Address.h"
#include "gige/stream/MessageNotes.h"

namespace OvGige {

/// Offers what `PacketBatch` does, for one message of many packets.
class PacketTrain {
public:
    /// Most packets that are planned: the system makes no longer trains of what a network brings.
    static constexpr size_t kMax = 64;

    PacketTrain();

    /// Takes a message that is there. The data of the first packets is written to the planned
    /// places, after as many bytes as the planned form has before it.
    /// @param waits  whether to wait for it, for as long as the socket's own time-out
    /// @return how many packets it has; 0 if there was none
    size_t Receive(int file, std::span<const PlannedPacket> plan, size_t headSize, bool waits);

    Ipv4 Sender(size_t) const { return {ntohl(m_sender.sin_addr.s_addr)}; }
    uint32_t Drops(size_t) const { return m_notes.drops; }
    bool IsCut(size_t) const { return m_isCut; }
    /// How many packets may lie at their planned places.
    size_t PlannedCount() const { return m_plannedCount; }
    /// The first bytes of a planned packet.
    ByteView Head(size_t index) const {
        return {m_heads[index].data(), std::min(PacketSize(index), m_headSize)};
    }
    /// Bytes of data at the planned place or beyond it.
    size_t DataSize(size_t index) const { return PacketSize(index) - Head(index).size(); }
    /// Moves the packets from `first` on away from the places that were planned.
    void GatherFrom(size_t first);
    /// A packet that was moved away.
    ByteView Packet(size_t index) const {
        return {m_gathered.get() + (index - m_firstGathered) * m_segmentSize, PacketSize(index)};
    }
    /// Packets of a train are single ones.
    size_t SegmentSize(size_t index) const { return PacketSize(index); }

private:
    /// No message is longer.
    static constexpr size_t kMessageMax = 65536;

    size_t PacketSize(size_t index) const {
        return std::min(m_segmentSize, m_length - index * m_segmentSize);
    }
    std::span<iovec> SetUp(std::span<const PlannedPacket> plan);

    std::unique_ptr<std::byte[]> m_rest;      // of a message, after what was planned
    std::unique_ptr<std::byte[]> m_gathered;  // what was moved away
    std::array<std::array<std::byte, kExtendedStreamHeaderSize + 16>, kMax> m_heads{};
    std::array<iovec, 2 * kMax + 1> m_parts{};
    sockaddr_in m_sender{};
    NoteSpace m_noteSpace{};
    MessageNotes m_notes;
    size_t m_headSize = 0;
    size_t m_length = 0;
    size_t m_segmentSize = 0;
    size_t m_plannedCount = 0;
    size_t m_firstGathered = 0;
    bool m_isCut = false;
};

}  // namespace OvGige
