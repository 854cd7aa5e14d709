// How a system module renews its list of interfaces.

#include <algorithm>

#include "Base/GCException.h"
#include "GenApi/NodeMapRef.h"
#include "TLClassInfo/InformationAgency.h"
#include "TLClassInterface/InterfaceFactory.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassMain/TL.h"
#include "TLClassMain/TLManager.h"
#include "TLClassModule/IInterface.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

namespace {

template <class Interfaces>
auto FindById(const Interfaces& interfaces, const IF_INFO& record) {
    return std::find_if(interfaces.begin(), interfaces.end(), [&record](const auto& candidate) {
        return candidate->DoGetInterfaceInfo().id.value == record.id.value;
    });
}

}  // namespace

/// Holds the special information of all interfaces for the length of one update.
class CTL::CResetInterfaceInformationAgency : public CAgency {
public:
    CResetInterfaceInformationAgency(CTL& tl, size_t count) {
        Arm([&tl] { tl.__DoResetAllInterfaceSpecialInformation(); });
        tl.__DoAcquireAllInterfaceSpecialInformation(*tl.GetFeatureControl(), count);
    }
};

void CTL::DoUpdateInterfaceList(unsigned timeout, bool& changed) {
    const CAutoLock lock(m_updateLock);
    changed = false;
    if (!m_open) {
        return;
    }
    GenTL::bool8_t producerChanged = 0;
    const int32_t status = GetLib().TLUpdateInterfaceList(m_handle, &producerChanged, timeout);
    OV_LOG_IF_FAILED(status, GetLib());
    if (status != 0) {
        return;
    }
    m_listIsStale = m_listIsStale || producerChanged != 0;
    if (!m_listIsStale) {
        OV_RUN_LOGGED([this] { __RefreshInterfaces(); });
        return;
    }
    OV_RUN_LOGGED([this, &changed] {
        __RenewInterfaceList();
        m_listIsStale = false;
        changed = true;
    });
}

template <class Act>
void CTL::__WithInterfaceRecords(const Act& act) {
    std::vector<IF_INFO> records =
        COvInformationAgency::GetAllInterfaceInformationOfTL(GetLib(), m_handle);
    const CResetInterfaceInformationAgency acquired(*this, records.size());
    __LendSpecialInformation(records);
    act(records);
}

void CTL::__RenewInterfaceList() {
    // What the module's features tell may be cached from before the change.
    GetNodeMapRef()->_InvalidateNodes();
    __WithInterfaceRecords(
        [this](const std::vector<IF_INFO>& records) { __TakeInterfaceList(records); });
}

void CTL::__RefreshInterfaces() {
    if (!__DoInterfacesChange()) {
        return;
    }
    __WithInterfaceRecords([this](const std::vector<IF_INFO>& records) {
        const InterfaceList known = _GetGcObjectList<IInterface>();
        for (const IF_INFO& record : records) {
            const auto found = FindById(known, record);
            if (found != known.end()) {
                (*found)->DoUpdateInterfaceInformation(record);
            }
        }
    });
}

void CTL::__LendSpecialInformation(std::vector<IF_INFO>& records) {
    const std::vector<SPECIAL_INFO*> special =
        __DoGetAllInterfaceSpecialInformation(records.size());
    if (special.size() != records.size()) {
        OV_RAISE(CUnexpectedError, "The two interface information vectors have different size");
    }
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].pSpecialInfo = special[i];
    }
}

void CTL::__TakeInterfaceList(const std::vector<IF_INFO>& records) {
    InterfaceList known = _GetGcObjectList<IInterface>();
    {
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
    InterfaceList list;
    list.reserve(records.size());
    for (const IF_INFO& record : records) {
        const auto found = FindById(known, record);
        if (found != known.end()) {
            (*found)->DoUpdateInterfaceInformation(record);
            list.push_back(*found);
        } else {
            list.emplace_back(
                CInterfaceFactory::CreateInterface(GetLibPointer(), self, m_handle, record));
        }
    }
    return list;
}

CTL::InterfaceList CTL::__FindLostInterface(const InterfaceList& known,
                                            const InterfaceList& current) {
    InterfaceList lost;
    for (const auto& candidate : known) {
        if (std::find(current.begin(), current.end(), candidate) == current.end()) {
            lost.push_back(candidate);
        }
    }
    return lost;
}

void CTL::__OpenAllInterface(InterfaceList& list) {
    const auto failsToOpen = [](const std::shared_ptr<IInterface>& candidate) {
        bool opened = false;
        OV_RUN_LOGGED([&] {
            candidate->DoOpenInterface();
            opened = true;
        });
        return !opened;
    };
    list.erase(std::remove_if(list.begin(), list.end(), failsToOpen), list.end());
}

}  // namespace OVTLClass
