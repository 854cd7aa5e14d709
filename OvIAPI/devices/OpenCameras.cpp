// The table of handles. Closing a camera takes long and waits for its callbacks, which
// may use the interface. So a camera that is being closed only changes lists, and is
// closed without the lock.

#include "devices/OpenCameras.h"

#include <algorithm>

#include "TLClassModule/DeviceAddress.h"
#include "TLClassModule/IDevice.h"
#include "errors/CallbackCheck.h"
#include "gige/Ipcalc.h"

using namespace OVTLClass;

void CheckMayClose(const COvDeviceInfo& camera, const char* what, const OvPlace& place) {
    CheckNotInCallback(
        *camera.GetDevice(), what,
        {CallbackKind::Capture, CallbackKind::Event, CallbackKind::Offline, CallbackKind::Feature},
        place);
}

COpenCameras::List::iterator COpenCameras::__Find(List& list, const COvDeviceInfo& camera) {
    return std::find_if(list.begin(), list.end(),
                        [&camera](const auto& entry) { return entry.get() == &camera; });
}

OV_DEV_HANDLE COpenCameras::Add(std::unique_ptr<COvDeviceInfo> camera) {
    const CAutoLock lock(m_lock);
    m_open.push_back(std::move(camera));
    // The address of the base, since that is what a handle is cast back to.
    return static_cast<IOvDeviceInfo*>(m_open.back().get());
}

bool COpenCameras::IsOpenAt(const std::string& ip) const {
    const std::string id = IdOfAddress(Cipcalc().StringToInt(ip));
    const auto isOpenAt = [&](const auto& camera) {
        // A camera that was opened by its address alone has no address text: its device
        // ID is made of the address.
        const bool isAt = camera->deviceAddresses.ipText == ip ||
                          camera->GetDevice()->DoGetDeviceInfo().id.value == id;
        return isAt && camera->GetDevice()->DoIsDeviceOpen();
    };
    const CAutoLock lock(m_lock);
    return std::any_of(m_open.begin(), m_open.end(), isOpenAt) ||
           std::any_of(m_closing.begin(), m_closing.end(), isOpenAt);
}

COvDeviceInfo* COpenCameras::BeginClosing(const COvDeviceInfo& camera) {
    const CAutoLock lock(m_lock);
    const auto opened = __Find(m_open, camera);
    if (opened != m_open.end()) {
        return __MoveToClosing(opened);
    }
    // Another thread closes it: when this call returns, the camera is closed as well.
    m_closed.wait(m_lock, [&] { return __Find(m_closing, camera) == m_closing.end(); });
    return nullptr;
}

COvDeviceInfo* COpenCameras::BeginClosingLast(const OvPlace& place) {
    const CAutoLock lock(m_lock);
    // This thread would wait for those at the end, and they for its callback.
    for (const auto& closing : m_closing) {
        CheckMayClose(*closing, "close lib", place);
    }
    if (m_open.empty()) {
        m_closed.wait(m_lock, [this] { return m_closing.empty(); });
        return nullptr;
    }
    CheckMayClose(*m_open.back(), "close lib", place);
    return __MoveToClosing(m_open.end() - 1);
}

COvDeviceInfo* COpenCameras::__MoveToClosing(List::iterator opened) {
    m_closing.push_back(std::move(*opened));
    m_open.erase(opened);
    return m_closing.back().get();
}

void COpenCameras::EndClosing(const COvDeviceInfo& camera) {
    const CAutoLock lock(m_lock);
    m_closing.erase(__Find(m_closing, camera));
    m_closed.notify_all();
}
