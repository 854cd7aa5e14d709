#pragma once
/// One camera that an interface knows, open or not.

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "TLClassEvent/DeviceOfflineEvent.h"
#include "TLClassEvent/RemoteDeviceEvent.h"
#include "TLClassInfo/InfoRecords.h"
#include "TLClassMain/GcObject.h"

namespace OVTLClass {

class IInterface;
class IDataStream;
class IDeviceOfflineCallback;

class IDevice : public CGcObject {
public:
    using DataStreamList = std::vector<std::shared_ptr<IDataStream>>;
    using CGcObject::CGcObject;

    /// Opens the camera with both of its descriptions and makes its streams,
    /// closed. Success when it is open with the same access mode.
    /// @param accessMode  of the GenTL standard: 2 read-only, 3 control, 4 exclusive
    virtual void DoOpenDevice(int32_t accessMode) = 0;
    /// As above for a closed camera; CInvalidAccessError for one that is open. Of
    /// several threads one opens it, and so knows that it is its own.
    virtual void DoOpenClosedDevice(int32_t accessMode) = 0;
    /// Stops and closes all that hangs on the camera. Nothing when it is closed.
    virtual void DoCloseDevice() = 0;
    virtual bool DoIsDeviceOpen() = 0;
    virtual DEV_INFO DoGetDeviceInfo() = 0;
    virtual COMMON_DEVICE_INFO DoGetCommonDeviceInfo() = 0;
    /// Empty while the device is closed.
    virtual DataStreamList DoGetDataStreamList() = 0;
    virtual std::shared_ptr<IInterface> DoGetInterface() = 0;
    /// The camera's own features, null while it is closed. The features of the
    /// host's side come from GetFeatureControl.
    virtual IFeatureControl* DoGetRemoteDeviceFeatureControl() = 0;
    virtual GenApi_3_0_ORVANE::CNodeMapRef* DoGetRemoteDeviceNodeMapRef() = 0;
    virtual std::string DoGetRemoteDeviceXML() = 0;
    /// The mode of the last opening, 1 before the first.
    virtual int32_t DoGetDeviceAccessMode() = 0;
    /// Keeps a clone, which is called when the camera is gone; never when the
    /// producer can't tell. The result is its handle, until the close: the clone
    /// as an IEventCallback.
    virtual void* DoRegisterDeviceOfflineCallback(const IDeviceOfflineCallback& callback) = 0;
    /// Waits for a running callback, except in any callback: that one may wait for
    /// the calling thread. Nothing for an unknown handle.
    virtual void DoUnregisterDeviceOfflineCallback(void* handle) = 0;
    /// Whether a callback of that handle is registered.
    virtual bool DoHasDeviceOfflineCallback(const void* handle) = 0;
    /// Whether the producer reported the open camera gone; it does so only after
    /// a callback was registered.
    virtual bool DoIsDeviceOffineLine() = 0;
    // The queue of the camera's own events; CInvalidCallError before
    // DoActiveRemoteDeviceEventThread.
    virtual uint32_t DoGetEventNumInQueue() = 0;
    virtual void DoFlushRemoteDeviceEvent() = 0;
    virtual void* DoGetDeviceHandle() = 0;
    virtual void* DoGetRemoteDeviceHandle() = 0;
    virtual std::shared_ptr<const CGenTLLib> DoGetGenTLLib() = 0;
    // The threads on which callbacks run; 0 for one that doesn't run.
    virtual pthread_t DoGetEventThreadID() = 0;
    virtual pthread_t DoGetOfflineThreadID() = 0;
    /// Has the camera's own events reach its features, until the close. Nothing
    /// when they do, or when the producer has none.
    virtual void DoActiveRemoteDeviceEventThread() = 0;
    // The three calls below work on a closed device: that is how a camera in a
    // foreign subnet gets its address.
    virtual void DoIpConfiguration(int32_t mode, const std::string& ip, const std::string& mask,
                                   const std::string& gateway, const std::string& userId) = 0;
    virtual void DoForceIp(const std::string& ip, const std::string& mask,
                           const std::string& gateway) = 0;
    virtual void DoResetDevice(int32_t mode) = 0;
    /// Takes what a search told of the camera; facts that it didn't tell stay.
    virtual void DoUpdateDeviceInformation(const DEV_INFO& info) = 0;
    /// Takes a name that was written to the camera. It stays until a search tells
    /// another than before: producers may know the old one for long.
    virtual void DoSetUserId(const std::string& userId) = 0;
    virtual GenApi_3_0_ORVANE::CNodeMapRef* DoGetDeviceNodeMapRef() = 0;
    virtual CNativeDeviceOfflineEvent& DOGetCNativeDeviceOfflineEvent() = 0;
};

class CDevice : public IDevice {
public:
    CDevice(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IInterface> owner,
            void* interfaceHandle, const DEV_INFO& info);
    ~CDevice() override;

    void DoOpenDevice(int32_t accessMode) override;
    void DoOpenClosedDevice(int32_t accessMode) override;
    void DoCloseDevice() override;
    bool DoIsDeviceOpen() override { return m_open; }
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
    bool DoHasDeviceOfflineCallback(const void* handle) override {
        return m_offlineEvent.HasDeviceOfflineCallback(handle);
    }
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
    void DoSetUserId(const std::string& userId) override;
    GenApi_3_0_ORVANE::CNodeMapRef* DoGetDeviceNodeMapRef() override { return GetNodeMapRef(); }
    CNativeDeviceOfflineEvent& DOGetCNativeDeviceOfflineEvent() override {
        return m_offlineEvent.GetNativeDeviceOfflineEvent();
    }

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

/// A camera that speaks GigE Vision.
class CGevDevice : public CDevice {
public:
    CGevDevice(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IInterface> owner,
               void* interfaceHandle, const DEV_INFO& info, const GEV_DEV_INFO& gevInfo);

    GEV_DEV_INFO GetGevDeviceInfo();
    void DoUpdateDeviceInformation(const DEV_INFO& info) override;

private:
    CLock m_gevInfoLock{LockRank::Information};
    GEV_DEV_INFO m_gevInfo;
};

}  // namespace OVTLClass
