#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "properties/NodeID.h"

namespace GenApi_3_0_ORVANE {

/// Unites sets of nodes of one map, again and again in the same scratch memory.
/// A bit per node makes a member that many of the sets share as cheap as one
/// that is new, which is what closures need. Only words that hold a member are
/// ever looked at: most sets are small, however large the map is.
class CNodeIDUnion {
public:
    explicit CNodeIDUnion(size_t numNodes) : m_Words((numNodes + wordBits - 1) / wordBits) {}

    void Clear() {
        for (const size_t index : m_Touched) {
            m_Words[index] = 0;
        }
        m_Touched.clear();
        m_Count = 0;
    }
    bool Has(NodeID_t nodeID) const { return (m_Words[WordOf(nodeID)] & Bit(nodeID)) != 0; }
    void Add(NodeID_t nodeID) {
        uint64_t& word = m_Words[WordOf(nodeID)];
        if (word == 0) {
            m_Touched.push_back(WordOf(nodeID));
        }
        m_Count += (word & Bit(nodeID)) == 0 ? 1 : 0;
        word |= Bit(nodeID);
    }
    void Add(std::span<const NodeID_t> nodes) {
        for (const NodeID_t nodeID : nodes) {
            Add(nodeID);
        }
    }
    size_t Count() const { return m_Count; }

    /// Returns the members in ascending order.
    /// @param except  is left out; the invalid identifier leaves out none
    std::vector<NodeID_t> GetMembers(NodeID_t except = NodeID_t()) {
        std::sort(m_Touched.begin(), m_Touched.end());
        std::vector<NodeID_t> members;
        members.reserve(m_Count - (except.IsValid() && Has(except) ? 1 : 0));
        for (const size_t index : m_Touched) {
            for (uint64_t rest = m_Words[index]; rest != 0; rest &= rest - 1) {
                const auto bit = static_cast<size_t>(std::countr_zero(rest));
                if (const NodeID_t member(index * wordBits + bit); member != except) {
                    members.push_back(member);
                }
            }
        }
        return members;
    }

private:
    static constexpr size_t wordBits = 64;

    static size_t WordOf(NodeID_t nodeID) {
        return static_cast<size_t>(nodeID.ToIndex()) / wordBits;
    }
    static uint64_t Bit(NodeID_t nodeID) {
        return uint64_t{1} << (static_cast<size_t>(nodeID.ToIndex()) % wordBits);
    }

    std::vector<uint64_t> m_Words;
    /// The words that hold members.
    std::vector<size_t> m_Touched;
    size_t m_Count = 0;
};

}  // namespace GenApi_3_0_ORVANE
