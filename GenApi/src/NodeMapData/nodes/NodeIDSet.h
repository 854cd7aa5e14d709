#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "properties/NodeID.h"

namespace GenApi_3_0_ORVANE {

/// An ordered set of node identifiers in one block of memory. The closures of a
/// large description hold hundreds of thousands of members, at four bytes each
/// here; a tree would take twelve times that.
class CNodeIDSet {
public:
    using const_iterator = std::vector<NodeID_t>::const_iterator;
    using const_reverse_iterator = std::vector<NodeID_t>::const_reverse_iterator;

    CNodeIDSet() = default;
    /// Takes a list in any order and with repeats.
    explicit CNodeIDSet(std::vector<NodeID_t> members) : m_Members(std::move(members)) {
        std::sort(m_Members.begin(), m_Members.end());
        m_Members.erase(std::unique(m_Members.begin(), m_Members.end()), m_Members.end());
    }

    const_iterator begin() const { return m_Members.begin(); }
    const_iterator end() const { return m_Members.end(); }
    const_reverse_iterator rbegin() const { return m_Members.rbegin(); }
    const_reverse_iterator rend() const { return m_Members.rend(); }
    size_t size() const { return m_Members.size(); }
    /// The member at a place in ascending order.
    NodeID_t operator[](size_t place) const { return m_Members[place]; }

private:
    friend class CNodeIDUnion;

    std::vector<NodeID_t> m_Members;
};

}  // namespace GenApi_3_0_ORVANE
