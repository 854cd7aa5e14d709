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

ToolError NoSuchCamera(const std::string& key, size_t found) {
    const std::string number = found == 1 ? "1 was" : std::to_string(found) + " were";
    return ToolError("there is no camera " + key + "; " + number + " found", ExitCode::NoCamera);
}

/// What the library answers where a place of the list or a serial number is nobody's.
bool IsNobody(OV_STATUS status) {
    return status == OV_STATUS_NOT_FOUND_DEVICE || status == OV_STATUS_OUT_OF_RANGE;
}

}  // namespace

Library::Library() {
    try {
        Check(OVInitLib(), "start the library");
    } catch (const ToolError& error) {
        // Whatever a producer fails of, there are no cameras.
        throw ToolError(error.what(), ExitCode::NoCamera, error.Detail());
    }
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
    throw NoSuchCamera(choice.key, cameras.size());
}

OpenCamera::OpenCamera(const CameraChoice& choice, Access access, size_t found)
    : m_handle(nullptr) {
    OV_OPEN_PARAM param{};
    param.pszContent = choice.key.c_str();
    param.openMode = IsIndex(choice.key) ? OV_OPEN_INDEX : OV_OPEN_SN;
    param.accessMode = access == Access::ReadOnly ? OV_ACCESS_READONLY : OV_ACCESS_CONTROL;
    const OV_STATUS status = OVOpenDevice(&param, &m_handle);
    if (IsNobody(status)) {
        throw NoSuchCamera(choice.key, found);
    }
    const std::string what = "open camera " + choice.key;
    if (CodeOf(status) == ExitCode::AccessDenied) {
        Check(status, what,
              access == Access::ReadOnly
                  ? "That program lets nobody look at the camera; close it first."
                  : "Close that program, or only look at the camera: ovtool get, features, read");
    }
    Check(status, what);
}

OpenCamera::~OpenCamera() {
    OVCloseDevice(m_handle);
}

std::unique_ptr<OpenCamera> OpenCamera::UnlessHeld(const CameraChoice& choice, size_t found) {
    try {
        return std::make_unique<OpenCamera>(choice, Access::ReadOnly, found);
    } catch (const ToolError& error) {
        if (error.Code() == ExitCode::AccessDenied) {
            return nullptr;
        }
        throw;
    }
}

Camera::Camera(const CameraChoice& choice, Access access)
    : m_choice(choice),
      m_access(access),
      m_found(Library::FindCameras(kSearchTimeout).size()),
      m_open(std::make_unique<OpenCamera>(choice, access, m_found)) {}

void Camera::Reopen() {
    m_open.reset();
    m_open = std::make_unique<OpenCamera>(m_choice, m_access, m_found);
}
