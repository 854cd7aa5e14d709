#include "TLClassMain/Query.h"

#include "TLClassMain/GevTL.h"
#include "TLClassMain/ITLManager.h"
#include "TLClassModule/IDevice.h"
#include "TLClassModule/IInterface.h"

namespace OVTLClass {

bool CTLQuery::IsGevTL(const std::shared_ptr<ITL>& tl) {
    return std::dynamic_pointer_cast<CGevTL>(tl) != nullptr;
}

TLList CTLQuery::QueryAllTL() {
    return ITLManager::GetInstance()->DoGetTLList();
}

GevTLList CTLQuery::QueryAllGevTL() {
    return QueryGevTLFromTLArray(QueryAllTL());
}

GevTLList CTLQuery::QueryGevTLFromTLArray(const TLList& tls) {
    GevTLList list;
    for (const auto& tl : tls) {
        if (auto gev = std::dynamic_pointer_cast<CGevTL>(tl)) {
            list.push_back(std::move(gev));
        }
    }
    return list;
}

TLList CTLQuery::QueryAllGenericTL() {
    return QueryGenericTLFromTLArray(QueryAllTL());
}

TLList CTLQuery::QueryGenericTLFromTLArray(const TLList& tls) {
    TLList list;
    for (const auto& tl : tls) {
        // Callers build lists of systems by casts, which leave nulls.
        if (tl) {
            list.push_back(tl);
        }
    }
    return list;
}

InterfacePointerList CInterfaceQuery::QueryAllInterface() {
    return QueryInterfaceFromTLArray(CTLQuery::QueryAllTL());
}

InterfacePointerList CInterfaceQuery::QueryInterfaceFromTLArray(const TLList& tls) {
    InterfacePointerList list;
    for (const auto& tl : CTLQuery::QueryGenericTLFromTLArray(tls)) {
        const auto interfaces = tl->DoGetInterfaceList();
        list.insert(list.end(), interfaces.begin(), interfaces.end());
    }
    return list;
}

DevicePointerList CDeviceQuery::QueryAllDevice() {
    return QueryDeviceFromTLArray(CTLQuery::QueryAllTL());
}

DevicePointerList CDeviceQuery::QueryDeviceFromTLArray(const TLList& tls) {
    DevicePointerList list;
    for (const auto& owner : CInterfaceQuery::QueryInterfaceFromTLArray(tls)) {
        const auto devices = owner->DoGetDeviceList();
        list.insert(list.end(), devices.begin(), devices.end());
    }
    return list;
}

}  // namespace OVTLClass
