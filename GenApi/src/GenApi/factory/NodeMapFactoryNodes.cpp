// Makes live nodes of data, and data of live nodes. All nodes exist before the first gets its
// properties, since links may point forward; all have their properties before the first is
// completed.

#include "factory/NodeMapFactoryNodes.h"

#include <utility>

#include "Base/GCException.h"
#include "cache/CachedDescriptions.h"
#include "factory/NodeCreation.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Log categories have the device's name as a part, which must not be empty.
std::unique_ptr<CNodeMap> NewMap(const gcstring& deviceName, CLock* lock, size_t numNodes) {
    auto map =
        std::make_unique<CNodeMap>(deviceName.empty() ? gcstring("Device") : deviceName, lock);
    map->SetNumNodes(numNodes);
    return map;
}

/// Adds a node without properties. The map takes it over, whatever comes after.
void Register(CNodeMap& map, CNodeData::ENodeType_t type, NodeID_t id) {
    std::unique_ptr<INodePrivate> pNode = CreateNode(type);
    OV_ASSERT(pNode);
    map.RegisterNode(pNode.release(), type, id);
}

/// Without the first entry, which is the map's own: it is the root of the description.
template <class Use>
void ForEachNode(CNodeMap& map, size_t numNodes, const Use& use) {
    for (size_t i = 1; i < numNodes; ++i) {
        use(*map.GetNodeByID(NodeID_t(i)), NodeID_t(i));
    }
}

/// In the order of identifiers, and the map last: it enters the nodes by the names that they then
/// have.
void FinalConstruct(CNodeMap& map, size_t numNodes) {
    ForEachNode(map, numNodes, [](INodePrivate& node, NodeID_t) { node.FinalConstruct(); });
    map.FinalConstruct();
}

/// Data of a description, which all cameras of one model share.
class DataDescriptions final : public INodeDescriptions {
public:
    explicit DataDescriptions(std::shared_ptr<const CNodeDataMap> data) : m_Data(std::move(data)) {}

    void ForEachProperty(NodeID_t nodeID,
                         const std::function<void(const CProperty&)>& use) const override {
        for (const CProperty& property : m_Data->GetNodeData(nodeID)->GetProperties()) {
            use(property);
        }
    }

private:
    std::shared_ptr<const CNodeDataMap> m_Data;
};

/// The targets of the links that a node, or the map, has of one kind.
template <class Teller>
CNodeData::NodeIDs_t LinksOf(Teller& teller, CPropertyID id, CNodeDataMap& data) {
    CNodeData::PropertyVector_t links;
    teller.GetProperty(data, id, links);
    CNodeData::NodeIDs_t targets;
    targets.reserve(links.size());
    for (const CProperty& link : links) {
        targets.push_back(link.NodeID());
    }
    return targets;
}

/// Stores what a node, or the map, returns about itself under its name. The name comes first, as
/// in a description that was parsed.
template <class Teller>
void Describe(Teller& teller, CNodeData::ENodeType_t type, std::string_view name,
              CNodeDataMap& data) {
    auto node = std::make_unique<CNodeData>(type, &data);
    node->SetName(name);
    for (uint32_t number = 0; number < CPropertyID::_Undefined_ID; ++number) {
        const CPropertyID id(static_cast<CPropertyID::EProperty_ID_t>(number));
        const bool isApart = id == CPropertyID::Name_ID || id == CPropertyID::pDependent_ID ||
                             id == CPropertyID::pTerminal_ID;
        if (!isApart) {
            teller.GetProperty(data, id, node->GetProperties());
        }
    }
    node->SetClosure(LinksOf(teller, CPropertyID::pDependent_ID, data),
                     LinksOf(teller, CPropertyID::pTerminal_ID, data));
    data.SetNodeData(std::move(node), false);
}

}  // namespace

/// A node that finds a fault in its properties keeps it, so one wrong node doesn't end the loop.
std::unique_ptr<CNodeMap> BuildNodeMap(std::shared_ptr<const CNodeDataMap> shared,
                                       const gcstring& deviceName, CLock* lock) {
    const CNodeDataMap& data = *shared;
    const size_t numNodes = data.GetNumNodeIDs();
    auto map = NewMap(deviceName, lock, numNodes);
    map->SetDescriptions(std::make_shared<DataDescriptions>(std::move(shared)));
    const CNodeData* const itNodeData = data.GetNodeData(NodeID_t(0));
    OV_ASSERT(itNodeData->GetName() == kRootNodeName);
    for (const CProperty& property : itNodeData->GetProperties()) {
        map->SetProperty(property);
    }
    for (size_t i = 1; i < numNodes; ++i) {
        Register(*map, data.GetNodeData(NodeID_t(i))->GetNodeType(), NodeID_t(i));
    }
    ForEachNode(*map, numNodes, [&](INodePrivate& node, NodeID_t id) {
        const CNodeData& description = *data.GetNodeData(id);
        for (const CProperty& property : description.GetProperties()) {
            node.SetProperty(property);
        }
        const CNodeData::Closure& closure = description.GetClosure();
        node.SetClosure(closure.dependents, closure.terminals);
    });
    FinalConstruct(*map, numNodes);
    return map;
}

/// Reads properties and hands them to the nodes at once. A reader that fails leaves a map that
/// nobody sees. A node's name is known only after the node has been read, and no node may ask for
/// another's until then.
std::unique_ptr<CNodeMap> CreateNodeMapDirectFromCache(CCacheReader& reader,
                                                       std::shared_ptr<const std::string> bytes,
                                                       const gcstring& deviceName, CLock* lock) {
    const auto file = std::make_shared<CCachedDescriptions>(std::move(bytes), reader);
    const size_t numNodes = file->GetNumNodes();
    auto map = NewMap(deviceName, lock, numNodes);
    map->SetDescriptions(file);
    if (reader.IsGood()) {
        for (size_t i = 1; i < numNodes; ++i) {
            Register(*map, file->GetType(NodeID_t(i)), NodeID_t(i));
        }
        file->ReadNode(reader, NodeID_t(0), *map);
        ForEachNode(*map, numNodes,
                    [&](INodePrivate& node, NodeID_t id) { file->ReadNode(reader, id, node); });
        file->CheckEnd(reader);
    }
    if (!reader.IsGood()) {
        return nullptr;
    }
    // Only now: nodes look at each other when they finish.
    FinalConstruct(*map, numNodes);
    return map;
}

/// With the lock held for all of it, so that the result is one state of the map.
void DescribeNodeMap(INodeMap* nodeMap, CNodeDataMap& data) {
    auto* const pNodeMapPrivate = dynamic_cast<INodeMapPrivate*>(nodeMap);
    if (pNodeMapPrivate == nullptr) {
        INVALID_ARGUMENT_EXCEPTION("pNodeMapPrivate");
    }
    const AutoLock lock(pNodeMapPrivate->GetLock());
    node_vector nodes;
    pNodeMapPrivate->GetNodes(nodes);
    // The names come first, in the order of their identifiers: links may point
    // forward.
    data.GetNodeID(kRootNodeName, true);
    for (INode* const node : nodes) {
        data.GetNodeID(node->GetName().c_str(), true);
    }
    Describe(*pNodeMapPrivate, CNodeData::RegisterDescription_ID, kRootNodeName, data);
    for (INode* const node : nodes) {
        auto& teller = dynamic_cast<INodePrivate&>(*node);
        const NodeID_t NodeID = teller.GetNodeID();
        Describe(teller, teller.GetNodeType(), teller.InternalGetName().c_str(), data);
        const CNodeData* const pNodeData = data.GetLastNodeData();
        OV_ASSERT(pNodeData->GetNodeID() == NodeID);
    }
}

}  // namespace GenApi_3_0_ORVANE
