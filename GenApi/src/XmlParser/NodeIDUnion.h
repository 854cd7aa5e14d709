#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "NodeMapData/NodeIDSet.h"

namespace GenApi_3_0_ORVANE {

/// Unites sets of nodes of one map, again and again in the same scratch memory.
/// A bit per node makes a member that many of the sets share as cheap as one
/// that is new, which is what closures need.
class CNodeIDUnion {
public:
    explicit CNodeIDUnion(size_t numNodes) : m_Words((numNodes + wordBits - 1) / wordBits) {}

    void Clear() { std::fill(m_Words.begin(), m_Words.end(), 0); }
    void Add(NodeID_t nodeID) { Word(nodeID) |= Bit(nodeID); }
    void Add(const CNodeIDSet& set) {
        for (const NodeID_t nodeID : set) {
            Add(nodeID);
        }
    }
    void Remove(NodeID_t nodeID) { Word(nodeID) &= ~Bit(nodeID); }

    size_t Count() const {
        size_t count = 0;
        for (const uint64_t word : m_Words) {
            count += static_cast<size_t>(std::popcount(word));
        }
        return count;
    }

    /// Puts the members into a set, in place of its own.
    void Store(CNodeIDSet& set) const {
        set.m_Members.clear();
        set.m_Members.reserve(Count());
        for (size_t index = 0; index < m_Words.size(); ++index) {
            for (uint64_t rest = m_Words[index]; rest != 0; rest &= rest - 1) {
                const auto bit = static_cast<size_t>(std::countr_zero(rest));
                set.m_Members.emplace_back(index * wordBits + bit);
            }
        }
    }

private:
    static constexpr size_t wordBits = 64;

    uint64_t& Word(NodeID_t nodeID) {
        return m_Words[static_cast<size_t>(nodeID.ToIndex()) / wordBits];
    }
    static uint64_t Bit(NodeID_t nodeID) {
        return uint64_t{1} << (static_cast<size_t>(nodeID.ToIndex()) % wordBits);
    }

    std::vector<uint64_t> m_Words;
};

}  // namespace GenApi_3_0_ORVANE
