#include "gige/stream/PacketTrain.h"

#include <sys/socket.h>

#include <algorithm>
#include <cstring>

namespace OvGige {

// The memory isn't set to zeros: most of it is never used.
PacketTrain::PacketTrain()
    : m_rest(new std::byte[kMessageMax]), m_gathered(new std::byte[kMessageMax]) {}

std::span<iovec> PacketTrain::SetUp(std::span<const PlannedPacket> plan) {
    size_t parts = 0;
    size_t length = 0;
    m_plannedCount = 0;
    for (const PlannedPacket& packet : plan.first(std::min(plan.size(), kMax))) {
        if (length >= kMessageMax) {
            break;
        }
        m_parts[parts++] = {m_heads[m_plannedCount++].data(), m_headSize};
        m_parts[parts++] = {packet.place, packet.length};
        length += m_headSize + packet.length;
    }
    m_parts[parts++] = {m_rest.get(), kMessageMax};
    return std::span(m_parts).first(parts);
}

size_t PacketTrain::Receive(int file, std::span<const PlannedPacket> plan, size_t headSize,
                            bool waits) {
    m_headSize = headSize;
    const std::span<iovec> parts = SetUp(plan);
    msghdr message{};
    message.msg_name = &m_sender;
    message.msg_namelen = sizeof m_sender;
    message.msg_iov = parts.data();
    message.msg_iovlen = parts.size();
    message.msg_control = m_noteSpace.bytes.data();
    message.msg_controllen = m_noteSpace.bytes.size();
    const ssize_t length = recvmsg(file, &message, waits ? 0 : MSG_DONTWAIT);
    if (length < 0) {
        return 0;
    }
    m_length = static_cast<size_t>(length);
    m_notes = ReadNotes(message);
    m_isCut = (message.msg_flags & MSG_TRUNC) != 0;
    const bool isTrain = m_notes.segmentSize != 0 && m_notes.segmentSize < m_length;
    m_segmentSize = isTrain ? m_notes.segmentSize : m_length;
    const size_t count = isTrain ? (m_length - 1) / m_segmentSize + 1 : 1;
    // Packets of another size than planned begin anywhere in the places.
    const bool fits = !isTrain || (!plan.empty() && m_headSize + plan[0].length == m_segmentSize);
    m_plannedCount = fits ? std::min(m_plannedCount, count) : 0;
    return count;
}

void PacketTrain::GatherFrom(size_t first) {
    m_firstGathered = first;
    size_t skipped = first * m_segmentSize;
    size_t left = m_length - std::min(m_length, skipped);
    std::byte* to = m_gathered.get();
    for (const iovec& part : m_parts) {
        if (left == 0) {
            break;
        }
        const size_t skip = std::min(skipped, part.iov_len);
        const size_t length = std::min(part.iov_len - skip, left);
        std::memcpy(to, static_cast<const std::byte*>(part.iov_base) + skip, length);
        to += length;
        left -= length;
        skipped -= skip;
    }
}

}  // namespace OvGige
