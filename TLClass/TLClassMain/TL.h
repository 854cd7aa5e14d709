#pragma once
/// The open system module of one producer.

#include <memory>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/ITL.h"
#include "TLClassModule/ListUpdate.h"

namespace OVTLClass {

class IInterface;

class CTL : public ITL {
public:
    using InterfaceList = std::vector<std::shared_ptr<IInterface>>;

    CTL(std::shared_ptr<const CGenTLLib> lib, TL_INFO info);
    ~CTL() override;

    void DoUpdateInterfaceList(unsigned timeout, bool& changed) override;
    TL_INFO DoGetTLInfo() override { return m_info; }
    InterfaceList DoGetInterfaceList() override;
    InterfaceList DoGetLostInterfaceList() override;
    void DoOpenTL() override;
    void DoCloseTL() override;
    bool DoIsTLOpen() override { return m_open; }

protected:
    // What only one transport knows of the system and of its interfaces; the
    // plain form knows nothing.
    virtual void __DoAcquireTLSpecialInformation(const IFeatureControl& control);
    virtual std::vector<SPECIAL_INFO*> __DoGetAllInterfaceSpecialInformation(size_t count);
    virtual void __DoResetTLSpecialInformation();
    virtual void __DoAcquireAllInterfaceSpecialInformation(const IFeatureControl& control,
                                                           size_t count);
    virtual void __DoResetAllInterfaceSpecialInformation();
    /// The interfaces of the records, in their order: known ones are kept and
    /// refreshed, the others made.
    virtual InterfaceList __CompareInterfaceList(const std::vector<IF_INFO>& records,
                                                 const InterfaceList& known);
    /// Whether interfaces have facts that change while the list stays.
    virtual bool __DoInterfacesChange() const { return false; }

private:
    class CTLOpenAgency;
    class CResetInterfaceInformationAgency;

    /// Calls `act` with the producer's present records of its interfaces.
    template <class Act>
    void __WithInterfaceRecords(const Act& act);
    void __RenewInterfaceList();
    void __RefreshInterfaces();
    void __TakeInterfaceList(const std::vector<IF_INFO>& records);
    static InterfaceList __FindLostInterface(const InterfaceList& known,
                                             const InterfaceList& current);
    static void __OpenAllInterface(InterfaceList& list);
    void __CloseLostInterfaces();

    TL_INFO m_info;
    void* m_handle = nullptr;
    bool m_open = false;
    CListUpdate m_update{LockRank::SystemUpdate};
    InterfaceList m_lost;
    CLock m_lostLock{LockRank::LostInterfaces};
};

}  // namespace OVTLClass
