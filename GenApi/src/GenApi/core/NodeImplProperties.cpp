// How a node takes its description, property by property, and returns it. Properties that all
// nodes have are kept in fields and lists of their own; those of the concrete classes are also
// kept as they came, so that one place can return them.

#include <string>

#include "core/NodeImpl.h"
#include "core/PropertyField.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// The links that every node class may have. All others are the concrete classes' own.
bool IsCommonLink(CPropertyID id) {
    switch (id) {
        case CPropertyID::pIsAvailable_ID:
        case CPropertyID::pIsImplemented_ID:
        case CPropertyID::pIsLocked_ID:
        case CPropertyID::pBlockPolling_ID:
        case CPropertyID::pError_ID:
        case CPropertyID::pAlias_ID:
        case CPropertyID::pCastAlias_ID:
        case CPropertyID::pSelected_ID:
        case CPropertyID::pSelecting_ID:
        case CPropertyID::pInvalidator_ID:
        case CPropertyID::pDependent_ID:
        case CPropertyID::pTerminal_ID:
            return true;
        default:
            return false;
    }
}

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

/// The roles decide what the child means for this node's access mode, caching and value; the
/// parent is entered for clients who look at the graph.
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

/// A node that selects itself is refused: it would have to be set before it can be set, which no
/// walk over the values of selectors can do.
void CNodeImpl::AppendFeature(value_vector& features, const CProperty& property) {
    if (property.NodeID() == m_NodeID) {
        const std::string name = m_Name.c_str();
        throw NodeFault("ERROR : pSelected cycle detected : " + name + " -> " + name);
    }
    if (auto* const value = dynamic_cast<IValue*>(LinkChild(property, NoRole))) {
        features.push_back(value);
    }
}

void CNodeImpl::SetLinkProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::pIsAvailable_ID:
            m_IsAvailable = LinkChild(property, ReadRole);
            return;
        case CPropertyID::pIsImplemented_ID:
            m_IsImplemented = LinkChild(property, ReadRole);
            return;
        case CPropertyID::pIsLocked_ID:
            m_IsLocked = LinkChild(property, ReadRole);
            return;
        case CPropertyID::pBlockPolling_ID:
            m_BlockPolling = LinkChild(property, NoRole);
            return;
        case CPropertyID::pError_ID:
            m_pError = dynamic_cast<IEnumeration*>(LinkChild(property, ReadRole));
            return;
        case CPropertyID::pAlias_ID:
            m_pAlias = LinkChild(property, NoRole);
            return;
        case CPropertyID::pCastAlias_ID:
            m_pCastAlias = LinkChild(property, NoRole);
            return;
        case CPropertyID::pSelected_ID:
            return AppendFeature(m_SelectedFeatures, property);
        case CPropertyID::pSelecting_ID:
            return AppendFeature(m_SelectingFeatures, property);
        case CPropertyID::pInvalidator_ID:
            m_Invalidators.push_back(LinkChild(property, NoRole));
            return;
        case CPropertyID::pDependent_ID:
            m_DependingNodes.push_back(&FindLinked(property));
            return;
        case CPropertyID::pTerminal_ID:
            m_TerminalNodes.push_back(&FindLinked(property));
            return;
        default:
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
    const auto appendAll = [&append](const auto& nodes) {
        for (IBase* const node : nodes) {
            append(node);
        }
    };
    switch (id) {
        case CPropertyID::pIsAvailable_ID:
            append(m_IsAvailable.GetNode());
            break;
        case CPropertyID::pIsImplemented_ID:
            append(m_IsImplemented.GetNode());
            break;
        case CPropertyID::pIsLocked_ID:
            append(m_IsLocked.GetNode());
            break;
        case CPropertyID::pBlockPolling_ID:
            append(m_BlockPolling.GetNode());
            break;
        case CPropertyID::pError_ID:
            append(m_pError);
            break;
        case CPropertyID::pAlias_ID:
            append(m_pAlias);
            break;
        case CPropertyID::pCastAlias_ID:
            append(m_pCastAlias);
            break;
        case CPropertyID::pSelected_ID:
            appendAll(m_SelectedFeatures);
            break;
        case CPropertyID::pSelecting_ID:
            appendAll(m_SelectingFeatures);
            break;
        case CPropertyID::pInvalidator_ID:
            appendAll(m_Invalidators);
            break;
        case CPropertyID::pDependent_ID:
            appendAll(m_DependingNodes);
            break;
        case CPropertyID::pTerminal_ID:
            appendAll(m_TerminalNodes);
            break;
        default:
            break;
    }
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
    for (const CKeptProperty& kept : m_KeptProperties) {
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
    // description said is kept beside the field.
    if (id == CPropertyID::Visibility_ID || (!IsCommonLink(id) && !hasField)) {
        m_KeptProperties.emplace_back(property, GetMap());
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
