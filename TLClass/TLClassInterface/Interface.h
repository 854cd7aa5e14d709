#pragma once
/// One interface module: a network adapter or a host controller.

#include <memory>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/IInterface.h"
#include "TLClassModule/ListUpdate.h"

namespace OVTLClass {

class ITL;
class IDevice;

class CInterface : public IInterface {
public:
    CInterface(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<ITL> tl, void* tlHandle,
               const IF_INFO& info);
    ~CInterface() override;

    void DoUpdateDeviceList(unsigned timeout, bool& changed) override;
    IF_INFO DoGetInterfaceInfo() override;
    COMMON_INTERFACE_INFO DoGetCommonInterfaceInfo() override { return m_commonInfo; }
    DeviceList DoGetDeviceList() override;
    DeviceList DoGetLostOpenDeviceList() override;
    std::shared_ptr<ITL> DoGetTL() override { return m_tl; }
    void DoOpenInterface() override;
    void DoCloseInterface() override;
    bool DoIsInterfaceOpen() override { return m_open; }
    void DoUpdateInterfaceInformation(const IF_INFO& info) override;

    std::shared_ptr<IDevice> DoCreateDeviceByIPAddress(int64_t /*ip*/) override { return nullptr; }
    std::optional<GEV_IF_INFO> DoGetGevInterfaceInfo() override { return std::nullopt; }
    CLock& GetDeviceListLock() override { return m_deviceListLock; }

    /// Closes the interface's handle and ignores the result: the producer no longer knows an
    /// interface that is lost.
    void SetInterfaceLostStatus();

protected:
    void __DoAcquireInterfaceSpecialInformation(const IFeatureControl& control) override;
    void __DoResetInterfaceSpecialInformation() override;
    void __DoAcquireAllDeviceSpecialInformation(const IFeatureControl& control,
                                                size_t count) override;
    void __DoResetAllDeviceSpecialInformation() override;
    std::vector<SPECIAL_INFO*> __DoGetAllDeviceSpecialInformation(size_t count) override;

    /// This interface as its parent holds it; throws when it isn't listed.
    std::shared_ptr<IInterface> GetSelf();
    void* GetHandle() const { return m_handle; }

private:
    class CTLOpenInterfaceAgency;
    class CResetDeviceInformationAgency;

    void __DropClosedLostDevices();
    /// Reads the producer's present device records, completes them from the interface's
    /// features and passes them to `act`. They are valid only during that call.
    template <class Act>
    void __WithDeviceRecords(const Act& act);
    void __RenewDeviceList();
    void __RefreshDevices();
    void __TakeDeviceList(std::vector<DEV_INFO>& records);
    DeviceList __CompareDeviceList(std::vector<DEV_INFO>& records, const DeviceList& known);
    void __SetLostOpenDevices(DeviceList lost);

    std::shared_ptr<ITL> m_tl;
    void* m_tlHandle;
    void* m_handle = nullptr;
    CLock m_infoLock{LockRank::Information};
    IF_INFO m_info;
    COMMON_INTERFACE_INFO m_commonInfo;
    bool m_open = false;
    CListUpdate m_update{LockRank::InterfaceUpdate};
    DeviceList m_lostOpen;
    CLock m_lostLock{LockRank::LostDevices};
    CLock m_deviceListLock{LockRank::DeviceList};
};

}  // namespace OVTLClass
