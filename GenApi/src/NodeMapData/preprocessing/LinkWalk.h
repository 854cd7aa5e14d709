#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "properties/NodeID.h"

namespace GenApi_3_0_ORVANE {

/// How far a walk has come with a node.
enum EWalkState : uint8_t { Untouched = 0, InProgress = 1, Done = 2 };

/// The states of all nodes of a map, which keep a walk from coming to a node twice.
class CWalkStates {
public:
    explicit CWalkStates(size_t numNodes) : m_States(numNodes, Untouched) {}
    EWalkState& operator[](NodeID_t nodeID) {
        return m_States[static_cast<size_t>(nodeID.ToIndex())];
    }

private:
    std::vector<EWalkState> m_States;
};

/// A node on the way of a walk and the position of its next link to follow.
struct WalkStep {
    NodeID_t nodeID;
    size_t cursor;
};
using WalkPath_t = std::vector<WalkStep>;

/// Walks depth first over all nodes that links reach, without recursion, since a description
/// decides how long a chain of links is.
///
/// Policy has:
/// - `states`: CWalkStates;
/// - `NextLink(nodeID, cursor)`: the next target from the cursor on, which it moves; the invalid
///   identifier at the end;
/// - `OnDone(nodeID)`: called when all links of the node have been followed;
/// - `OnCycle(path, nodeID)`: called when a link of the last step leads to a node that is on the
///   path already. If it returns, the link is passed over.
template <typename Policy>
void WalkLinks(NodeID_t start, WalkPath_t& path, Policy& policy) {
    const auto enter = [&](NodeID_t nodeID) {
        EWalkState& state = policy.states[nodeID];
        if (state == Untouched) {
            state = InProgress;
            path.push_back({nodeID, 0});
        } else if (state == InProgress) {
            policy.OnCycle(path, nodeID);
        }
    };
    path.clear();
    enter(start);
    while (!path.empty()) {
        WalkStep& step = path.back();
        const NodeID_t nodeID = step.nodeID;
        const NodeID_t target = policy.NextLink(nodeID, step.cursor);
        if (target.IsValid()) {
            enter(target);
            continue;
        }
        policy.states[nodeID] = Done;
        path.pop_back();
        policy.OnDone(nodeID);
    }
}

/// The same walk from every node of a map, in identifier order. No node is walked twice.
template <typename Policy>
void WalkAllLinks(size_t numNodes, Policy& policy) {
    WalkPath_t path;
    for (size_t index = 0; index < numNodes; ++index) {
        WalkLinks(NodeID_t(index), path, policy);
    }
}

}  // namespace GenApi_3_0_ORVANE
