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

/// Any thread may read the list while another replaces it. Positions count from 1, as
/// those of the flat interface do.
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

    /// The camera at a position; null if the list is shorter.
    /// @param index  from 1
    Camera FindByIndex(uint32_t index) const;
    /// The first camera that has that serial number, address or user ID; null if none
    /// has.
    Camera FindByKey(OV_OPEN_MODE mode, const std::string& key) const;

    /// Fills a record for each camera.
    /// @param records  null to ask for the size
    /// @param size     in: bytes of records; out: bytes that are needed, or 0 if the
    ///                 memory is too small, for which the call throws
    void GetBaseInfo(OV_DEVICE_BASE_INFO* records, size_t* size, const OvPlace& place) const;
    /// Throws for an index beyond the list and for a camera that isn't a GigE Vision
    /// camera.
    /// @param index  from 1
    void GetIPInfo(uint32_t index, OV_DEVICE_IP_INFO& record, const OvPlace& place) const;

    /// Sets the user ID of the first camera with that device ID.
    void SetUserId(const std::string& deviceId, const std::string& userId);

private:
    mutable OVTLClass::CLock m_lock{OVTLClass::LockRank::KnownDevices};
    List m_list;
};
