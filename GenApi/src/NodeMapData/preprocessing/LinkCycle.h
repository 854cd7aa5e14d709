#pragma once

#include <span>

#include "nodes/NodeDataMap.h"
#include "preprocessing/LinkWalk.h"

namespace GenApi_3_0_ORVANE {

inline constexpr const char* selectedCycleText = "ERROR : pSelected cycle detected : ";
inline constexpr const char* readCycleText = "ERROR : read cycle detected : ";

/// Throws a RuntimeException with the text and the names on the path from the
/// node on and back to it, as "A -> B -> A".
[[noreturn]] void ThrowLinkCycle(const char* text, const WalkPath_t& path, NodeID_t nodeID,
                                 const CNodeDataMap& map);

/// Returns the member of a list at the cursor, which it moves; the invalid identifier at the end.
inline NodeID_t NextMember(std::span<const NodeID_t> list, size_t& cursor) {
    return cursor < list.size() ? list[cursor++] : NodeID_t();
}

/// Returns the target of the next property, from the cursor on, whose identifier the predicate
/// accepts; the invalid identifier at the end.
template <typename Predicate>
NodeID_t NextProperty(const CNodeData& node, size_t& cursor, Predicate isFollowed) {
    const CNodeData::PropertyVector_t& properties = node.GetProperties();
    while (cursor < properties.size()) {
        const CProperty& property = properties[cursor++];
        if (isFollowed(property.GetPropertyID())) {
            return property.NodeID();
        }
    }
    return NodeID_t();
}

}  // namespace GenApi_3_0_ORVANE
