#include "TLClassMain/GevTL.h"

#include "TLClassInfo/FeatureAgency.h"

namespace OVTLClass {

void CGevTL::__DoAcquireTLSpecialInformation(const IFeatureControl& control) {
    m_gevInfo = CGevFeatureAgency::GetTLFeatureBySelf(control);
}

std::vector<SPECIAL_INFO*> CGevTL::__DoGetAllInterfaceSpecialInformation(size_t /*count*/) {
    std::vector<SPECIAL_INFO*> pointers;
    pointers.reserve(m_gevInterfaceInfos.size());
    for (GEV_IF_INFO& info : m_gevInterfaceInfos) {
        pointers.push_back(&info);
    }
    return pointers;
}

void CGevTL::__DoResetTLSpecialInformation() {
    m_gevInfo = {};
}

void CGevTL::__DoAcquireAllInterfaceSpecialInformation(const IFeatureControl& control,
                                                       size_t count) {
    // Kept here for the length of an update: the records borrow them.
    m_gevInterfaceInfos = CGevFeatureAgency::GetAllInterfaceFeatureByTL(control, count);
}

void CGevTL::__DoResetAllInterfaceSpecialInformation() {
    m_gevInterfaceInfos.clear();
}

}  // namespace OVTLClass
