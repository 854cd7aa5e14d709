#include "Session.h"

#include <algorithm>

#include "Error.h"

namespace {

constexpr uint32_t kSearchTimeout = 1000;

bool IsIndex(const std::string& key) {
    constexpr size_t kMaxDigits = 3;
    return !key.empty() && key.size() <= kMaxDigits &&
           std::all_of(key.begin(), key.end(),
                       [](char digit) { return digit >= '0' && digit <= '9'; });
}

}  // namespace

Library::Library() {
    Check(OVInitLib(), "start the library");
}

Library::~Library() {
    OVCloseLib();
}

std::vector<OV_DEVICE_BASE_INFO> Library::FindCameras(uint32_t timeout) {
    uint32_t count = 0;
    Check(OVUpdateDeviceList(&count, timeout), "search for cameras");
    std::vector<OV_DEVICE_BASE_INFO> cameras(count);
    size_t size = cameras.size() * sizeof(OV_DEVICE_BASE_INFO);
    Check(OVGetAllDeviceBaseInfo(cameras.data(), &size), "list the cameras");
    return cameras;
}

Camera::Camera(const CameraChoice& choice) {
    Library::FindCameras(kSearchTimeout);
    OV_OPEN_PARAM param{};
    param.pszContent = choice.key.c_str();
    param.openMode = IsIndex(choice.key) ? OV_OPEN_INDEX : OV_OPEN_SN;
    param.accessMode = choice.readOnly ? OV_ACCESS_READONLY : OV_ACCESS_EXCLUSIVE;
    Check(OVOpenDevice(&param, &m_handle), "open camera " + choice.key);
}

Camera::~Camera() {
    OVCloseDevice(m_handle);
}
