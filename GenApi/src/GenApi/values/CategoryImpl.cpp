// Groups of features. A category has to be found by whoever may use one of its features, so it is
// as visible as the most visible of them.

#include "values/CategoryImpl.h"

#include <algorithm>
#include <utility>

namespace GenApi_3_0_ORVANE {

void CCategoryImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::pFeature_ID:
            AddFeature(*LinkChild(property, ReadRole));
            break;
        case CPropertyID::Visibility_ID:
            break;
        default:
            CNodeImpl::SetProperty(property);
    }
}

/// A node without a value, a port for example, has nothing to show.
void CCategoryImpl::AddFeature(INodePrivate& feature) {
    if (feature.AsValue() == nullptr) {
        return;
    }
    m_Features.push_back(&feature);
    if (CCategoryImpl* const inner = feature.AsCategory()) {
        inner->m_Outer.push_back(this);
    }
}

/// Inner categories have to know their visibility first; that of other nodes is in the
/// description. Each category takes its turn once, and without recursion: a description nests
/// them as deep as it likes, or in a circle.
void CCategoryImpl::FinalConstruct() {
    struct Step {
        CCategoryImpl* category;
        size_t nextFeature;
    };
    std::vector<Step> path;
    const auto enter = [&path](CCategoryImpl* category) {
        if (category != nullptr && !std::exchange(category->m_IsConstructed, true)) {
            path.push_back({category, 0});
        }
    };
    enter(this);
    while (!path.empty()) {
        Step& step = path.back();
        if (step.nextFeature < step.category->m_Features.size()) {
            enter(step.category->m_Features[step.nextFeature++]->AsCategory());
        } else {
            CCategoryImpl* const category = step.category;
            path.pop_back();
            category->Construct();
        }
    }
}

void CCategoryImpl::Construct() {
    CNodeImpl::FinalConstruct();
    if (m_Features.empty()) {
        // An empty group has nothing to show to anybody.
        OV_ASSERT(m_Visibility == Invisible);
        return;
    }
    for (INodePrivate* const feature : m_Features) {
        m_Visibility = std::min(m_Visibility, feature->InternalGetVisibility());
    }
    TellParents();
}

void CCategoryImpl::SetInvisibleIfHigher(EVisibility visibility) {
    PassUp({this}, visibility);
}

void CCategoryImpl::TellParents() {
    PassUp(m_Outer, m_Visibility);
}

/// Continues from each category that the visibility lowers. Those that it doesn't lower have
/// passed at least as much on already, so that circles end.
void CCategoryImpl::PassUp(std::vector<CCategoryImpl*> told, EVisibility visibility) {
    while (!told.empty()) {
        CCategoryImpl* const category = told.back();
        told.pop_back();
        if (category->m_Visibility > visibility) {
            category->m_Visibility = visibility;
            told.insert(told.end(), category->m_Outer.begin(), category->m_Outer.end());
        }
    }
}

EAccessMode CCategoryImpl::InternalGetAccessMode() {
    return CachedAccessMode([this] { return ComputeMode(); });
}

/// Nothing about a group can be written. It exists if any of its features does; whether they can
/// be used at present doesn't matter, or the groups of a tree would come and go.
EAccessMode CCategoryImpl::ComputeMode() const {
    if (m_IsImplemented.IsReadable() && !m_IsImplemented.GetValue()) {
        return NI;
    }
    for (INodePrivate* const feature : m_Features) {
        if (IsImplemented(feature->GetAccessMode())) {
            return RO;
        }
    }
    return NI;
}

void CCategoryImpl::GetFeatures(value_vector& features) {
    const AutoLock lock(GetLock());
    features.clear();
    features.reserve(m_Features.size());
    for (INodePrivate* const feature : m_Features) {
        features.push_back(feature->AsValue());
    }
}

}  // namespace GenApi_3_0_ORVANE
