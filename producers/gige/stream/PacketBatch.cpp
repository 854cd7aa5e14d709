#include "gige/stream/PacketBatch.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace OvGige {

// The memory isn't set to zeros: most of it is never used.
PacketBatch::PacketBatch() : m_memory(new std::byte[kMax * kMessageMax]) {}

void PacketBatch::SetUp(size_t index, const PlannedPacket* plan) {
    std::array<iovec, 3>& parts = m_parts[index];
    std::byte* const memory = Memory(index);
    msghdr& message = m_messages[index].msg_hdr;
    message.msg_name = &m_senders[index];
    message.msg_namelen = sizeof(sockaddr_in);
    message.msg_iov = parts.data();
    message.msg_control = m_noteSpaces[index].bytes.data();
    message.msg_controllen = m_noteSpaces[index].bytes.size();
    message.msg_flags = 0;
    if (plan == nullptr) {
        parts[0] = {memory, kMessageMax};
        message.msg_iovlen = 1;
        return;
    }
    // What lies around the planned place is where it belongs if the data is gathered.
    const size_t dataEnd = m_headSize + plan->length;
    parts[0] = {memory, m_headSize};
    parts[1] = {plan->place, plan->length};
    parts[2] = {memory + dataEnd, kMessageMax - dataEnd};
    message.msg_iovlen = parts.size();
}

size_t PacketBatch::Receive(int file, std::span<const PlannedPacket> plan, size_t headSize,
                            bool waits) {
    m_headSize = headSize;
    for (size_t i = 0; i < kMax; ++i) {
        const bool isPlanned = i < plan.size() && headSize + plan[i].length <= kMessageMax;
        SetUp(i, isPlanned ? &plan[i] : nullptr);
    }
    const int count =
        recvmmsg(file, m_messages.data(), kMax, waits ? MSG_WAITFORONE : MSG_DONTWAIT, nullptr);
    m_count = count > 0 ? static_cast<size_t>(count) : 0;
    m_plannedCount = std::min(m_count, plan.size());
    m_hasTrain = false;
    for (size_t i = 0; i < m_count; ++i) {
        m_notes[i] = ReadNotes(m_messages[i].msg_hdr);
        m_hasTrain = m_hasTrain || SegmentSize(i) < m_messages[i].msg_len;
    }
    return m_count;
}

Ipv4 PacketBatch::Sender(size_t index) const {
    return {ntohl(m_senders[index].sin_addr.s_addr)};
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

void PacketBatch::GatherFrom(size_t first) {
    for (size_t i = first; i < m_plannedCount; ++i) {
        const iovec& planned = m_parts[i][1];
        if (m_messages[i].msg_hdr.msg_iovlen > 1) {
            std::memcpy(Memory(i) + m_headSize, planned.iov_base,
                        std::min(DataSize(i), planned.iov_len));
        }
    }
}

size_t PacketBatch::SegmentSize(size_t index) const {
    const size_t length = m_messages[index].msg_len;
    const size_t size = m_notes[index].segmentSize;
    return size == 0 ? length : std::min(size, length);
}

ByteView PacketBatch::Packet(size_t index) const {
    return {Memory(index), m_messages[index].msg_len};
}

}  // namespace OvGige
