#pragma once
/// The open system module of one producer.

#include <memory>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassMain/GcObject.h"

namespace OVTLClass {

class IInterface;
class CInterface;

class ITL : public CGcObject {
public:
    using CGcObject::CGcObject;

    /// Has the producer look for interfaces and renews the children, or only what
    /// changes about them while they are the same. What goes wrong is logged and
    /// leaves the list as it was; the next update renews it.
    /// @param timeout  for the producer, in milliseconds
    /// @param changed  whether the list is another now
    virtual void DoUpdateInterfaceList(unsigned timeout, bool& changed) = 0;
    virtual TL_INFO DoGetTLInfo() = 0;
    virtual std::vector<std::shared_ptr<IInterface>> DoGetInterfaceList() = 0;
    /// Interfaces that the producer no longer lists.
    virtual std::vector<std::shared_ptr<IInterface>> DoGetLostInterfaceList() = 0;
    virtual void DoOpenTL() = 0;
    virtual void DoCloseTL() = 0;
    virtual bool DoIsTLOpen() = 0;
};

class CTL : public ITL {
public:
    using InterfaceList = std::vector<std::shared_ptr<CInterface>>;

    CTL(std::shared_ptr<const CGenTLLib> lib, TL_INFO info);
    ~CTL() override;

    void DoUpdateInterfaceList(unsigned timeout, bool& changed) override;
    TL_INFO DoGetTLInfo() override { return m_info; }
    std::vector<std::shared_ptr<IInterface>> DoGetInterfaceList() override;
    std::vector<std::shared_ptr<IInterface>> DoGetLostInterfaceList() override;
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

    /// Calls `act` with what the producer tells of its interfaces now.
    template <class Act>
    void __WithInterfaceRecords(const Act& act);
    void __RenewInterfaceList();
    void __RefreshInterfaces();
    void __LendSpecialInformation(std::vector<IF_INFO>& records);
    void __TakeInterfaceList(const std::vector<IF_INFO>& records);
    static InterfaceList __FindLostInterface(const InterfaceList& known,
                                             const InterfaceList& current);
    static void __OpenAllInterface(InterfaceList& list);
    void __CloseLostInterfaces();

    TL_INFO m_info;
    void* m_handle = nullptr;
    bool m_open = false;
    CLock m_updateLock{LockRank::SystemUpdate};
    /// The producer reported a change that the list doesn't show yet.
    bool m_listIsStale = false;
    InterfaceList m_lost;
    CLock m_lostLock{LockRank::LostInterfaces};
};

/// The system module of a GigE Vision producer.
class CGevTL : public CTL {
public:
    using CTL::CTL;

    GEV_TL_INFO GetGevTLInfo() const { return m_gevInfo; }
    std::vector<GEV_IF_INFO> GetAllGevInterfaceInfo() const { return m_gevInterfaceInfos; }

protected:
    void __DoAcquireTLSpecialInformation(const IFeatureControl& control) override;
    std::vector<SPECIAL_INFO*> __DoGetAllInterfaceSpecialInformation(size_t count) override;
    void __DoResetTLSpecialInformation() override;
    void __DoAcquireAllInterfaceSpecialInformation(const IFeatureControl& control,
                                                   size_t count) override;
    void __DoResetAllInterfaceSpecialInformation() override;
    /// An adapter may get another address.
    bool __DoInterfacesChange() const override { return true; }

private:
    std::vector<GEV_IF_INFO> m_gevInterfaceInfos;
    GEV_TL_INFO m_gevInfo;
};

}  // namespace OVTLClass
