#pragma once
/// Many datagrams by one call of the system, with their data where it belongs.

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

namespace OvGige {

/// The memory of a batch is allocated once.
class PacketBatch {
public:
    /// Most datagrams of a batch.
    static constexpr size_t kMax = 32;
    /// Longest datagram that is taken: packets of 16 KiB are the largest that cameras send.
    static constexpr size_t kPacketMax = 16 * 1024 + 64;

    PacketBatch();

    /// Takes the datagrams that are there. The data of the first ones is written to the planned
    /// places, behind as many bytes as the planned form has before it.
    /// @param waits  whether to wait for the first one, for as long as the socket's own time-out
    /// @return how many; 0 if there was none
    size_t Receive(int file, std::span<const PlannedPacket> plan, size_t headSize, bool waits);

    /// The address that a datagram came from.
    Ipv4 Sender(size_t index) const;
    /// How many datagrams the system had dropped when this one came; 0 if none.
    uint32_t Drops(size_t index) const;
    /// Whether it was longer than what is taken.
    bool IsCut(size_t index) const;
    /// The first bytes of a datagram whose data was planned.
    ByteView Head(size_t index) const;
    /// Bytes of data at its planned place or beyond it.
    size_t DataSize(size_t index) const;
    /// Moves a datagram's data away from the place that was planned for it.
    void Gather(size_t index);
    /// A datagram whose data wasn't planned or was moved away.
    ByteView Packet(size_t index) const;

private:
    struct alignas(cmsghdr) Control {
        std::array<char, CMSG_SPACE(sizeof(uint32_t))> bytes;
    };

    std::byte* Memory(size_t index) const { return m_memory.get() + index * kPacketMax; }
    void SetUp(size_t index, const PlannedPacket* plan);

    std::unique_ptr<std::byte[]> m_memory;
    std::array<mmsghdr, kMax> m_messages{};
    std::array<std::array<iovec, 3>, kMax> m_parts{};
    std::array<sockaddr_in, kMax> m_senders{};
    std::array<Control, kMax> m_controls{};
    size_t m_headSize = 0;
};

}  // namespace OvGige
