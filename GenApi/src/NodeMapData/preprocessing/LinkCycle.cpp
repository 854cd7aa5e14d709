// Cycles of links. A live node reads its children while it is read itself, so a cycle
// would never end. It is found here, once, and named.

#include "preprocessing/LinkCycle.h"

#include <algorithm>

#include "Base/GCException.h"

namespace GenApi_3_0_ORVANE {

/// The path begins before the circle, which begins where its last node is met.
void ThrowLinkCycle(const char* text, const WalkPath_t& path, const CNodeData& node) {
    std::string message = text;
    const auto entry = std::find_if(path.begin(), path.end(),
                                    [&](const WalkStep& step) { return step.pNodeData == &node; });
    std::for_each(entry, path.end(), [&](const WalkStep& step) {
        message.append(step.pNodeData->GetName()).append(" -> ");
    });
    RUNTIME_EXCEPTION("%s", message.append(node.GetName()).c_str());
}

}  // namespace GenApi_3_0_ORVANE
