#include "camera/Session.h"

#include <algorithm>

#include "support/Error.h"

namespace {

bool IsIndex(const std::string& key) {
    constexpr size_t kMaxDigits = 3;
    return !key.empty() && key.size() <= kMaxDigits &&
           std::all_of(key.begin(), key.end(),
                       [](char digit) { return digit >= '0' && digit <= '9'; });
}

OV_STATUS Open(const CameraChoice& choice, OV_DEV_HANDLE& handle) {
    OV_OPEN_PARAM param{};
    param.pszContent = choice.key.c_str();
    param.openMode = IsIndex(choice.key) ? OV_OPEN_INDEX : OV_OPEN_SN;
    param.accessMode = choice.readOnly ? OV_ACCESS_READONLY : OV_ACCESS_EXCLUSIVE;
    return OVOpenDevice(&param, &handle);
}

}  // namespace

Library::Library() {
    Check(OVInitLib(), "start the library");
}

Library::~Library() {
    OVCloseLib();
}

std::vector<OV_DEVICE_BASE_INFO> Library::FindCameras(uint32_t timeout, Reach reach) {
    uint32_t count = 0;
    const auto update = reach == Reach::AllNetworks ? &OVUpdateAllDeviceList : &OVUpdateDeviceList;
    Check(update(&count, timeout), "search for cameras");
    std::vector<OV_DEVICE_BASE_INFO> cameras(count);
    size_t size = cameras.size() * sizeof(OV_DEVICE_BASE_INFO);
    Check(OVGetAllDeviceBaseInfo(cameras.data(), &size), "list the cameras");
    return cameras;
}

size_t IndexOf(const CameraChoice& choice, const std::vector<OV_DEVICE_BASE_INFO>& cameras) {
    if (IsIndex(choice.key)) {
        const size_t index = std::stoul(choice.key);
        if (index >= 1 && index <= cameras.size()) {
            return index;
        }
    } else {
        const auto found = std::find_if(
            cameras.begin(), cameras.end(),
            [&](const OV_DEVICE_BASE_INFO& camera) { return choice.key == camera.szSN; });
        if (found != cameras.end()) {
            return static_cast<size_t>(found - cameras.begin()) + 1;
        }
    }
    throw ToolError("there is no camera " + choice.key + "; look at them with: ovtool list");
}

OpenCamera::OpenCamera(const CameraChoice& choice) : m_handle(nullptr) {
    Check(Open(choice, m_handle), "open camera " + choice.key);
}

OpenCamera::~OpenCamera() {
    OVCloseDevice(m_handle);
}

std::unique_ptr<OpenCamera> OpenCamera::UnlessHeld(const CameraChoice& choice) {
    OV_DEV_HANDLE handle = nullptr;
    const OV_STATUS status = Open(choice, handle);
    if (status == OV_STATUS_INVALID_ACCESS) {
        return nullptr;
    }
    Check(status, "open camera " + choice.key);
    return std::unique_ptr<OpenCamera>(new OpenCamera(handle));
}

Camera::Camera(const CameraChoice& choice) {
    Library::FindCameras(kSearchTimeout);
    m_open = std::make_unique<OpenCamera>(choice);
}
