// How a system module renews its list of interfaces.

#include <algorithm>

#include "GenApi/NodeMapRef.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassInterface/InterfaceFactory.h"
#include "TLClassMain/TL.h"
#include "TLClassMain/TLManager.h"
#include "TLClassModule/ChildList.h"
#include "TLClassSupport/Agency.h"

namespace OVTLClass {

/// Holds the special information of all interfaces for the length of one update.
class CTL::CResetInterfaceInformationAgency : public CAgency {
public:
    CResetInterfaceInformationAgency(CTL& tl, size_t count) {
        Arm([&tl] { tl.__DoResetAllInterfaceSpecialInformation(); });
        tl.__DoAcquireAllInterfaceSpecialInformation(*tl.GetFeatureControl(), count);
    }
};

void CTL::DoUpdateInterfaceList(unsigned timeout, bool& changed) {
    const auto ask = [&](GenTL::bool8_t* producerChanged) {
        return GetLib().TLUpdateInterfaceList(m_handle, producerChanged, timeout);
    };
    const auto refresh = [this] { __RefreshInterfaces(); };
    const auto renew = [this] { __RenewInterfaceList(); };
    changed = OV_UPDATE_LIST(m_update, m_open, GetLib(), ask, refresh, renew);
}

template <class Act>
void CTL::__WithInterfaceRecords(const Act& act) {
    std::vector<IF_INFO> records =
        COvInformationAgency::GetAllInterfaceInformationOfTL(GetLib(), m_handle);
    const CResetInterfaceInformationAgency acquired(*this, records.size());
    LendSpecialInformation(records, __DoGetAllInterfaceSpecialInformation(records.size()),
                           "The two interface information vectors have different size");
    act(records);
}

void CTL::__RenewInterfaceList() {
    // What the module's features say may be cached from before the change.
    GetNodeMapRef()->_InvalidateNodes();
    __WithInterfaceRecords(
        [this](const std::vector<IF_INFO>& records) { __TakeInterfaceList(records); });
}

void CTL::__RefreshInterfaces() {
    // An update of systems without such facts is as cheap as the producer's own.
    if (!__DoInterfacesChange()) {
        return;
    }
    __WithInterfaceRecords([this](const std::vector<IF_INFO>& records) {
        TakeRecords(DoGetInterfaceList(), records);
    });
}

void CTL::__TakeInterfaceList(const std::vector<IF_INFO>& records) {
    InterfaceList known = DoGetInterfaceList();
    {
        // A lost interface that comes back is the same object with its open devices.
        const CAutoLock lock(m_lostLock);
        known.insert(known.end(), m_lost.begin(), m_lost.end());
    }
    InterfaceList current = __CompareInterfaceList(records, known);
    {
        const CAutoLock lock(m_lostLock);
        m_lost = __FindLostInterface(known, current);
    }
    __OpenAllInterface(current);
    _UpdateChildrenList({current.begin(), current.end()});
}

CTL::InterfaceList CTL::__CompareInterfaceList(const std::vector<IF_INFO>& records,
                                               const InterfaceList& known) {
    const std::shared_ptr<ITL> self = CTLManager::GetInstance()->GetTLPointer(this);
    return MatchChildren(records, known, [&](const IF_INFO& record) {
        return std::shared_ptr<IInterface>(
            CInterfaceFactory::CreateInterface(GetLibPointer(), self, m_handle, record));
    });
}

CTL::InterfaceList CTL::__FindLostInterface(const InterfaceList& known,
                                            const InterfaceList& current) {
    return FindMissing(known, current);
}

void CTL::__OpenAllInterface(InterfaceList& list) {
    // One that can't be opened isn't listed, but the others are.
    std::erase_if(list, [](const std::shared_ptr<IInterface>& candidate) {
        bool opened = false;
        OV_RUN_LOGGED([&] {
            candidate->DoOpenInterface();
            opened = true;
        });
        return !opened;
    });
}

}  // namespace OVTLClass
