// How a node takes its description, property by property, and returns it. Properties that all
// nodes have are kept in fields and lists of their own; those of the concrete classes are returned
// from the description, so that one place can do that.

#include <string>

#include "core/INodeDescriptions.h"
#include "node/NodeImpl.h"
#include "node/PropertyField.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// As many as most nodes have.
constexpr size_t kUsualChildren = 3;

/// Texts of a description never hold tabs, so a reader can take the list apart again.
void AppendEntry(gcstring& list, const std::string& entry) {
    if (!list.empty()) {
        list += '\t';
    }
    list += entry.c_str();
}

}  // namespace

/// The one table of fields, for taking, returning and counting properties alike. Each use passes
/// what it wants done with the field, whatever its type.
template <class Self, class Use>
bool CNodeImpl::WithField(Self& self, CPropertyID id, const Use& use) {
    switch (id) {
        case CPropertyID::Name_ID:
            return use(self.m_Name);
        case CPropertyID::NameSpace_ID:
            return use(self.m_NameSpace);
        case CPropertyID::Extension_ID:
            return use(self.m_Extension);
        case CPropertyID::DisplayName_ID:
            return use(self.m_DisplayName);
        case CPropertyID::ToolTip_ID:
            return use(self.m_ToolTip);
        case CPropertyID::Description_ID:
            return use(self.m_Description);
        case CPropertyID::Visibility_ID:
            return use(self.m_Visibility);
        case CPropertyID::EventID_ID:
            return use(self.m_EventID);
        case CPropertyID::Streamable_ID:
            return use(self.m_Streamable);
        case CPropertyID::ImposedAccessMode_ID:
            return use(self.m_ImposedAccessMode);
        case CPropertyID::ImposedVisibility_ID:
            return use(self.m_ImposedVisibility);
        case CPropertyID::PollingTime_ID:
            return use(self.m_PollingTime);
        case CPropertyID::DocuURL_ID:
            return use(self.m_DocuURL);
        case CPropertyID::IsDeprecated_ID:
            return use(self.m_IsDeprecated);
        case CPropertyID::IsFeature_ID:
            return use(self.m_IsFeature);
        case CPropertyID::ExposeStatic_ID:
            return use(self.m_ExposeStatic);
        default:
            return false;
    }
}

/// All nodes exist, though without properties, before the first link is taken: links may point
/// forward.
INodePrivate& CNodeImpl::FindLinked(const CProperty& property) {
    INodePrivate* const target = GetMap().GetNodeByID(property.NodeID());
    if (target == nullptr) {
        // The root element has a name, too.
        throw NodeFault(std::string("Node '") + m_Name.c_str() + "' : the link '" +
                        property.GetPropertyID().ToString() + "' leads to no node");
    }
    return *target;
}

/// The roles decide what the child means for this node's access mode, caching and value.
INodePrivate* CNodeImpl::LinkChild(const CProperty& property, unsigned roles) {
    INodePrivate& child = FindLinked(property);
    if (m_Children.capacity() == 0) {
        m_Children.reserve(kUsualChildren);
    }
    m_Children.push_back({&child, roles});
    return &child;
}

CProperty CNodeImpl::MakeLink(INodeDataMap& nodeDataMap, CPropertyID id, INodePrivate& target) {
    return {&nodeDataMap, id, nodeDataMap.GetNodeID(target.InternalGetName().c_str(), true)};
}

/// The one table of the links that every node may have, for taking, returning and counting them
/// alike. With each goes what the child means for this node. All other links are the concrete
/// classes' own.
template <class Self, class Use>
bool CNodeImpl::WithLink(Self& self, CPropertyID id, const Use& use) {
    switch (id) {
        case CPropertyID::pIsAvailable_ID:
            return use(self.m_IsAvailable, ReadRole);
        case CPropertyID::pIsImplemented_ID:
            return use(self.m_IsImplemented, ReadRole);
        case CPropertyID::pIsLocked_ID:
            return use(self.m_IsLocked, ReadRole);
        case CPropertyID::pBlockPolling_ID:
            return use(self.m_BlockPolling, NoRole);
        case CPropertyID::pError_ID:
            return use(self.m_pError, ReadRole);
        case CPropertyID::pAlias_ID:
            return use(self.m_pAlias, NoRole);
        case CPropertyID::pCastAlias_ID:
            return use(self.m_pCastAlias, NoRole);
        case CPropertyID::pSelected_ID:
            return use(self.m_SelectedFeatures, NoRole);
        case CPropertyID::pSelecting_ID:
            return use(self.m_SelectingFeatures, NoRole);
        case CPropertyID::pInvalidator_ID:
            return use(self.m_Invalidators, NoRole);
        default:
            return false;
    }
}

const NodeIDSpan* CNodeImpl::FindClosure(CPropertyID id) const {
    switch (id) {
        case CPropertyID::pDependent_ID:
            return &m_DependingNodes;
        case CPropertyID::pTerminal_ID:
            return &m_TerminalNodes;
        default:
            return nullptr;
    }
}

/// What preprocessing has listed are no children: there are far too many of them.
void CNodeImpl::SetClosure(NodeIDSpan dependents, NodeIDSpan terminals) {
    m_DependingNodes = dependents;
    m_TerminalNodes = terminals;
    m_HeldProperties.set(CPropertyID::pDependent_ID, !dependents.empty());
    m_HeldProperties.set(CPropertyID::pTerminal_ID, !terminals.empty());
}

bool CNodeImpl::IsCommonLink(CPropertyID id) const {
    return WithLink(*this, id, [](const auto&, EChildRole) { return true; });
}

void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, CBooleanPolyRef& field) {
    field = LinkChild(property, role);
}

void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, IEnumeration*& field) {
    field = LinkChild(property, role)->AsEnumeration();
}

void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, INode*& field) {
    field = LinkChild(property, role);
}

/// A node that selects itself is refused: it would have to be set before it can be set, which no
/// walk over the values of selectors can do.
void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, std::vector<IValue*>& field) {
    if (property.NodeID() == m_NodeID) {
        const std::string name = m_Name.c_str();
        throw NodeFault("ERROR : pSelected cycle detected : " + name + " -> " + name);
    }
    if (IValue* const value = LinkChild(property, role)->AsValue()) {
        field.push_back(value);
    }
}

void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, NodeList& field) {
    field.push_back(LinkChild(property, role));
}

void CNodeImpl::SetLinkProperty(const CProperty& property) {
    const auto take = [&](auto& field, EChildRole role) {
        TakeLink(property, role, field);
        return true;
    };
    if (!WithLink(*this, property.GetPropertyID(), take)) {
        OV_ASSERT(false && "Not all property ids are handled.");
    }
}

CNodeImpl::NodeList CNodeImpl::GetLinked(CPropertyID id) const {
    NodeList linked;
    const auto append = [&linked](IBase* node) {
        if (auto* const target = dynamic_cast<INodePrivate*>(node)) {
            linked.push_back(target);
        }
    };
    WithLink(*this, id, [&append](const auto& field, EChildRole) {
        if constexpr (requires { field.GetNode(); }) {
            append(field.GetNode());
        } else if constexpr (requires { field.size(); }) {
            for (IBase* const node : field) {
                append(node);
            }
        } else {
            append(field);
        }
        return true;
    });
    return linked;
}

/// Two properties are known and not kept: one mattered while descriptions were merged, the other
/// is only for readers of the XML.
void CNodeImpl::SetProperty(const CProperty& property) {
    const CPropertyID id = property.GetPropertyID();
    if (id.IsLink()) {
        SetLinkProperty(property);
        return;
    }
    const auto take = [&property](auto& field) {
        TakeProperty(property, field);
        return true;
    };
    const bool isIgnored = id == CPropertyID::MergePriority_ID || id == CPropertyID::Comment_ID;
    if (!isIgnored && !WithField(*this, id, take)) {
        OV_ASSERT(false && "Not all property ids are handled.");
    }
}

/// A link for another map, in which it reserves the name of its node. Only the root element has a
/// name and no node.
CProperty CNodeImpl::MakeDescribed(INodeDataMap& nodeDataMap, const CProperty& described) const {
    const CPropertyID id = described.GetPropertyID();
    switch (described.GetDataType()) {
        case CProperty::String_ID:
            return {&nodeDataMap, id, described.String()};
        case CProperty::Node_ID: {
            INodePrivate* const target = GetMap().GetNodeByID(described.NodeID());
            return target != nullptr
                       ? MakeLink(nodeDataMap, id, *target)
                       : CProperty(&nodeDataMap, id, nodeDataMap.GetNodeID(kRootNodeName, true));
        }
        case CProperty::Float_ID:
            return {&nodeDataMap, id, described.Float()};
        case CProperty::Integer_ID:
            return {&nodeDataMap, id, described.Integer()};
        default:
            return {&nodeDataMap, id, described.GetDataType(), CEnumNumber(described.EnumNumber())};
    }
}

void CNodeImpl::AppendDescribed(INodeDataMap& nodeDataMap, CPropertyID id,
                                CNodeData::PropertyVector_t& properties) const {
    const INodeDescriptions* const descriptions = GetMap().GetDescriptions();
    if (descriptions == nullptr) {
        return;
    }
    descriptions->ForEachProperty(m_NodeID, [&](const CProperty& described) {
        if (described.GetPropertyID() != id) {
            return;
        }
        CProperty property = MakeDescribed(nodeDataMap, described);
        if (const CProperty* const attribute = described.GetAttribute()) {
            property.SetAttribute(
                std::make_unique<CProperty>(MakeDescribed(nodeDataMap, *attribute)));
        }
        properties.push_back(std::move(property));
    });
}

/// Fields may have changed since the description was taken, so a property that has a field is
/// returned from it. Categories change their visibility, to that of their features; what is
/// returned is what the description said.
bool CNodeImpl::GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                            CNodeData::PropertyVector_t& properties) {
    if (!HoldsProperty(id)) {
        return false;
    }
    if (const NodeIDSpan* const closure = FindClosure(id)) {
        GetCallState().ForEachNode(*closure, [&](INodePrivate& target) {
            properties.push_back(MakeLink(nodeDataMap, id, target));
        });
        return true;
    }
    if (IsCommonLink(id)) {
        for (INodePrivate* const target : GetLinked(id)) {
            properties.push_back(MakeLink(nodeDataMap, id, *target));
        }
        return true;
    }
    const auto fromField = [&](const auto& field) {
        properties.push_back(MakeProperty(nodeDataMap, id, field));
        return true;
    };
    if (id == CPropertyID::Visibility_ID || !WithField(*this, id, fromField)) {
        AppendDescribed(nodeDataMap, id, properties);
    }
    return true;
}

/// Runs after the concrete class has taken the property, whatever it did with it.
void CNodeImpl::NoteProperty(const CProperty& property) {
    const CPropertyID id = property.GetPropertyID();
    if (id == CPropertyID::MergePriority_ID || id == CPropertyID::Comment_ID) {
        return;
    }
    m_HeldProperties.set(id);
}

/// In the order of the identifiers, so that equal nodes return equal lists however their
/// descriptions order them.
CNodeData::PropertyVector_t CNodeImpl::GetHeldProperties(INodeDataMap& nodeDataMap,
                                                         const gcstring* name) {
    CNodeData::PropertyVector_t properties;
    for (uint32_t number = 0; number < CPropertyID::_Undefined_ID; ++number) {
        const CPropertyID id(static_cast<CPropertyID::EProperty_ID_t>(number));
        if (HoldsProperty(id) && (name == nullptr || *name == id.ToString().c_str())) {
            GetProperty(nodeDataMap, id, properties);
        }
    }
    return properties;
}

/// The scratch map resolves the texts and names of the properties, and is gone with them.
void CNodeImpl::InternalGetPropertyNames(gcstring_vector& names) {
    CNodeDataMap scratch;
    names.clear();
    for (const CProperty& property : GetHeldProperties(scratch)) {
        const gcstring name(property.GetPropertyID().ToString().c_str());
        if (names.empty() || names.back() != name) {
            names.push_back(name);
        }
    }
}

bool CNodeImpl::InternalGetProperty(const gcstring& name, gcstring& value, gcstring& attribute) {
    CNodeDataMap scratch;
    const CNodeData::PropertyVector_t properties = GetHeldProperties(scratch, &name);
    value = gcstring();
    attribute = gcstring();
    for (const CProperty& property : properties) {
        AppendEntry(value, property.ToString(tssValue));
        if (property.GetAttribute() != nullptr) {
            AppendEntry(attribute, property.GetAttribute()->ToString(tssValue));
        }
    }
    return !properties.empty();
}

}  // namespace GenApi_3_0_ORVANE
