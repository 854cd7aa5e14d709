#include "NodeMapFactoryNodes.h"

#include "NodeCreation.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// All nodes, registered and without properties: links may point forward.
void RegisterNodes(CNodeMap& map, const CNodeDataMap& data) {
    for (size_t i = 1; i < data.GetNumNodeIDs(); ++i) {
        const CNodeData& node = *data.GetNodeData(NodeID_t(i));
        map.RegisterNode(CreateNode(node.GetNodeType()).release(), node.GetNodeType(),
                         node.GetNodeID());
    }
}

void SetProperties(CNodeMap& map, const CNodeDataMap& data) {
    for (size_t i = 1; i < data.GetNumNodeIDs(); ++i) {
        INodePrivate& node = *map.GetNodeByID(NodeID_t(i));
        for (const CProperty& property : data.GetNodeData(NodeID_t(i))->GetProperties()) {
            node.SetProperty(property);
        }
    }
}

/// Stores what a node or a map tells of itself under its name.
template <class Teller>
void Describe(Teller& teller, CNodeData::ENodeType_t type, const char* name, CNodeDataMap& data) {
    auto node = std::make_unique<CNodeData>(type, &data);
    node->SetName(name);
    for (uint32_t number = 0; number < CPropertyID::_Undefined_ID; ++number) {
        const CPropertyID id(static_cast<CPropertyID::EProperty_ID_t>(number));
        if (id != CPropertyID::Name_ID) {
            teller.GetProperty(data, id, node->GetProperties());
        }
    }
    data.SetNodeData(std::move(node), false);
}

}  // namespace

std::unique_ptr<CNodeMap> BuildNodeMap(const CNodeDataMap& data, const gcstring& deviceName,
                                       CLock* lock) {
    auto map =
        std::make_unique<CNodeMap>(deviceName.empty() ? gcstring("Device") : deviceName, lock);
    map->SetNumNodes(data.GetNumNodeIDs());
    const CNodeData* const itNodeData = data.GetNodeData(NodeID_t(0));
    OV_ASSERT(itNodeData->GetName() == "_RegisterDescription");
    for (const CProperty& property : itNodeData->GetProperties()) {
        map->SetProperty(property);
    }
    RegisterNodes(*map, data);
    SetProperties(*map, data);
    for (size_t i = 1; i < data.GetNumNodeIDs(); ++i) {
        map->GetNodeByID(NodeID_t(i))->FinalConstruct();
    }
    map->FinalConstruct();
    return map;
}

void DescribeNodeMap(INodeMap* nodeMap, CNodeDataMap& data) {
    auto* const pNodeMapPrivate = dynamic_cast<INodeMapPrivate*>(nodeMap);
    OV_ASSERT(pNodeMapPrivate);
    const AutoLock lock(pNodeMapPrivate->GetLock());
    node_vector nodes;
    pNodeMapPrivate->GetNodes(nodes);
    // The names come first, in the order of their identifiers: links may point
    // forward.
    data.GetNodeID("_RegisterDescription", true);
    for (INode* const node : nodes) {
        data.GetNodeID(node->GetName().c_str(), true);
    }
    Describe(*pNodeMapPrivate, CNodeData::RegisterDescription_ID, "_RegisterDescription", data);
    for (INode* const node : nodes) {
        auto& teller = dynamic_cast<INodePrivate&>(*node);
        const NodeID_t NodeID = teller.GetNodeID();
        Describe(teller, teller.GetNodeType(), teller.InternalGetName().c_str(), data);
        const CNodeData* const pNodeData = data.GetLastNodeData();
        OV_ASSERT(pNodeData->GetNodeID() == NodeID);
    }
}

}  // namespace GenApi_3_0_ORVANE
