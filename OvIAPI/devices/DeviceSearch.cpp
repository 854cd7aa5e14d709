// A search asks all producers for their cameras and makes one list of the answers.
// Producers may take their whole time-out, so only one thread searches at a time.

#include "devices/DeviceSearch.h"

#include <algorithm>
#include <iterator>

#include "TLClassMain/ITLManager.h"
#include "TLClassUpdate/UpdateAgency.h"

using namespace OVTLClass;

namespace {

constexpr unsigned kWholeNetworkTimeout = 200;
constexpr unsigned kWholeNetworkInterval = 1;

void UpdateAll(const TLList& tls, OvSearchMode mode, unsigned timeout) {
    TLList others;
    std::remove_copy_if(tls.begin(), tls.end(), std::back_inserter(others), &CTLQuery::IsGevTL);
    bool changed = false;
    // Those of GigE Vision are searched together and apart from the others, because only
    // they have networks that a search may be limited to.
    CGevUpdateAgency gev(CTLQuery::QueryGevTLFromTLArray(tls));
    if (mode == OvSearchMode::LocalNetwork) {
        gev.DoUpdateInLocalNetwork(timeout, 0, changed);
    } else {
        gev.DoUpdateInWholeNetwork(timeout, kWholeNetworkInterval, changed);
    }
    CGenericUpdateAgency(others).DoUpdate(timeout, 0, changed);
}

OvDeviceInfoList ListCamerasOfAll(const TLList& tls) {
    OvDeviceInfoList list;
    for (const auto& tl : tls) {
        const OvDeviceInfoList devices = ListCamerasOf(*tl);
        list.insert(list.end(), devices.begin(), devices.end());
    }
    return list;
}

}  // namespace

OvDeviceInfoList CDeviceSearch::Run(unsigned timeout) {
    const CAutoLock lock(m_lock);
    const TLList tls = ITLManager::GetInstance()->DoGetTLList();
    UpdateAll(tls, m_mode, timeout);
    return ListCamerasOfAll(tls);
}

OvDeviceInfoList SearchWholeNetwork() {
    const TLList tls = ITLManager::GetInstance()->DoGetTLList();
    bool changed = false;
    CGevUpdateAgency(CTLQuery::QueryGevTLFromTLArray(tls))
        .DoUpdateInWholeNetwork(kWholeNetworkTimeout, kWholeNetworkInterval, changed);
    TLList gev;
    std::copy_if(tls.begin(), tls.end(), std::back_inserter(gev), &CTLQuery::IsGevTL);
    return ListCamerasOfAll(gev);
}
