// Circles of links that a description must not have. Reading along such a circle would never end.

#include "preprocessing/LinkCycle.h"
#include "preprocessing/NodeDataPreprocessor.h"

namespace GenApi_3_0_ORVANE {

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
    PropertyCycleWalk walk{&CNodeData::m_SelectedVisited,
                           [](CPropertyID id) { return id == CPropertyID::pSelected_ID; },
                           selectedCycleText, true};
    WalkAllLinks(m_Map, walk);
}

void CNodeDataPreprocessor::DetectReadCycles() {
    if (IsReadCycleTolerated()) {
        return;
    }
    PropertyCycleWalk walk{&CNodeData::m_ReadVisited,
                           [](CPropertyID id) { return id.IsReadingLink(); }, readCycleText, false};
    WalkAllLinks(m_Map, walk);
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
