#pragma once
/// Builds the data of descriptions in few lines, and finds nodes and links in them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "nodes/NodeDataMap.h"
#include "reader/NodeDataMapFactory.h"
#include "support/FailureText.h"

namespace NodeDataTest {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
using ID = CPropertyID;
using Links = std::vector<std::pair<CPropertyID, const char*>>;

/// The numbers of the enumerations that tests need.
enum EYesNo { No = 0, Yes = 1 };
enum ENameSpace { Custom = 0, Standard = 1 };

/// A named node with links, not yet stored.
inline std::unique_ptr<CNodeData> MakeNode(CNodeDataMap& map, CNodeData::ENodeType_t type,
                                           const char* name, const Links& links = {}) {
    auto pNode = std::make_unique<CNodeData>(type, &map);
    pNode->SetName(name);
    for (const auto& [id, target] : links) {
        pNode->AddProperty(id, map.GetNodeID(target, true));
    }
    return pNode;
}

inline CNodeData& AddNode(CNodeDataMap& map, CNodeData::ENodeType_t type, const char* name,
                          const Links& links = {}) {
    map.SetNodeData(MakeNode(map, type, name, links), false);
    return *map.GetLastNodeData();
}

/// The node that every description begins with.
inline CNodeData& AddRoot(CNodeDataMap& map, int major = 1, int minor = 1) {
    CNodeData& root = AddNode(map, CNodeData::RegisterDescription_ID, "_RegisterDescription");
    root.AddProperty(ID::SchemaMajorVersion_ID, major);
    root.AddProperty(ID::SchemaMinorVersion_ID, minor);
    return root;
}

inline CNodeData& NodeOf(const CNodeDataMap& map, const char* name) {
    return *map.GetNodeData(map.FindNodeID(name));
}

/// Names of the targets of a node's links of one kind, in list order.
inline std::vector<std::string> LinksOf(const CNodeDataMap& map, const char* name, CPropertyID id) {
    std::vector<std::string> targets;
    NodeOf(map, name).ForEachProperty([&](const CProperty& property) {
        if (property.GetPropertyID() == id) {
            targets.push_back(map.GetNodeName(property.NodeID()));
        }
    });
    return targets;
}

/// The identifiers of all properties of a node in their order.
inline std::vector<CPropertyID::EProperty_ID_t> IDsOf(const CNodeData& node) {
    std::vector<CPropertyID::EProperty_ID_t> ids;
    node.ForEachProperty(
        [&ids](const CProperty& property) { ids.push_back(property.GetPropertyID()); });
    return ids;
}

inline size_t CountOf(const CNodeData& node, CPropertyID id) {
    size_t count = 0;
    node.ForEachProperty(
        [&](const CProperty& property) { count += property.GetPropertyID() == id ? 1 : 0; });
    return count;
}

}  // namespace NodeDataTest
