// Nodes by name, the tree of features, and the relations between nodes.

#include "GenApi/IEnumeration.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "GenApi/ISelector.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureRange.h"
#include "api/DeviceManager.h"
#include "camera/FeatureTree.h"
#include "errors/OVIError.h"
#include "nodes/CopyOut.h"
#include "nodes/NearestNames.h"
#include "nodes/NodeAccess.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

using Nodes = std::vector<INode*>;

Nodes ToNodes(const node_vector& list) {
    Nodes nodes;
    for (INode* const node : list) {
        nodes.push_back(node);
    }
    return nodes;
}

Nodes ToNodes(const value_vector& list) {
    Nodes nodes;
    for (IValue* const value : list) {
        nodes.push_back(value->GetNode());
    }
    return nodes;
}

Nodes LinkedNodes(INode& node, ELinkType link) {
    node_vector list;
    node.GetChildren(list, link);
    return ToNodes(list);
}

Nodes EntriesOf(const CNodeRecord& record) {
    node_vector list;
    if (auto* const enumeration = record.As<IEnumeration>()) {
        enumeration->GetEntries(list);
    }
    return ToNodes(list);
}

template <class Get>
Nodes SelectionOf(INode& node, const Get& get) {
    value_vector list;
    if (auto* const selector = dynamic_cast<ISelector*>(&node)) {
        (selector->*get)(list);
    }
    return ToNodes(list);
}

Nodes RelatedNodes(const CNodeRecord& record, OV_NODE_RELATION relation, const OvPlace& place) {
    INode& node = record.node;
    switch (relation) {
        case OV_NODE_RELATION_FEATURES:
            return FeaturesOfCategory(node);
        case OV_NODE_RELATION_ENTRIES:
            return EntriesOf(record);
        case OV_NODE_RELATION_SELECTORS:
            return SelectionOf(node, &ISelector::GetSelectingFeatures);
        case OV_NODE_RELATION_SELECTED:
            return SelectionOf(node, &ISelector::GetSelectedFeatures);
        case OV_NODE_RELATION_PARENTS:
            return LinkedNodes(node, ParentNodes);
        case OV_NODE_RELATION_SOURCES:
            return LinkedNodes(node, AllChildren);
        case OV_NODE_RELATION_DEPENDENTS:
            return LinkedNodes(node, DependingNodes);
        case OV_NODE_RELATION_REGISTERS:
            return LinkedNodes(node, TerminalNodes);
        default:
            OV_RAISE_AT(CInvalidParameterError, place, "Unknown node relation");
    }
}

std::vector<std::string> FeatureNames(INodeMap& map) {
    std::vector<std::string> names;
    for (INode* const feature : FeaturesInTreeOrder(map)) {
        names.push_back(ToStd(feature->GetName()));
    }
    return names;
}

[[noreturn]] void RaiseUnknownName(INodeMap& map, const std::string& name, const OvPlace& place) {
    std::string text = "There is no feature \"" + name + "\"";
    const char* link = "; like it: \"";
    for (const std::string& nearest : NearestNames(name, FeatureNames(map))) {
        text += link + nearest + "\"";
        link = ", \"";
    }
    OV_RAISE_AT(CNotImplementedError, place, text);
}

INode& NodeByName(INodeMap& map, const char* name, const OvPlace& place) {
    INode* const node = OV_ENGINE_GET(map.GetNode(name));
    if (node == nullptr) {
        OV_ENGINE_GET(RaiseUnknownName(map, name, place));
    }
    return *node;
}

}  // namespace

OV_STATUS OvNodeFind(OV_DEV_HANDLE hDevice, OV_NODE_MODULE module, const char* pszName,
                     OV_NODE_HANDLE* phNode) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    INodeMap& map = MapOfModule(info, module, OV_HERE);
    OV_CHECK_POINTER(pszName);
    OV_CHECK_POINTER(phNode);
    INode& node = NodeByName(map, pszName, OV_HERE);
    *phNode = OV_ENGINE_GET(info.GetNodes().HandleOf(info, module, node));
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetAll(OV_DEV_HANDLE hDevice, OV_NODE_MODULE module, OV_NODE_HANDLE* phNodes,
                       size_t* pnNumber) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    INodeMap& map = MapOfModule(info, module, OV_HERE);
    OV_CHECK_POINTER(pnNumber);
    const auto tree = OV_ENGINE_GET(info.GetNodes().GetTree(info, module, map));
    CopyOut(*tree, phNodes, pnNumber, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetRelated(OV_NODE_HANDLE hNode, OV_NODE_RELATION relation, OV_NODE_HANDLE* phNodes,
                           size_t* pnNumber) try {
    const CNodeRecord& record = EnterNode(hNode, OV_HERE);
    OV_CHECK_POINTER(pnNumber);
    const OvPlace place = OV_HERE;
    const Nodes nodes = OV_ENGINE_GET(RelatedNodes(record, relation, place));
    std::vector<OV_NODE_HANDLE> handles;
    handles.reserve(nodes.size());
    for (INode* const node : nodes) {
        handles.push_back(
            OV_ENGINE_GET(record.camera.GetNodes().HandleOf(record.camera, record.module, *node)));
    }
    CopyOut(handles, phNodes, pnNumber, place);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
