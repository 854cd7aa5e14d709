// Groups of features. A category has to be found by whoever may use one of its features, so it is
// as visible as the most visible of them.

#include "values/CategoryImpl.h"

#include <algorithm>
#include <utility>

namespace GenApi_3_0_ORVANE {

void CCategoryImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::pFeature_ID:
            // A node without a value, a port for example, has nothing to show.
            if (auto* const feature = dynamic_cast<IValue*>(LinkChild(property, ReadRole))) {
                m_Features.push_back(feature);
                if (auto* const inner = dynamic_cast<CCategoryImpl*>(feature)) {
                    inner->m_Outer.push_back(this);
                }
            }
            break;
        case CPropertyID::Visibility_ID:
            break;
        default:
            CNodeImpl::SetProperty(property);
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
            IValue* const feature = step.category->m_Features[step.nextFeature++];
            enter(dynamic_cast<CCategoryImpl*>(feature));
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
    for (IValue* const feature : m_Features) {
        m_Visibility =
            std::min(m_Visibility, dynamic_cast<INodePrivate&>(*feature).InternalGetVisibility());
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
