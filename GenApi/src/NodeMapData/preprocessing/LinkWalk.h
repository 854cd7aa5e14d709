#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

/// How far a walk has come with a node.
enum EWalkState : uint8_t { Untouched = 0, InProgress = 1, Done = 2 };

/// A node on the way of a walk and the position of its next link to follow.
struct WalkStep {
    CNodeData* pNodeData;
    size_t cursor;
};
using WalkPath_t = std::vector<WalkStep>;

/// Walks depth first over all nodes that links reach, without recursion, since a description
/// decides how long a chain of links is.
///
/// Policy has:
/// - `State(node)`: a reference to a number that holds an EWalkState;
/// - `NextLink(node, cursor)`: the next target from the cursor on, which it moves; the invalid
///   identifier at the end;
/// - `OnDone(node)`: called when all links of the node have been followed;
/// - `OnCycle(path, node)`: called when a link of the last step leads to a node that is on the
///   path already. If it returns, the link is passed over.
template <typename Policy>
void WalkLinks(const CNodeDataMap& map, CNodeData& start, WalkPath_t& path, Policy& policy) {
    const auto enter = [&](CNodeData& node) {
        auto& state = policy.State(node);
        if (state == Untouched) {
            state = InProgress;
            path.push_back({&node, 0});
        } else if (state == InProgress) {
            policy.OnCycle(path, node);
        }
    };
    path.clear();
    enter(start);
    while (!path.empty()) {
        WalkStep& step = path.back();
        const NodeID_t target = policy.NextLink(*step.pNodeData, step.cursor);
        if (target.IsValid()) {
            enter(*map.GetNodeData(target));
            continue;
        }
        CNodeData& node = *step.pNodeData;
        policy.State(node) = Done;
        path.pop_back();
        policy.OnDone(node);
    }
}

/// The same walk from every node of the map, in identifier order.
/// @param policy  keeps the states of all walks, so that no node is walked twice
template <typename Policy>
void WalkAllLinks(const CNodeDataMap& map, Policy& policy) {
    WalkPath_t path;
    for (size_t index = 0; index < map.GetNumNodeIDs(); ++index) {
        WalkLinks(map, *map.GetNodeData(NodeID_t(index)), path, policy);
    }
}

}  // namespace GenApi_3_0_ORVANE
