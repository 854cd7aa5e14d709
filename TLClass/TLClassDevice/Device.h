#pragma once
/// One camera that an interface knows, open or not.

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "Base/EachFrame.h"
#include "TLClassEvent/DeviceOfflineEvent.h"
#include "TLClassEvent/RemoteDeviceEvent.h"
#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/IDevice.h"

namespace OVTLClass {

class IInterface;

class CDevice : public IDevice {
public:
    CDevice(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IInterface> owner,
            void* interfaceHandle, const DEV_INFO& info);
    ~CDevice() override;

    void DoOpenDevice(int32_t accessMode) override;
    void DoCloseDevice() override;
    OV_EACH_FRAME bool DoIsDeviceOpen() override { return m_open; }
    DEV_INFO DoGetDeviceInfo() override;
    COMMON_DEVICE_INFO DoGetCommonDeviceInfo() override;
    DataStreamList DoGetDataStreamList() override;
    std::shared_ptr<IInterface> DoGetInterface() override { return m_interface; }
    IFeatureControl* DoGetRemoteDeviceFeatureControl() override;
    GenApi_3_0_ORVANE::CNodeMapRef* DoGetRemoteDeviceNodeMapRef() override;
    std::string DoGetRemoteDeviceXML() override { return m_remoteXml.GetXML(); }
    int32_t DoGetDeviceAccessMode() override { return m_accessMode; }
    void* DoRegisterDeviceOfflineCallback(const IDeviceOfflineCallback& callback) override;
    void DoUnregisterDeviceOfflineCallback(void* handle) override;
    bool DoIsDeviceOffineLine() override { return m_offlineEvent.IsDeviceOffineLine(); }
    uint32_t DoGetEventNumInQueue() override { return m_remoteEvent.GetEventNumInQueue(); }
    void DoFlushRemoteDeviceEvent() override { m_remoteEvent.FlushRemoteDeviceEvent(); }
    void* DoGetDeviceHandle() override { return m_handle; }
    void* DoGetRemoteDeviceHandle() override { return m_remoteHandle; }
    std::shared_ptr<const CGenTLLib> DoGetGenTLLib() override { return GetLibPointer(); }
    pthread_t DoGetEventThreadID() override { return m_remoteEvent.GetEventThreadID(); }
    pthread_t DoGetOfflineThreadID() override { return m_offlineEvent.GetOfflineThreadID(); }
    void DoActiveRemoteDeviceEventThread() override;
    void DoIpConfiguration(int32_t mode, const std::string& ip, const std::string& mask,
                           const std::string& gateway, const std::string& userId) override;
    void DoForceIp(const std::string& ip, const std::string& mask,
                   const std::string& gateway) override;
    void DoResetDevice(int32_t mode) override;
    void DoUpdateDeviceInformation(const DEV_INFO& info) override;
    GenApi_3_0_ORVANE::CNodeMapRef* DoGetDeviceNodeMapRef() override { return GetNodeMapRef(); }
    CNativeDeviceOfflineEvent& DOGetCNativeDeviceOfflineEvent() override {
        return m_offlineEvent.GetNativeDeviceOfflineEvent();
    }
    void DoOpenClosedDevice(int32_t accessMode) override;
    bool DoHasDeviceOfflineCallback(const void* handle) override {
        return m_offlineEvent.HasDeviceOfflineCallback(handle);
    }
    void DoSetUserId(const std::string& userId) override;
    std::optional<GEV_DEV_INFO> DoGetGevDeviceInfo() override { return std::nullopt; }

private:
    class CIFOpenDeviceAgency;
    class CUpdateDSListAgency;
    class CRegisterDeviceOfflineEventAgency;

    void __RenewCommonInformation(const COMMON_DEVICE_INFO& newer);
    void __Open(int32_t accessMode);
    void* __GetRemotePort(void* deviceHandle) const;
    void __UpdateDSList(void* deviceHandle);
    void __ResetDSList();

    std::shared_ptr<IInterface> m_interface;
    void* m_interfaceHandle;
    void* m_handle = nullptr;
    void* m_remoteHandle = nullptr;
    CLock m_infoLock{LockRank::Information};
    DEV_INFO m_info;
    COMMON_DEVICE_INFO m_commonInfo;
    /// By the last search.
    InfoString m_toldUserId;
    std::atomic<bool> m_open{false};
    int32_t m_accessMode = 1;
    CXMLAnalyzer m_remoteXml;
    std::unique_ptr<IFeatureControl> m_remoteFeatureControl;
    /// Held while the channel is started.
    CLock m_offlineEventLock;
    CDeviceOfflineEvent m_offlineEvent;
    /// Ends before the map that it delivers to.
    CRemoteDeviceEvent m_remoteEvent;
    CLock m_deviceLock;
};

}  // namespace OVTLClass
