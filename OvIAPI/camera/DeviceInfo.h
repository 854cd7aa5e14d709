#pragma once
/// One camera of the flat interface: an entry of the device list, or the object that a
/// handle points to.

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "OvIDef.h"
#include "TLClassInfo/InfoRecords.h"
#include "TLClassSupport/OvLock.h"
#include "camera/AttachedFrame.h"
#include "camera/CameraNodes.h"
#include "camera/CameraPolling.h"
#include "camera/FetchGate.h"
#include "camera/FramePool.h"

namespace OVTLClass {
class IDevice;
class IDataStream;
}  // namespace OVTLClass

class IOvDeviceInfo {
public:
    virtual ~IOvDeviceInfo() = default;
};

/// The four addresses of a camera or an adapter, as numbers and as texts. The first part
/// of an address is the highest byte of its number, which has 48 bits for a MAC and 32
/// for the others.
struct OvAddresses {
    int64_t mac = 0;
    int64_t ip = 0;
    int64_t subnetMask = 0;
    int64_t gateway = 0;
    std::string macText;
    std::string ipText;
    std::string subnetMaskText;
    std::string gatewayText;

    void Set(const OVTLClass::GEV_ADDRESS_INFO& info);
};

class COvDeviceInfo : public IOvDeviceInfo {
public:
    COvDeviceInfo() = default;
    ~COvDeviceInfo() override = default;
    COvDeviceInfo& operator=(const COvDeviceInfo&) = delete;

    /// Sets the device class that follows from the camera's transport and its producer's
    /// ID.
    virtual void SetDeviceClass(const std::string& tlType, const std::string& tlId);
    /// A copy with locks and a frame pool of its own.
    virtual std::unique_ptr<COvDeviceInfo> Clone() const;

    void SetDevice(std::shared_ptr<OVTLClass::IDevice> device) { m_device = std::move(device); }
    const std::shared_ptr<OVTLClass::IDevice>& GetDevice() const { return m_device; }
    /// The first stream, the only one that is ever opened. It is looked up once and then
    /// returned without a lock or a count, since calls that fetch frames ask several times.
    const std::shared_ptr<OVTLClass::IDataStream>& GetStream() const;

    void SetAccessStatus(int32_t producerStatus);
    OV_ACCESS_STATUS GetAccessStatus() const { return m_accessStatus; }
    OV_DEVICE_CLASS GetDeviceClass() const { return m_deviceClass; }

    void SetUserId(const std::string& userId);
    std::string GetUserId() const;

    void SetOpenedByIp() { m_openedByIp = true; }

    CFramePool& GetFramePool() { return m_framePool; }
    CFetchGate& GetFetchGate() { return m_fetchGate; }
    /// Starts and stops hold it from beginning to end.
    OVTLClass::CLock& GetAcquisitionLock() { return m_acquisitionLock; }
    /// A transfer of a file holds it from beginning to end.
    OVTLClass::CLock& GetFileLock() { return m_fileLock; }
    CCameraPolling& GetPolling() const { return m_polling; }
    CCameraNodes& GetNodes() { return m_nodes; }
    CAttachedFrame& GetAttachedFrame() { return m_attachedFrame; }

    std::string vendorName;
    std::string modelName;
    std::string serialNumber;
    std::string displayName;
    std::string deviceId;
    OvAddresses deviceAddresses;
    OvAddresses adapterAddresses;
    std::string adapterDescription;

private:
    COvDeviceInfo(const COvDeviceInfo& other);

    std::shared_ptr<OVTLClass::IDevice> m_device;
    bool m_openedByIp = false;
    std::string m_userId;
    OV_DEVICE_CLASS m_deviceClass = OV_DEVICE_CLASS_UNKNOWN;
    OV_ACCESS_STATUS m_accessStatus = OV_ACCESS_STATUS_UNKNOWN;
    mutable OVTLClass::CLock m_userIdLock{OVTLClass::LockRank::UserId};
    mutable OVTLClass::CLock m_streamLock{OVTLClass::LockRank::HandleStream};
    mutable std::shared_ptr<OVTLClass::IDataStream> m_stream;
    /// Set after the stream, which then stays as it is.
    mutable std::atomic<bool> m_hasStream{false};
    CAttachedFrame m_attachedFrame{*this};
    CFramePool m_framePool{[this] { m_attachedFrame.Detach(); }};
    CFetchGate m_fetchGate;
    OVTLClass::CLock m_acquisitionLock{OVTLClass::LockRank::Acquisition};
    OVTLClass::CLock m_fileLock{OVTLClass::LockRank::FileTransfer};
    mutable CCameraPolling m_polling;
    CCameraNodes m_nodes;
};
