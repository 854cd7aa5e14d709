// Circles of links that a description must not have. Reading along such a circle would never end.

#include "preprocessing/LinkCycle.h"
#include "preprocessing/NodeDataPreprocessor.h"

namespace GenApi_3_0_ORVANE {

/// Follows properties of some kinds, and refuses to come back to a node on the way.
struct CNodeDataPreprocessor::PropertyCycleWalk {
    NodeID_t NextLink(NodeID_t nodeID, size_t& cursor) const {
        const CNodeData& node = *map.GetNodeData(nodeID);
        NodeID_t target = NextProperty(node, cursor, isFollowed);
        while (isSelfTolerated && target == nodeID) {
            target = NextProperty(node, cursor, isFollowed);
        }
        return target;
    }
    static void OnDone(NodeID_t) {}
    [[noreturn]] void OnCycle(const WalkPath_t& path, NodeID_t nodeID) const {
        ThrowLinkCycle(text, path, nodeID, map);
    }

    const CNodeDataMap& map;
    CWalkStates states;
    bool (*isFollowed)(CPropertyID);
    const char* text;
    /// Whether a node may lead to itself. Such a node does no harm to others and fails
    /// when it is used.
    bool isSelfTolerated;
};

void CNodeDataPreprocessor::DetectSelectedCycles() {
    PropertyCycleWalk walk{m_Map, CWalkStates(GetNumNodes()),
                           [](CPropertyID id) { return id == CPropertyID::pSelected_ID; },
                           selectedCycleText, true};
    WalkAllLinks(GetNumNodes(), walk);
}

void CNodeDataPreprocessor::DetectReadCycles() {
    if (IsReadCycleTolerated()) {
        return;
    }
    PropertyCycleWalk walk{m_Map, CWalkStates(GetNumNodes()),
                           [](CPropertyID id) { return id.IsReadingLink(); }, readCycleText, false};
    WalkAllLinks(GetNumNodes(), walk);
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
