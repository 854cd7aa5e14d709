#pragma once
/// One interface module: a network adapter or a host controller.

#include <memory>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassMain/GcObject.h"

namespace OVTLClass {

class ITL;
class IDevice;

class IInterface : public CGcObject {
public:
    using DeviceList = std::vector<std::shared_ptr<IDevice>>;
    using CGcObject::CGcObject;

    /// Has the producer search for cameras and renews the children, or only what is
    /// known of them when they are the same. What goes wrong is logged and leaves the
    /// list as it was; the next update renews it.
    /// @param timeout  for the producer, in milliseconds
    /// @param changed  whether the list is another now
    virtual void DoUpdateDeviceList(unsigned timeout, bool& changed) = 0;
    virtual IF_INFO DoGetInterfaceInfo() = 0;
    virtual COMMON_INTERFACE_INFO DoGetCommonInterfaceInfo() = 0;
    virtual DeviceList DoGetDeviceList() = 0;
    /// Cameras that vanished while they were open.
    virtual DeviceList DoGetLostOpenDeviceList() = 0;
    virtual std::shared_ptr<ITL> DoGetTL() = 0;
    virtual void DoOpenInterface() = 0;
    virtual void DoCloseInterface() = 0;
    virtual bool DoIsInterfaceOpen() = 0;
    virtual void DoUpdateInterfaceInformation(const IF_INFO& info) = 0;

protected:
    // What only one transport knows of the interface and of its devices.
    virtual void __DoAcquireInterfaceSpecialInformation(const IFeatureControl& control) = 0;
    virtual void __DoResetInterfaceSpecialInformation() = 0;
    virtual void __DoAcquireAllDeviceSpecialInformation(const IFeatureControl& control,
                                                        size_t count) = 0;
    virtual void __DoResetAllDeviceSpecialInformation() = 0;
    virtual std::vector<SPECIAL_INFO*> __DoGetAllDeviceSpecialInformation(size_t count) = 0;
};

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

    /// Held while the device list is replaced, and by a device that makes its
    /// streams: outside all locks of the lists.
    CLock& GetDeviceListLock() { return m_deviceListLock; }
    /// Gives the producer's handle back without a word.
    void SetInterfaceLostStatus();

protected:
    void __DoAcquireInterfaceSpecialInformation(const IFeatureControl& control) override;
    void __DoResetInterfaceSpecialInformation() override;
    void __DoAcquireAllDeviceSpecialInformation(const IFeatureControl& control,
                                                size_t count) override;
    void __DoResetAllDeviceSpecialInformation() override;
    std::vector<SPECIAL_INFO*> __DoGetAllDeviceSpecialInformation(size_t count) override;

    /// This interface as its parent holds it; raises when it isn't listed.
    std::shared_ptr<IInterface> GetSelf();
    void* GetHandle() const { return m_handle; }

private:
    class CTLOpenInterfaceAgency;
    class CResetDeviceInformationAgency;

    void __DropClosedLostDevices();
    /// Calls `act` with what the producer tells of its devices now.
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
    CLock m_updateLock{LockRank::InterfaceUpdate};
    /// The producer reported a change that the list doesn't show yet.
    bool m_listIsStale = false;
    DeviceList m_lostOpen;
    CLock m_lostLock{LockRank::LostDevices};
    CLock m_deviceListLock{LockRank::DeviceList};
};

/// An adapter that GigE Vision cameras are found on.
class CGevInterface : public CInterface {
public:
    using CInterface::CInterface;

    void DoUpdateInterfaceInformation(const IF_INFO& info) override;

    /// The device of that address, the first number in the top byte of the low
    /// 32 bits. One that isn't listed is made: the producer is asked for it
    /// when it is opened.
    virtual std::shared_ptr<IDevice> DoCreateDeviceByIPAddress(int64_t ip);

    GEV_IF_INFO GetGevInterfaceInfo();

    /// The ID of the device that is made for that address.
    static std::string IdOfAddress(int64_t ip);
    /// Whether the device was made for an address: no search has found it.
    static bool IsMadeForAddress(IDevice& device);

protected:
    void __DoAcquireInterfaceSpecialInformation(const IFeatureControl& control) override;
    void __DoResetInterfaceSpecialInformation() override;
    void __DoAcquireAllDeviceSpecialInformation(const IFeatureControl& control,
                                                size_t count) override;
    void __DoResetAllDeviceSpecialInformation() override;
    std::vector<SPECIAL_INFO*> __DoGetAllDeviceSpecialInformation(size_t count) override;

private:
    std::shared_ptr<IDevice> __SearchDeviceByIP(int64_t ip, const std::string& id);

    CLock m_gevInfoLock{LockRank::Information};
    GEV_IF_INFO m_gevInfo;
    std::vector<GEV_DEV_INFO> m_gevDeviceInfos;
    CLock m_createLock{LockRank::CreateByAddress};
};

}  // namespace OVTLClass
