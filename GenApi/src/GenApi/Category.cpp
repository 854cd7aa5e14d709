#include "GenApi/impl/Category.h"

#include <algorithm>

namespace GenApi_3_0_ORVANE {

void CCategoryImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::pFeature_ID:
            // A node without a value, a port for example, has nothing to show.
            if (auto* const feature = dynamic_cast<IValue*>(LinkChild(property, ReadRole))) {
                m_Features.push_back(feature);
            }
            break;
        case CPropertyID::Visibility_ID:
            break;
        default:
            CNodeImpl::SetProperty(property);
    }
}

void CCategoryImpl::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    if (m_Features.empty()) {
        OV_ASSERT(m_Visibility == Invisible);
        return;
    }
    for (IValue* const feature : m_Features) {
        // An inner category has to know its own visibility first. Of other
        // nodes the description alone says it.
        if (auto* const category = dynamic_cast<CCategoryImpl*>(feature)) {
            category->FinalConstruct();
        }
        m_Visibility =
            std::min(m_Visibility, dynamic_cast<INodePrivate&>(*feature).InternalGetVisibility());
    }
    TellParents();
}

void CCategoryImpl::SetInvisibleIfHigher(EVisibility visibility) {
    if (m_Visibility > visibility) {
        m_Visibility = visibility;
        TellParents();
    }
}

void CCategoryImpl::TellParents() {
    for (INodePrivate* const parent : m_Parents) {
        parent->SetInvisibleIfHigher(m_Visibility);
    }
}

EAccessMode CCategoryImpl::InternalGetAccessMode() {
    return CachedAccessMode([this] { return ComputeMode(); });
}

EAccessMode CCategoryImpl::ComputeMode() const {
    if (m_IsImplemented.IsReadable() && !m_IsImplemented.GetValue()) {
        return NI;
    }
    for (IValue* const feature : m_Features) {
        if (IsImplemented(feature->GetAccessMode())) {
            return RO;
        }
    }
    return NI;
}

void CCategoryImpl::GetFeatures(value_vector& features) {
    const AutoLock lock(GetLock());
    features = m_Features;
}

}  // namespace GenApi_3_0_ORVANE
