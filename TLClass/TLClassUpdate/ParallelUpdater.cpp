#include "TLClassUpdate/ParallelUpdater.h"

#include <algorithm>
#include <iterator>

#include "TLClassMain/GevTL.h"
#include "TLClassModule/IInterface.h"
#include "TLClassUpdate/Updater.h"

namespace OVTLClass {

void CGenericParallelUpdater::DoUpdateInterfaceList(unsigned timeout, bool& changed) {
    CStaticParalledUpdater::UpdateInterfaceList(m_tls, timeout, changed);
}

void CGenericParallelUpdater::DoUpdateDeviceList(unsigned timeout, unsigned interval,
                                                 bool& changed) {
    CStaticParalledUpdater::UpdateDeviceList(DoGetAllInterfaceList(), timeout, interval, changed);
}

InterfacePointerList CGenericParallelUpdater::DoGetAllInterfaceList() {
    return CInterfaceQuery::QueryInterfaceFromTLArray(m_tls);
}

CGevParallelUpdater::CGevParallelUpdater(const GevTLList& tls) : m_tls(tls.begin(), tls.end()) {}

void CGevParallelUpdater::DoUpdateInterfaceList(unsigned timeout, bool& changed) {
    CStaticParalledUpdater::UpdateInterfaceList(m_tls, timeout, changed);
}

void CGevParallelUpdater::DoUpdateDeviceList(unsigned timeout, unsigned interval, bool& changed) {
    const InterfacePointerList all = DoGetAllInterfaceList();
    CStaticParalledUpdater::UpdateDeviceList(__FilterInterfaceForUpdate(all), timeout, interval,
                                             changed);
    // Apart from the adapters: a bus that is listed at once would stop their search.
    bool othersChanged = false;
    CStaticParalledUpdater::UpdateDeviceList(__FilterOtherInterface(all), timeout, interval,
                                             othersChanged);
    changed = changed || othersChanged;
}

InterfacePointerList CGevParallelUpdater::DoGetAllInterfaceList() {
    return CInterfaceQuery::QueryInterfaceFromTLArray(m_tls);
}

InterfacePointerList CGevParallelUpdater::__FilterInterfaceForUpdate(
    const InterfacePointerList& interfaces) {
    InterfacePointerList list;
    for (const auto& candidate : interfaces) {
        const auto addresses = candidate->DoGetGevInterfaceInfo();
        if (!addresses) {
            continue;
        }
        if (addresses->ipAddress.value == 0) {
            bool changed = false;
            // In place: it ends at once, and an update that ends first would stop the others.
            candidate->DoUpdateDeviceList(0, changed);
            continue;
        }
        list.push_back(candidate);
    }
    return list;
}

InterfacePointerList CGevParallelUpdater::__FilterOtherInterface(
    const InterfacePointerList& interfaces) {
    InterfacePointerList list;
    std::copy_if(interfaces.begin(), interfaces.end(), std::back_inserter(list),
                 [](const auto& candidate) { return !candidate->DoGetGevInterfaceInfo(); });
    return list;
}

}  // namespace OVTLClass
