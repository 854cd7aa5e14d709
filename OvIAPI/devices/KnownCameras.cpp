// The result of the last search. Open cameras don't depend on it: a handle is a copy.

#include "devices/KnownCameras.h"

#include <algorithm>

#include "TLClassSupport/OvException.h"
#include "devices/CameraRecords.h"

using namespace OVTLClass;

namespace {

/// Returns the text of a camera that is compared with a key of that mode.
std::string KeyOf(const COvDeviceInfo& camera, OV_OPEN_MODE mode) {
    switch (mode) {
        case OV_OPEN_SN:
            return camera.serialNumber;
        case OV_OPEN_IP:
            return camera.deviceAddresses.ipText;
        case OV_OPEN_MAC:
            return camera.deviceAddresses.macText;
        default:
            return camera.GetUserId();
    }
}

}  // namespace

size_t CKnownCameras::Replace(List list) {
    const CAutoLock lock(m_lock);
    // The old list ends with the argument, after the lock is released: the last reference
    // to a device may go with it.
    m_list.swap(list);
    return m_list.size();
}

void CKnownCameras::Clear() {
    const CAutoLock lock(m_lock);
    m_list.clear();
}

bool CKnownCameras::IsEmpty() const {
    const CAutoLock lock(m_lock);
    return m_list.empty();
}

CKnownCameras::Camera CKnownCameras::FindByIndex(uint32_t index) const {
    const CAutoLock lock(m_lock);
    return index >= 1 && index <= m_list.size() ? m_list[index - 1] : nullptr;
}

CKnownCameras::Camera CKnownCameras::FindByKey(OV_OPEN_MODE mode, const std::string& key) const {
    const CAutoLock lock(m_lock);
    const auto found = std::find_if(m_list.begin(), m_list.end(), [&](const Camera& camera) {
        return KeyOf(*camera, mode) == key;
    });
    return found == m_list.end() ? nullptr : *found;
}

void CKnownCameras::GetBaseInfo(OV_DEVICE_BASE_INFO* records, size_t* size,
                                const OvPlace& place) const {
    const CAutoLock lock(m_lock);
    const size_t needed = m_list.size() * sizeof(OV_DEVICE_BASE_INFO);
    if (records != nullptr) {
        // The list may have grown since the caller asked for the size.
        if (needed > *size) {
            *size = 0;
            OV_RAISE_AT(CNeedMoreBufferError, place, "Need more buffer for all device info");
        }
        for (size_t i = 0; i < m_list.size(); ++i) {
            FillRecord(records[i], *m_list[i]);
        }
    }
    *size = needed;
}

void CKnownCameras::GetIPInfo(uint32_t index, OV_DEVICE_IP_INFO& record,
                              const OvPlace& place) const {
    const Camera camera = FindByIndex(index);
    if (!camera) {
        OV_RAISE_AT(COutOfRangeError, place, "Index out of range");
    }
    if (camera->GetDeviceClass() != OV_DEVICE_CLASS_GEV) {
        OV_RAISE_AT(CInvalidParameterError, place, "The device is not GEV");
    }
    FillRecord(record, *camera);
}

void CKnownCameras::SetUserId(const std::string& deviceId, const std::string& userId) {
    const CAutoLock lock(m_lock);
    const auto found =
        std::find_if(m_list.begin(), m_list.end(),
                     [&deviceId](const Camera& camera) { return camera->deviceId == deviceId; });
    // A camera that was opened by its address isn't listed.
    if (found != m_list.end()) {
        (*found)->SetUserId(userId);
    }
}
