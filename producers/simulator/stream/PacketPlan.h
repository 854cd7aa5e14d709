#pragma once
/// The packets of a block in the order in which they leave, with what a bad network or a bad
/// camera does to them.

#include <deque>
#include <vector>

#include "simulator/Account.h"
#include "simulator/Chance.h"
#include "simulator/Faults.h"
#include "simulator/stream/StreamBlock.h"
#include "simulator/stream/StreamSocket.h"

namespace OvSimulator {

/// Parts of the packets belong to the block.
class PacketPlan {
public:
    /// @param sequence  tells this block from others for good, whatever number it has
    PacketPlan(const StreamBlock& block, uint64_t sequence, const Faults& faults, Account& account);

    std::span<const StreamPacket> Packets() const { return m_packets; }

private:
    void Add(const StreamBlock& block, uint32_t packetId);
    bool IsLost(uint32_t packetId) const;
    bool Hits(double share, Cause cause, Count count);
    void Truncate(StreamPacket& packet);
    void Corrupt(StreamPacket& packet);
    void Emit(const StreamPacket& packet);

    const StreamFaults m_faults;
    const Chance m_chance;
    Account& m_account;
    Occasion m_occasion;
    std::vector<StreamPacket> m_packets;
    std::vector<StreamPacket> m_held;     // until the next packet
    std::vector<StreamPacket> m_delayed;  // until the end of the block
    std::deque<OvGige::Bytes> m_copies;   // of payloads with a wrong byte
    bool m_isDamaged = false;
};

}  // namespace OvSimulator
