// How a node takes its description, property by property, and returns it. Properties that all
// nodes have are kept in fields and lists of their own; those of the concrete classes are also
// kept as they came, so that one place can return them.

#include <string>

#include "node/NodeImpl.h"
#include "node/PropertyField.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

namespace {

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

/// The roles decide what the child means for this node's access mode, caching and value. Parents
/// are entered only for clients that look at the graph.
INodePrivate* CNodeImpl::LinkChild(const CProperty& property, unsigned roles) {
    INodePrivate* const child = &FindLinked(property);
    m_AllChildren.push_back(child);
    if ((roles & ReadRole) != 0) {
        m_ReadingChildren.push_back(child);
    }
    if ((roles & WriteRole) != 0) {
        m_WritingChildren.push_back(child);
    }
    if ((roles & ValueRole) != 0) {
        m_ValueChildren.push_back(child);
    }
    child->AddParent(this);
    return child;
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
        case CPropertyID::pDependent_ID:
            return use(self.m_DependingNodes, NoRole);
        case CPropertyID::pTerminal_ID:
            return use(self.m_TerminalNodes, NoRole);
        default:
            return false;
    }
}

bool CNodeImpl::IsCommonLink(CPropertyID id) const {
    return WithLink(*this, id, [](const auto&, EChildRole) { return true; });
}

void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, CBooleanPolyRef& field) {
    field = LinkChild(property, role);
}

void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, IEnumeration*& field) {
    field = dynamic_cast<IEnumeration*>(LinkChild(property, role));
}

void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, INode*& field) {
    field = LinkChild(property, role);
}

/// A node that selects itself is refused: it would have to be set before it can be set, which no
/// walk over the values of selectors can do.
void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, value_vector& field) {
    if (property.NodeID() == m_NodeID) {
        const std::string name = m_Name.c_str();
        throw NodeFault("ERROR : pSelected cycle detected : " + name + " -> " + name);
    }
    if (auto* const value = dynamic_cast<IValue*>(LinkChild(property, role))) {
        field.push_back(value);
    }
}

void CNodeImpl::TakeLink(const CProperty& property, EChildRole role, node_vector& field) {
    field.push_back(LinkChild(property, role));
}

/// What preprocessing has listed are no children: there are far too many of them.
void CNodeImpl::TakeLink(const CProperty& property, EChildRole /*role*/, NodeList& field) {
    field.push_back(&FindLinked(property));
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

/// Fields may have changed since the description was taken; kept properties may not. So a
/// property that has a field is returned from it, unless it was kept as well.
bool CNodeImpl::GetProperty(INodeDataMap& nodeDataMap, CPropertyID id,
                            CNodeData::PropertyVector_t& properties) {
    if (!HoldsProperty(id)) {
        return false;
    }
    if (IsCommonLink(id)) {
        for (INodePrivate* const target : GetLinked(id)) {
            properties.push_back(MakeLink(nodeDataMap, id, *target));
        }
        return true;
    }
    const size_t count = properties.size();
    for (const CDetachedProperty& kept : m_DetachedProperties) {
        if (kept.GetID() == id) {
            properties.push_back(kept.Make(nodeDataMap));
        }
    }
    return properties.size() > count || WithField(*this, id, [&](const auto& field) {
               properties.push_back(MakeProperty(nodeDataMap, id, field));
               return true;
           });
}

/// Runs after the concrete class has taken the property, whatever it did with it.
void CNodeImpl::NoteProperty(const CProperty& property) {
    const CPropertyID id = property.GetPropertyID();
    if (id == CPropertyID::MergePriority_ID || id == CPropertyID::Comment_ID) {
        return;
    }
    m_HeldProperties.set(id);
    const bool hasField = WithField(*this, id, [](const auto&) { return true; });
    // Categories change their visibility afterwards, to that of their features; what the
    // description said is kept as well.
    if (id == CPropertyID::Visibility_ID || (!IsCommonLink(id) && !hasField)) {
        m_DetachedProperties.emplace_back(property, GetMap());
    }
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
