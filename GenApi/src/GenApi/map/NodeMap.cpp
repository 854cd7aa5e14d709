// The live nodes of one description: look-up by name and by identifier, invalidation and polling
// of all, and what the root element says about the device.

#include "map/NodeMap.h"

#include <cstring>

#include "Base/GCException.h"
#include "Base/Log.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/NodeCallback.h"
#include "formula/IFormulaNode.h"
#include "node/NodeImpl.h"
#include "node/PropertyField.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::CLog;
using GenICam_3_0_ORVANE::GenericException;

namespace {

/// The table begins small: maps without a description stay without nodes.
constexpr size_t kFirstBuckets = 9;

constexpr uint16_t kGenApiMajor = 3;
constexpr uint16_t kGenApiMinor = 0;
constexpr uint16_t kGenApiSubMinor = 2;

/// What preprocessing marks the targets of links with. A link may lead to the root element by its
/// name; that is the map itself, which has no use for such marks.
bool IsMarkOfLinks(CPropertyID id) {
    return id == CPropertyID::pSelecting_ID || id == CPropertyID::IsFeature_ID;
}

}  // namespace

string2node_t::string2node_t() : m_Spaces(kFirstBuckets) {}

/// Growing step by step would hash all names of a large description several times.
void string2node_t::Reserve(size_t count) {
    m_Spaces.reserve(count);
    m_All.reserve(count);
}

size_t string2node_t::Hash::operator()(std::string_view name) const {
    // Names differ in their last letters ("Line0", "Line1"), which this mixes well.
    constexpr uint32_t kPrime = 16777619;
    uint32_t hash = kPrime;
    for (const char character : name) {
        hash = (hash ^ static_cast<unsigned char>(character)) * kPrime;
    }
    return hash;
}

/// The keys are views of the nodes' own names, so that a look-up needs no copy and the table no
/// second set of texts.
void string2node_t::Insert(INodePrivate* node) {
    const gcstring& name = node->InternalGetName();
    Spaces& spaces = m_Spaces[{name.c_str(), name.size()}];
    INodePrivate*& slot =
        node->InternalGetNameSpace() == Standard ? spaces.standard : spaces.custom;
    // Named for the text of the assertion, which is a part of the interface.
    struct {
        bool second;
    } const ret{slot == nullptr};
    OV_ASSERT(ret.second == true);
    slot = node;
    m_All.push_back(node);
}

INodePrivate* string2node_t::Find(std::string_view name, ENameSpace nameSpace) const {
    const auto found = m_Spaces.find(name);
    if (found == m_Spaces.end()) {
        return nullptr;
    }
    return nameSpace == Standard ? found->second.standard : found->second.custom;
}

/// Asking for the logging library once keeps thousands of nodes from doing so.
CNodeMap::CNodeMap(const gcstring& deviceName, CLock* lock)
    : m_DeviceName(deviceName), m_CallState(lock == nullptr ? m_OwnLock : *lock, m_Node2NodeID) {
    m_IsLoggingEnabled = CLog::Exist("GenApi");
    m_IsDeviceLoggingEnabled = CLog::Exist(gcstring("GenApi.") + deviceName);
    ListSupportedSchemaVersions(m_SupportedSchemaVersions);
}

/// Node by node and without the lock: whoever ends a map vouches that no other thread uses it any
/// more.
CNodeMap::~CNodeMap() {
    for (INodePrivate* const node : m_Node2NodeID) {
        delete node;
    }
}

void CNodeMap::ListSupportedSchemaVersions(gcstring_vector& list) {
    list.clear();
    list.push_back("1.0");
    list.push_back("1.1");
}

/// Part of the interface, because only the library knows how a map was allocated.
void CNodeMap::Destroy() {
    delete this;
}

/// The root element has an identifier, as links may name it, but no node: its slot stays empty.
void CNodeMap::RegisterNode(INodePrivate* node, CNodeData::ENodeType_t nodeType, NodeID_t id) {
    OV_ASSERT(id.IsValid());
    OV_ASSERT((size_t)id.ToIndex() < m_Node2NodeID.size());
    INodePrivate*& slot = m_Node2NodeID[static_cast<size_t>(id.ToIndex())];
    if (nodeType == CNodeData::RegisterDescription_ID) {
        slot = nullptr;
        return;
    }
    OV_ASSERT(node != nullptr);
    OV_ASSERT(nodeType != CNodeData::_NotImpl_ID);
    slot = node;
    node->Initialize(this, nodeType, id);
}

/// Links were resolved to identifiers when the description was read, so that making the nodes
/// needs no look-up by name.
INodePrivate* CNodeMap::GetNodeByID(NodeID_t NodeID) {
    OV_ASSERT((size_t)NodeID.ToIndex() < m_Node2NodeID.size());
    return m_Node2NodeID[static_cast<size_t>(NodeID.ToIndex())];
}

/// For clients that look at the graph, of which there are few: so the nodes don't keep their
/// parents, and all are found at once.
const std::vector<INodePrivate*>& CNodeMap::GetParents(NodeID_t id) {
    if (m_Parents.empty()) {
        m_Parents = FindParents();
    }
    return m_Parents[static_cast<size_t>(id.ToIndex())];
}

/// The parents of all nodes, by the nodes' identifiers. A list of its own until it is whole: memory
/// may be refused in between.
std::vector<std::vector<INodePrivate*>> CNodeMap::FindParents() const {
    std::vector<std::vector<INodePrivate*>> parents(m_Node2NodeID.size());
    std::vector<INodePrivate*> children;
    for (INodePrivate* const node : m_Node2NodeID) {
        if (node == nullptr) {
            continue;
        }
        children.clear();
        node->ListChildren(children);
        for (INodePrivate* const child : children) {
            parents[static_cast<size_t>(child->GetNodeID().ToIndex())].push_back(node);
        }
    }
    return parents;
}

/// Until all nodes have their properties they have no names either.
const string2node_t& CNodeMap::Names() const {
    if (m_pNames == nullptr) {
        LOGICAL_ERROR_EXCEPTION("Map not allocated");
    }
    return *m_pNames;
}

/// Runs after the nodes' own FinalConstruct. Nodes without a polling time aren't even looked at
/// by later sweeps.
void CNodeMap::FinalConstruct() {
    // Links may have been added since.
    m_Parents.clear();
    m_pNames = std::make_unique<string2node_t>();
    m_pNames->Reserve(m_Node2NodeID.size());
    for (INodePrivate* const node : m_Node2NodeID) {
        if (node == nullptr) {
            continue;
        }
        m_pNames->Insert(node);
        if (node->InternalGetPollingTime() >= 0) {
            m_PollingList.push_back(node);
        }
    }
    if (m_IsDeviceLoggingEnabled) {
        void* const logger =
            CLog::GetLogger(gcstring("GenApi.") + m_DeviceName + ".Misc." + m_NodeName);
        GCLOGINFO(logger, "Instantiated NodeMap: Vendor = %s, Model = %s", m_VendorName.c_str(),
                  m_ModelName.c_str());
    }
}

void CNodeMap::GetNodes(node_vector& nodes) {
    const AutoLock lock(GetLock());
    nodes.clear();
    nodes.reserve(Names().GetAll().size());
    for (INodePrivate* const node : Names().GetAll()) {
        nodes.push_back(node);
    }
}

/// Without the lock: names and the table are constant once the map is made, and this is the most
/// frequent call of a client.
INode* CNodeMap::GetNode(const gcstring& name) {
    const std::string_view text(name.c_str(), name.size());
    const size_t separator = text.find("::");
    if (separator == std::string_view::npos) {
        INodePrivate* const custom = Names().Find(text, Custom);
        return custom != nullptr ? custom : Names().Find(text, Standard);
    }
    const std::string_view bare = text.substr(separator + 2);
    if (text.find("Std::") != std::string_view::npos) {
        return Names().Find(bare, Standard);
    }
    return text.find("Cust::") != std::string_view::npos ? Names().Find(bare, Custom) : nullptr;
}

/// A chunk or event adapter uses the same way into the node, so that whichever came last is in
/// charge.
bool CNodeMap::Connect(IPort* port, const gcstring& name) {
    auto* const construct = dynamic_cast<IPortConstruct*>(GetNode(name));
    if (construct == nullptr) {
        return false;
    }
    construct->SetPortImpl(port);
    return true;
}

/// All nodes become invalid before the first callback runs, so that none of them reads a value
/// from before.
void CNodeMap::InvalidateNodes() {
    CallbackList callbacks;
    {
        const AutoLock lock(GetLock());
        for (INodePrivate* const node : Names().GetAll()) {
            node->SetInvalid(simOnlyMe);
        }
        for (INodePrivate* const node : Names().GetAll()) {
            node->CollectCallbacksToFire(callbacks, false);
        }
        SortCallbacks(callbacks);
        FireCallbacks(callbacks, cbPostInsideLock);
    }
    FireCallbacks(callbacks, cbPostOutsideLock);
}

/// One sweep with the lock held: a client's thread can't change the registers between the nodes
/// that are due at the same time.
void CNodeMap::Poll(int64_t elapsedTime) {
    CallbackList callbacks;
    {
        const AutoLock lock(GetLock());
        for (INodePrivate* const node : m_PollingList) {
            if (node->Poll(elapsedTime)) {
                node->CollectCallbacksToFire(callbacks, true);
                node->SetInvalid(simAll);
            }
        }
        SortCallbacks(callbacks);
        FireCallbacks(callbacks, cbPostInsideLock);
    }
    FireCallbacks(callbacks, cbPostOutsideLock);
}

/// Compiles anew rather than looking at the nodes' faults, so that a client gets the text for
/// each formula, also for one that it never used.
bool CNodeMap::ParseSwissKnifes(gcstring_vector* errorList) {
    const AutoLock lock(GetLock());
    bool allParse = true;
    for (INodePrivate* const node : Names().GetAll()) {
        auto* const formula = dynamic_cast<IFormulaNode*>(node);
        if (formula == nullptr) {
            continue;
        }
        try {
            formula->CheckExpressions();
        } catch (const GenericException& error) {
            allParse = false;
            if (errorList != nullptr) {
                errorList->push_back(gcstring("Error while parsing equation for node '") +
                                     node->InternalGetName() + "': " + error.what());
            }
        }
    }
    return allParse;
}

UserData_t CNodeMap::GetUserData() {
    const AutoLock lock(GetLock());
    return m_pUserData;
}

UserData_t CNodeMap::SetUserData(UserData_t data) {
    const AutoLock lock(GetLock());
    return std::exchange(m_pUserData, data);
}

gcstring CNodeMap::GetStandardNameSpace() {
    return EStandardNameSpaceClass::ToString(m_StandardNameSpace);
}

/// The build number isn't counted.
void CNodeMap::GetGenApiVersion(Version_t& version, uint16_t& build) {
    version = {kGenApiMajor, kGenApiMinor, kGenApiSubMinor};
    build = 0;
}

/// The one table of the map's properties, for taking and for returning them.
template <class Self, class Use>
bool CNodeMap::WithField(Self& self, CPropertyID id, const Use& use) {
    switch (id) {
        case CPropertyID::Name_ID:
            return use(self.m_NodeName);
        case CPropertyID::ModelName_ID:
            return use(self.m_ModelName);
        case CPropertyID::VendorName_ID:
            return use(self.m_VendorName);
        case CPropertyID::ToolTip_ID:
            return use(self.m_ToolTip);
        case CPropertyID::StandardNameSpace_ID:
            return use(self.m_StandardNameSpace);
        case CPropertyID::SchemaMajorVersion_ID:
            return use(self.m_SchemaVersion.Major);
        case CPropertyID::SchemaMinorVersion_ID:
            return use(self.m_SchemaVersion.Minor);
        case CPropertyID::SchemaSubMinorVersion_ID:
            return use(self.m_SchemaVersion.SubMinor);
        case CPropertyID::MajorVersion_ID:
            return use(self.m_DeviceVersion.Major);
        case CPropertyID::MinorVersion_ID:
            return use(self.m_DeviceVersion.Minor);
        case CPropertyID::SubMinorVersion_ID:
            return use(self.m_DeviceVersion.SubMinor);
        case CPropertyID::ProductGuid_ID:
            return use(self.m_ProductGuid);
        case CPropertyID::VersionGuid_ID:
            return use(self.m_VersionGuid);
        default:
            return false;
    }
}

/// The grammar admits no other attributes of the root element, so an unknown one is a mistake of
/// this library.
void CNodeMap::SetProperty(const CProperty& property) {
    if (IsMarkOfLinks(property.GetPropertyID())) {
        return;
    }
    const auto take = [&property](auto& field) {
        TakeProperty(property, field);
        return true;
    };
    if (!WithField(*this, property.GetPropertyID(), take)) {
        OV_ASSERT(!"CNodeMap::SetProperty: Unhandled property ID detected!");
    }
}

bool CNodeMap::GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                           CNodeData::PropertyVector_t& properties) {
    return WithField(std::as_const(*this), id, [&](const auto& field) {
        properties.push_back(MakeProperty(nodeDataMap, id, field));
        return true;
    });
}

}  // namespace GenApi_3_0_ORVANE
