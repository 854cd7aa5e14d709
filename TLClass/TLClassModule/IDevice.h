#pragma once
/// One camera that an interface knows, open or not.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/GcObject.h"

namespace OVTLClass {

class CNativeDeviceOfflineEvent;
class IDataStream;
class IDeviceOfflineCallback;
class IInterface;

class IDevice : public CGcObject {
public:
    using DataStreamList = std::vector<std::shared_ptr<IDataStream>>;
    using CGcObject::CGcObject;

    /// Opens the camera with both of its descriptions and makes its streams,
    /// closed. Success when it is open with the same access mode.
    /// @param accessMode  of the GenTL standard: 2 read-only, 3 control, 4 exclusive
    virtual void DoOpenDevice(int32_t accessMode) = 0;
    /// Stops and closes the camera's streams, callbacks and threads, and then the camera.
    /// No effect when it is closed.
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
    /// Keeps a clone, which is called when the camera is gone; never when the producer
    /// doesn't report a loss.
    /// @return the handle, which is valid until the close: the clone as an IEventCallback
    virtual void* DoRegisterDeviceOfflineCallback(const IDeviceOfflineCallback& callback) = 0;
    /// Waits for a running callback, except in any callback: that one may wait for
    /// the calling thread. An unknown handle has no effect.
    virtual void DoUnregisterDeviceOfflineCallback(void* handle) = 0;
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
    /// Starts the thread that hands the camera's own events to its features, until the
    /// close. No effect while it runs, and with a producer without such events.
    virtual void DoActiveRemoteDeviceEventThread() = 0;
    // The three calls below work on a closed device: that is how a camera in a
    // foreign subnet gets its address.
    virtual void DoIpConfiguration(int32_t mode, const std::string& ip, const std::string& mask,
                                   const std::string& gateway, const std::string& userId) = 0;
    virtual void DoForceIp(const std::string& ip, const std::string& mask,
                           const std::string& gateway) = 0;
    virtual void DoResetDevice(int32_t mode) = 0;
    /// Takes what a search found out about the camera; facts that it didn't find stay.
    virtual void DoUpdateDeviceInformation(const DEV_INFO& info) = 0;
    virtual GenApi_3_0_ORVANE::CNodeMapRef* DoGetDeviceNodeMapRef() = 0;
    virtual CNativeDeviceOfflineEvent& DOGetCNativeDeviceOfflineEvent() = 0;
    /// As DoOpenDevice for a closed camera; CInvalidAccessError for one that is open. Of
    /// several threads one opens it, and so knows that it is its own.
    virtual void DoOpenClosedDevice(int32_t accessMode) = 0;
    /// Whether a callback of that handle is registered. What the handle pointed to may
    /// be gone: it isn't looked at.
    virtual bool DoHasDeviceOfflineCallback(const void* handle) = 0;
    /// Takes a name that was written to the camera. It stays until a search reports
    /// another than before: producers may report the old one for long.
    virtual void DoSetUserId(const std::string& userId) = 0;
    /// The camera's addresses as the last search reported them. Empty for a camera that
    /// doesn't speak GigE Vision.
    virtual std::optional<GEV_DEV_INFO> DoGetGevDeviceInfo() = 0;
};

}  // namespace OVTLClass
