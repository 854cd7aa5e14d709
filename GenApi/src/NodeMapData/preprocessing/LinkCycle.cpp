// Cycles of links. A live node reads its children while it is read itself, so a cycle
// would never end. It is found here, once, and named.

#include "preprocessing/LinkCycle.h"

#include <algorithm>

#include "Base/GCException.h"

namespace GenApi_3_0_ORVANE {

/// The path begins before the circle, which begins where its last node is met.
void ThrowLinkCycle(const char* text, const WalkPath_t& path, NodeID_t nodeID,
                    const CNodeDataMap& map) {
    std::string message = text;
    const auto entry = std::find_if(path.begin(), path.end(),
                                    [&](const WalkStep& step) { return step.nodeID == nodeID; });
    std::for_each(entry, path.end(), [&](const WalkStep& step) {
        message.append(map.GetNodeName(step.nodeID)).append(" -> ");
    });
    RUNTIME_EXCEPTION("%s", message.append(map.GetNodeName(nodeID)).c_str());
}

}  // namespace GenApi_3_0_ORVANE
