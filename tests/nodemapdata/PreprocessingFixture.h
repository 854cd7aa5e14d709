#pragma once

#include <memory>

#include "support/NodeDataBuilder.h"

namespace NodeDataTest {

/// A description that has its first node already.
class Preprocessing : public testing::Test {
protected:
    Preprocessing() { AddRoot(m_Map); }

    CNodeData& Add(CNodeData::ENodeType_t type, const char* name, const Links& links = {}) {
        return AddNode(m_Map, type, name, links);
    }
    void Run() { CNodeDataMapFactory::PreProcessNodeDataMap(&m_Map); }
    std::string FailureOfRun() {
        return FailureText([this] { Run(); });
    }
    std::vector<std::string> Of(const char* name, CPropertyID id) const {
        return LinksOf(m_Map, name, id);
    }
    /// Makes the description one of another schema version.
    void SetVersion(int major, int minor) {
        CNodeData& root = NodeOf(m_Map, "_RegisterDescription");
        root.RemoveProperties(ID::SchemaMajorVersion_ID);
        root.RemoveProperties(ID::SchemaMinorVersion_ID);
        root.AddProperty(ID::SchemaMajorVersion_ID, major);
        root.AddProperty(ID::SchemaMinorVersion_ID, minor);
    }
    static void AddOffset(CNodeDataMap& map, CNodeData& node, const char* index,
                          const char* offset) {
        node.AddProperty(ID::pIndex_ID, map.GetNodeID(index, true))
            .SetAttribute(std::make_unique<CProperty>(&map, CPropertyID(ID::pOffset_ID),
                                                      map.GetNodeID(offset, true)));
    }

    CNodeDataMap m_Map;
};

}  // namespace NodeDataTest
