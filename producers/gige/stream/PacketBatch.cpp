#include "gige/stream/PacketBatch.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace OvGige {

// The memory isn't set to zeros: most of it is never used.
PacketBatch::PacketBatch() : m_memory(new std::byte[kMax * kPacketMax]) {}

void PacketBatch::SetUp(size_t index, const PlannedPacket* plan) {
    std::array<iovec, 3>& parts = m_parts[index];
    std::byte* const memory = Memory(index);
    msghdr& message = m_messages[index].msg_hdr;
    message.msg_name = &m_senders[index];
    message.msg_namelen = sizeof(sockaddr_in);
    message.msg_iov = parts.data();
    message.msg_control = m_controls[index].bytes.data();
    message.msg_controllen = m_controls[index].bytes.size();
    message.msg_flags = 0;
    if (plan == nullptr) {
        parts[0] = {memory, kPacketMax};
        message.msg_iovlen = 1;
        return;
    }
    // What lies around the planned place is where it belongs if the data is gathered.
    const size_t dataEnd = m_headSize + plan->length;
    parts[0] = {memory, m_headSize};
    parts[1] = {plan->place, plan->length};
    parts[2] = {memory + dataEnd, kPacketMax - dataEnd};
    message.msg_iovlen = parts.size();
}

size_t PacketBatch::Receive(int file, std::span<const PlannedPacket> plan, size_t headSize,
                            bool waits) {
    m_headSize = headSize;
    for (size_t i = 0; i < kMax; ++i) {
        const bool isPlanned = i < plan.size() && headSize + plan[i].length <= kPacketMax;
        SetUp(i, isPlanned ? &plan[i] : nullptr);
    }
    const int count =
        recvmmsg(file, m_messages.data(), kMax, waits ? MSG_WAITFORONE : MSG_DONTWAIT, nullptr);
    return count > 0 ? static_cast<size_t>(count) : 0;
}

Ipv4 PacketBatch::Sender(size_t index) const {
    return {ntohl(m_senders[index].sin_addr.s_addr)};
}

uint32_t PacketBatch::Drops(size_t index) const {
    const msghdr& message = m_messages[index].msg_hdr;
    if (message.msg_controllen < sizeof(cmsghdr)) {
        return 0;
    }
    const cmsghdr* const item = CMSG_FIRSTHDR(&message);
    uint32_t drops = 0;
    if (item->cmsg_level == SOL_SOCKET && item->cmsg_type == SO_RXQ_OVFL) {
        std::memcpy(&drops, CMSG_DATA(item), sizeof drops);
    }
    return drops;
}

bool PacketBatch::IsCut(size_t index) const {
    return (m_messages[index].msg_hdr.msg_flags & MSG_TRUNC) != 0;
}

ByteView PacketBatch::Head(size_t index) const {
    return {Memory(index), std::min<size_t>(m_messages[index].msg_len, m_headSize)};
}

size_t PacketBatch::DataSize(size_t index) const {
    return m_messages[index].msg_len - Head(index).size();
}

void PacketBatch::Gather(size_t index) {
    const iovec& planned = m_parts[index][1];
    if (m_messages[index].msg_hdr.msg_iovlen > 1) {
        std::memcpy(Memory(index) + m_headSize, planned.iov_base,
                    std::min(DataSize(index), planned.iov_len));
    }
}

ByteView PacketBatch::Packet(size_t index) const {
    return {Memory(index), m_messages[index].msg_len};
}

}  // namespace OvGige
