#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>
#include <vector>

#include "properties/NodeID.h"

namespace GenApi_3_0_ORVANE {

/// A list of nodes for each node of a map, all in one block of memory: most lists are short, and a
/// description has tens of thousands of them.
class CNodeIDLists {
public:
    std::span<const NodeID_t> operator[](NodeID_t nodeID) const {
        const auto index = static_cast<size_t>(nodeID.ToIndex());
        return {m_Members.data() + m_Ends[index], m_Ends[index + 1] - m_Ends[index]};
    }

    /// Appends to the list of the node whose turn it is: they are filled in the order of the
    /// nodes.
    void Add(NodeID_t member) { m_Members.push_back(member); }
    /// Ends that list.
    void End() { m_Ends.push_back(m_Members.size()); }
    /// Ends that list after removing repeats, in ascending order.
    void EndAsSet() {
        const auto begin = m_Members.begin() + static_cast<ptrdiff_t>(m_Ends.back());
        std::sort(begin, m_Members.end());
        m_Members.erase(std::unique(begin, m_Members.end()), m_Members.end());
        End();
    }

    /// Makes the lists of the nodes that have a node in their lists, each once and in the given
    /// order.
    /// @param isCounted  called with a node and a member of its list
    template <class Predicate>
    CNodeIDLists Mirrored(const std::vector<NodeID_t>& order, const Predicate& isCounted) const {
        const size_t numNodes = m_Ends.size() - 1;
        const auto forEachPair = [&](const auto& use) {
            std::vector<NodeID_t> last(numNodes);
            for (const NodeID_t nodeID : order) {
                for (const NodeID_t member : (*this)[nodeID]) {
                    NodeID_t& seen = last[static_cast<size_t>(member.ToIndex())];
                    if (seen != nodeID && isCounted(nodeID, member)) {
                        seen = nodeID;
                        use(static_cast<size_t>(member.ToIndex()), nodeID);
                    }
                }
            }
        };
        CNodeIDLists mirrored;
        mirrored.m_Ends.assign(numNodes + 1, 0);
        forEachPair([&](size_t member, NodeID_t) { ++mirrored.m_Ends[member + 1]; });
        std::partial_sum(mirrored.m_Ends.begin(), mirrored.m_Ends.end(), mirrored.m_Ends.begin());
        mirrored.m_Members.resize(mirrored.m_Ends.back());
        std::vector<size_t> next = mirrored.m_Ends;
        forEachPair(
            [&](size_t member, NodeID_t nodeID) { mirrored.m_Members[next[member]++] = nodeID; });
        return mirrored;
    }

private:
    std::vector<NodeID_t> m_Members;
    /// Where each list ends; the one before the first at 0.
    std::vector<size_t> m_Ends{0};
};

}  // namespace GenApi_3_0_ORVANE
