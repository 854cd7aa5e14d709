#include "simulator/stream/PacketPlan.h"

#include <algorithm>
#include <utility>

namespace OvSimulator {

using namespace OvGige;

PacketPlan::PacketPlan(const StreamBlock& block, uint64_t sequence, const Faults& faults,
                       Account& account)
    : m_faults(faults.stream), m_chance(faults.seed), m_account(account) {
    m_occasion.block = sequence;
    m_packets.reserve(block.PacketCount());
    for (uint32_t id = 0; id < block.PacketCount(); ++id) {
        m_occasion.packet = id;
        Add(block, id);
    }
    // The last packet has no next one.
    std::copy(m_held.begin(), m_held.end(), std::back_inserter(m_packets));
    std::copy(m_delayed.begin(), m_delayed.end(), std::back_inserter(m_packets));
    if (m_isDamaged) {
        m_account.Add(Count::DamagedBlocks);
    }
}

void PacketPlan::Add(const StreamBlock& block, uint32_t packetId) {
    if (IsLost(packetId)) {
        m_account.Add(Count::LostPackets);
        m_isDamaged = true;
        return;
    }
    StreamPacket packet(block.Header(packetId), block.Payload(packetId));
    if (Hits(m_faults.truncated, Cause::Truncated, Count::TruncatedPackets)) {
        Truncate(packet);
        Emit(packet);
    } else if (Hits(m_faults.corrupted, Cause::Corrupted, Count::CorruptedPackets)) {
        Corrupt(packet);
        Emit(packet);
    } else if (Hits(m_faults.doubled, Cause::Doubled, Count::DoubledPackets)) {
        Emit(packet);
        m_packets.push_back(packet);
    } else if (Hits(m_faults.delayed, Cause::Delayed, Count::DelayedPackets)) {
        m_delayed.push_back(packet);
    } else if (Hits(m_faults.reordered, Cause::Reordered, Count::ReorderedPackets)) {
        m_held.push_back(packet);
    } else {
        Emit(packet);
    }
}

void PacketPlan::Emit(const StreamPacket& packet) {
    m_packets.push_back(packet);
    std::copy(m_held.begin(), m_held.end(), std::back_inserter(m_packets));
    m_held.clear();
}

bool PacketPlan::IsLost(uint32_t packetId) const {
    for (uint64_t i = 0; i < std::min<uint64_t>(m_faults.burst, packetId + uint64_t{1}); ++i) {
        if (m_chance.Hits(m_faults.lost, Cause::Lost,
                          {.block = m_occasion.block, .packet = packetId - i})) {
            return true;
        }
    }
    return false;
}

bool PacketPlan::Hits(double share, Cause cause, Count count) {
    const bool hits = m_chance.Hits(share, cause, m_occasion);
    if (hits) {
        m_account.Add(count);
    }
    return hits;
}

void PacketPlan::Truncate(StreamPacket& packet) {
    m_isDamaged = true;
    const size_t length =
        m_chance.Below(packet.headerSize + packet.payload.size(), Cause::Truncated, m_occasion);
    packet.headerSize = std::min(packet.headerSize, length);
    packet.payload = packet.payload.first(length - packet.headerSize);
}

void PacketPlan::Corrupt(StreamPacket& packet) {
    m_isDamaged = true;
    constexpr std::byte kWrong{0xFF};
    const size_t at =
        m_chance.Below(packet.headerSize + packet.payload.size(), Cause::Corrupted, m_occasion);
    if (at < packet.headerSize) {
        packet.header[at] ^= kWrong;
        return;
    }
    Bytes& copy = m_copies.emplace_back(packet.payload.begin(), packet.payload.end());
    copy[at - packet.headerSize] ^= kWrong;
    packet.payload = copy;
}

}  // namespace OvSimulator
