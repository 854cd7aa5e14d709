// From an open handle to a closed camera.

#include <algorithm>

#include "Acquisition.h"
#include "DeviceInfoFactory.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassLoadTL/OvString.h"
#include "TLClassLoadTL/VxThread.h"
#include "TLClassMain/Agency.h"
#include "TLClassMain/DataStream.h"
#include "TLClassMain/Device.h"

using namespace OVTLClass;

namespace {

/// A lock by the names that a condition knows.
struct ConditionLock {
    CLock& held;

    void lock() const { held.Lock(); }
    void unlock() const { held.Unlock(); }
};

auto IsHandle(const COvDeviceInfo& info) {
    return [&info](const auto& handle) { return handle.get() == &info; };
}

/// Which of the camera's callbacks the calling thread runs; null for none.
const char* CallbackOn(const COvDeviceInfo& info) {
    const pthread_t self = CVxThread::PthreadSelf();
    if (self == info.GetStream()->DoGetAcquisitionThreadID()) {
        return "capture";
    }
    if (self == info.GetDevice()->DoGetEventThreadID()) {
        return "event";
    }
    return self == info.GetDevice()->DoGetOfflineThreadID() ? "offline" : nullptr;
}

/// Raises on a thread that runs one of the camera's callbacks.
/// @param what  "device" or "lib"
void CheckNotInCallback(const COvDeviceInfo& info, const char* what) {
    if (const char* const callback = CallbackOn(info)) {
        OV_RAISE(CInvalidCallError,
                 COvString::MsgComposer("Can't close %s in %s callback", what, callback));
    }
}

/// Goes to its end whatever fails: the handle is void afterwards.
void Close(COvDeviceInfo& info) {
    EndAcquisition(info);
    OV_RUN_LOGGED([&info] { info.GetStream()->DoCloseDataStream(); });
    OV_RUN_LOGGED([&info] { info.GetDevice()->DoCloseDevice(); });
}

}  // namespace

void CDeviceInfoFactory::CloseDevice(const COvDeviceInfo& info) {
    CheckNotInCallback(info, "device");
    if (COvDeviceInfo* const handle = __BeginClosing(info)) {
        __Close(*handle);
    }
}

void CDeviceInfoFactory::CloseAllDevice() {
    while (COvDeviceInfo* const last = __BeginClosingLast()) {
        __Close(*last);
    }
}

bool CDeviceInfoFactory::IsInCallback() {
    const CAutoLock lock(m_openLock);
    const auto isIn = [](const auto& handle) { return CallbackOn(*handle) != nullptr; };
    return std::any_of(m_open.begin(), m_open.end(), isIn) ||
           std::any_of(m_closing.begin(), m_closing.end(), isIn);
}

COvDeviceInfo* CDeviceInfoFactory::__BeginClosing(const COvDeviceInfo& info) {
    const CAutoLock lock(m_openLock);
    const auto found = std::find_if(m_open.begin(), m_open.end(), IsHandle(info));
    if (found == m_open.end()) {
        ConditionLock held{m_openLock};
        m_closed.wait(
            held, [&] { return std::none_of(m_closing.begin(), m_closing.end(), IsHandle(info)); });
        return nullptr;
    }
    m_closing.push_back(std::move(*found));
    m_open.erase(found);
    return m_closing.back().get();
}

COvDeviceInfo* CDeviceInfoFactory::__BeginClosingLast() {
    const CAutoLock lock(m_openLock);
    for (const auto& closing : m_closing) {
        CheckNotInCallback(*closing, "lib");
    }
    if (m_open.empty()) {
        ConditionLock held{m_openLock};
        m_closed.wait(held, [this] { return m_closing.empty(); });
        return nullptr;
    }
    CheckNotInCallback(*m_open.back(), "lib");
    return __BeginClosing(*m_open.back());
}

void CDeviceInfoFactory::__Close(COvDeviceInfo& info) {
    const CRollback ended([this, &info] { __EndClosing(info); });
    Close(info);
}

void CDeviceInfoFactory::__EndClosing(const COvDeviceInfo& info) {
    const CAutoLock lock(m_openLock);
    m_closing.erase(std::find_if(m_closing.begin(), m_closing.end(), IsHandle(info)));
    m_closed.notify_all();
}
