// Cycles of links. A live node reads its children while it is read itself, so a cycle
// would never end. It is found here, once, and named.

#include "preprocessing/LinkCycle.h"

#include <algorithm>

#include "Base/GCException.h"
#include "preprocessing/NodeDataPreprocessor.h"

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

/// Follows properties of some kinds, and refuses to come back to a node on the way.
struct CNodeDataPreprocessor::PropertyCycleWalk {
    uint8_t& State(CNodeData& node) const { return node.*state; }
    NodeID_t NextLink(const CNodeData& node, size_t& cursor) const {
        NodeID_t target = NextProperty(node, cursor, isFollowed);
        while (isSelfTolerated && target == node.GetNodeID()) {
            target = NextProperty(node, cursor, isFollowed);
        }
        return target;
    }
    static void OnDone(const CNodeData&) {}
    [[noreturn]] void OnCycle(const WalkPath_t& path, const CNodeData& node) const {
        ThrowLinkCycle(text, path, node);
    }

    uint8_t CNodeData::*state;
    bool (*isFollowed)(CPropertyID);
    const char* text;
    /// Whether a node may lead to itself. Such a node does no harm to others and fails
    /// when it is used.
    bool isSelfTolerated;
};

void CNodeDataPreprocessor::DetectSelectedCycles() {
    WalkAllLinks(m_Map,
                 PropertyCycleWalk{&CNodeData::m_SelectedVisited,
                                   [](CPropertyID id) { return id == CPropertyID::pSelected_ID; },
                                   selectedCycleText, true});
}

void CNodeDataPreprocessor::DetectReadCycles() {
    if (!IsReadCycleTolerated()) {
        WalkAllLinks(m_Map, PropertyCycleWalk{&CNodeData::m_ReadVisited,
                                              [](CPropertyID id) { return id.IsReadingLink(); },
                                              readCycleText, false});
    }
}

/// Descriptions of the first schema version were never checked for read cycles, and some have
/// them; their cameras have to go on working.
bool CNodeDataPreprocessor::IsReadCycleTolerated() const {
    const CNodeData& root = Node(m_Map.FindNodeID(kRootNodeName));
    const auto version = [&root](CPropertyID id) {
        const CProperty* pVersion = root.FindProperty(id);
        return static_cast<uint16_t>(pVersion == nullptr ? 0 : pVersion->Integer());
    };
    return version(CPropertyID::SchemaMajorVersion_ID) == 1 &&
           version(CPropertyID::SchemaMinorVersion_ID) == 0;
}

}  // namespace GenApi_3_0_ORVANE
