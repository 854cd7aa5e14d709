// How a node takes its description, and gives it back.

#include <algorithm>
#include <string>

#include "GenApi/ICategory.h"
#include "GenApi/impl/Node.h"

namespace GenApi_3_0_ORVANE {

INodePrivate* CNodeImpl::LinkChild(const CProperty& property, unsigned roles) {
    INodePrivate* const child = GetMap().GetNodeByID(property.NodeID());
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

void CNodeImpl::SetBooleanReference(CBooleanPolyRef& reference, const CProperty& property,
                                    unsigned roles) {
    reference = LinkChild(property, roles);
}

void CNodeImpl::SetLinkProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::pIsAvailable_ID:
            return SetBooleanReference(m_IsAvailable, property, ReadRole);
        case CPropertyID::pIsImplemented_ID:
            return SetBooleanReference(m_IsImplemented, property, ReadRole);
        case CPropertyID::pIsLocked_ID:
            return SetBooleanReference(m_IsLocked, property, ReadRole);
        case CPropertyID::pBlockPolling_ID:
            return SetBooleanReference(m_BlockPolling, property, NoRole);
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
            m_SelectedFeatures.push_back(dynamic_cast<IValue*>(LinkChild(property, NoRole)));
            return;
        case CPropertyID::pSelecting_ID:
            m_SelectingFeatures.push_back(dynamic_cast<IValue*>(LinkChild(property, NoRole)));
            return;
        case CPropertyID::pInvalidator_ID:
            m_Invalidators.push_back(LinkChild(property, NoRole));
            return;
        case CPropertyID::pDependent_ID:
            m_DependingNodes.push_back(GetMap().GetNodeByID(property.NodeID()));
            return;
        case CPropertyID::pTerminal_ID:
            m_TerminalNodes.push_back(GetMap().GetNodeByID(property.NodeID()));
            return;
        default:
            OV_ASSERT(false && "Not all property ids are handled.");
    }
}

void CNodeImpl::SetProperty(const CProperty& property) {
    if (property.GetPropertyID().IsLink()) {
        SetLinkProperty(property);
        return;
    }
    switch (property.GetPropertyID()) {
        case CPropertyID::Name_ID:
            m_Name = property.String().c_str();
            break;
        case CPropertyID::NameSpace_ID:
            m_NameSpace = property.ENameSpace();
            break;
        case CPropertyID::Extension_ID:
            m_Extension = property.String().c_str();
            break;
        case CPropertyID::DisplayName_ID:
            m_DisplayName = property.String().c_str();
            break;
        case CPropertyID::ToolTip_ID:
            m_ToolTip = property.String().c_str();
            break;
        case CPropertyID::Description_ID:
            m_Description = property.String().c_str();
            break;
        case CPropertyID::Visibility_ID:
            m_Visibility = property.EVisibility();
            break;
        case CPropertyID::EventID_ID:
            m_EventID = property.String().c_str();
            break;
        case CPropertyID::Streamable_ID:
            m_Streamable = property.EYesNo();
            break;
        case CPropertyID::ImposedAccessMode_ID:
            m_ImposedAccessMode = property.EAccessMode();
            break;
        case CPropertyID::ImposedVisibility_ID:
            m_ImposedVisibility = property.EVisibility();
            break;
        case CPropertyID::PollingTime_ID:
            m_PollingTime = property.Integer();
            break;
        case CPropertyID::DocuURL_ID:
            m_DocuURL = property.String().c_str();
            break;
        case CPropertyID::IsDeprecated_ID:
            m_IsDeprecated = property.EYesNo();
            break;
        case CPropertyID::IsFeature_ID:
            m_IsFeature = property.EYesNo();
            break;
        case CPropertyID::ExposeStatic_ID:
            m_ExposeStatic = property.EYesNo();
            break;
        case CPropertyID::MergePriority_ID:
        case CPropertyID::Comment_ID:
            break;
        default:
            OV_ASSERT(false && "Not all property ids are handled.");
    }
}

}  // namespace GenApi_3_0_ORVANE
