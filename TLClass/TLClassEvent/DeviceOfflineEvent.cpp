#include "TLClassEvent/DeviceOfflineEvent.h"

#include <algorithm>

#include "TLClassEvent/EndWait.h"
#include "TLClassEvent/RegisterEventAgency.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassLoadTL/OvLog.h"

namespace OVTLClass {

namespace {

constexpr int kOfflinePriority = 95;

}  // namespace

CDeviceOfflineEvent::~CDeviceOfflineEvent() {
    StopGetDeviceOfflineEventThread();
    OV_RUN_LOGGED([this] { UnregisterDeviceOfflineEvent(); });
}

bool CDeviceOfflineEvent::RegisterDeviceOfflineEvent(void* deviceHandle) {
    if (m_native.IsRegistered()) {
        return false;
    }
    m_native.RegisterDeviceOfflineEvent(deviceHandle);
    return m_native.IsRegistered();
}

void CDeviceOfflineEvent::UnregisterDeviceOfflineEvent() {
    m_native.UnRegisterDeviceOfflineEvent();
}

void CDeviceOfflineEvent::StartGetDeviceOfflineEventThread() {
    if (m_started || !m_native.IsRegistered()) {
        return;
    }
    if (!m_thread.Run(this, &__OnThreadGetDeviceOfflineEvent, kOfflinePriority)) {
        OV_RAISE(CUnexpectedError, "Failed to start __OnThreadGetDeviceOfflineEvent");
    }
    m_started = true;
}

void CDeviceOfflineEvent::StopGetDeviceOfflineEventThread() {
    if (!m_started) {
        return;
    }
    // The wait has no end of its own. Whatever else ends it has to do where the
    // kill is refused, or the close would hang.
    EndWaitingThread(m_thread, [this] {
        if (m_native.EventKill()) {
            return true;
        }
        OV_RUN_LOGGED([this] { m_native.UnRegisterDeviceOfflineEvent(); });
        return false;
    });
    m_started = false;
}

void* CDeviceOfflineEvent::RegisterDeviceOfflineCallback(const IDeviceOfflineCallback& callback) {
    const CAutoLock lock(m_callbackLock);
    m_callbacks.emplace_back(callback.Clone());
    return static_cast<IEventCallback*>(m_callbacks.back().get());
}

void CDeviceOfflineEvent::UnRegisterDeviceOfflineCallback(void* handle) {
    const CAutoLock lock(m_callbackLock);
    std::erase_if(m_callbacks, [handle](const auto& callback) {
        return static_cast<IEventCallback*>(callback.get()) == handle;
    });
}

void CDeviceOfflineEvent::UnRegisterAllDeviceOfflineCallback() {
    OV_RUN_LOGGED([this] {
        const CAutoLock lock(m_callbackLock);
        m_callbacks.clear();
    });
}

bool CDeviceOfflineEvent::IsDeviceOffineLine() {
    const CAutoLock lock(m_offlineLock);
    return m_offline;
}

void CDeviceOfflineEvent::__SetDeviceOfflineStatus(bool offline) {
    const CAutoLock lock(m_offlineLock);
    m_offline = offline;
}

void* CDeviceOfflineEvent::__OnThreadGetDeviceOfflineEvent(void* self) {
    if (self == nullptr) {
        OV_LOG("Invalid parameter");
        return nullptr;
    }
    OV_RUN_LOGGED([self] { static_cast<CDeviceOfflineEvent*>(self)->__WaitForOffline(); });
    return nullptr;
}

void CDeviceOfflineEvent::__WaitForOffline() {
    if (m_native.GetOfflineEvent() == 0) {
        __SetDeviceOfflineStatus(true);
        __CallAll();
    }
}

void CDeviceOfflineEvent::__CallAll() {
    const CAutoLock lock(m_callbackLock);
    for (const auto& callback : m_callbacks) {
        OV_RUN_LOGGED([&callback] { (*callback)(); });
    }
}

}  // namespace OVTLClass
