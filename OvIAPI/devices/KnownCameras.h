#pragma once
/// The cameras that the last search found.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "OvIDef.h"
#include "TLClassSupport/OvLock.h"
#include "camera/DeviceInfo.h"
#include "errors/Place.h"

/// Any thread may ask while another replaces the list. An application counts the
/// cameras from 1.
class CKnownCameras {
public:
    using Camera = std::shared_ptr<COvDeviceInfo>;
    using List = std::vector<Camera>;

    CKnownCameras() = default;
    CKnownCameras(const CKnownCameras&) = delete;
    CKnownCameras& operator=(const CKnownCameras&) = delete;

    /// @return the number of cameras
    size_t Replace(List list);
    void Clear();
    bool IsEmpty() const;

    /// Null when the list is shorter.
    /// @param index  from 1
    Camera FindByIndex(uint32_t index) const;
    /// The first camera with that serial number, address or user ID; null without one.
    Camera FindByKey(OV_OPEN_MODE mode, const std::string& key) const;

    /// Fills a record for each camera.
    /// @param records  null to ask for the size
    /// @param size     of the caller's memory in bytes, then the size that is needed;
    ///                 0 when the memory is too small, which raises
    void GetBaseInfo(OV_DEVICE_BASE_INFO* records, size_t* size, const OvPlace& place) const;
    /// Raises for an index beyond the list and for a camera that isn't GigE Vision.
    /// @param index  from 1
    void GetIPInfo(uint32_t index, OV_DEVICE_IP_INFO& record, const OvPlace& place) const;

    /// Sets the user ID of the first camera with that device ID.
    void SetUserId(const std::string& deviceId, const std::string& userId);

private:
    mutable OVTLClass::CLock m_lock{OVTLClass::LockRank::KnownDevices};
    List m_list;
};
