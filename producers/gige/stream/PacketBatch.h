#pragma once
/// Many messages by one call of the system, with their data where it belongs.

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "gige/assembly/BlockAssembler.h"
#include "gige/protocol/Address.h"
#include "gige/stream/MessageNotes.h"

namespace OvGige {

/// The memory of a batch is allocated once.
class PacketBatch {
public:
    /// Most datagrams of a batch.
    static constexpr size_t kMax = 32;
    /// Packets of 16 KiB are the largest that cameras send.
    static constexpr size_t kPacketMax = 16 * 1024 + 64;

    PacketBatch();

    /// Takes the messages that are there. The data of the first ones is written to the planned
    /// places, after as many bytes as the planned form has before it.
    /// @param waits  whether to wait for the first one, for as long as the socket's own time-out
    /// @return how many; 0 if there was none
    size_t Receive(int file, std::span<const PlannedPacket> plan, size_t headSize, bool waits);

    /// The address that a message came from.
    Ipv4 Sender(size_t index) const;
    /// How many datagrams the system had dropped when this one came; 0 if none.
    uint32_t Drops(size_t index) const { return m_notes[index].drops; }
    /// Whether it was longer than what is taken.
    bool IsCut(size_t index) const;
    /// How many messages may lie at their planned places.
    size_t PlannedCount() const { return m_plannedCount; }
    /// The first bytes of a message whose data was planned.
    ByteView Head(size_t index) const;
    /// Bytes of data at its planned place or beyond it.
    size_t DataSize(size_t index) const;
    /// Moves the data of messages from `first` on away from the places that were planned for it.
    void GatherFrom(size_t first);
    /// A message whose data wasn't planned or was moved away.
    ByteView Packet(size_t index) const;
    /// Bytes of each packet but the last that a message has.
    size_t SegmentSize(size_t index) const;
    /// Whether a message was a train of packets.
    bool HasTrain() const { return m_hasTrain; }

private:
    /// No message is longer. Not a power of two, so that messages don't share lines of a cache.
    static constexpr size_t kMessageMax = 65536 + 64;

    std::byte* Memory(size_t index) const { return m_memory.get() + index * kMessageMax; }
    void SetUp(size_t index, const PlannedPacket* plan);

    std::unique_ptr<std::byte[]> m_memory;
    std::array<mmsghdr, kMax> m_messages{};
    std::array<std::array<iovec, 3>, kMax> m_parts{};
    std::array<sockaddr_in, kMax> m_senders{};
    std::array<NoteSpace, kMax> m_noteSpaces{};
    std::array<MessageNotes, kMax> m_notes{};
    size_t m_headSize = 0;
    size_t m_count = 0;
    size_t m_plannedCount = 0;
    bool m_hasTrain = false;
};

}  // namespace OvGige
