#include "TLClassEvent/DeviceOfflineEvent.h"

#include <algorithm>

#include "TLClassEvent/CallbackScope.h"
#include "TLClassEvent/EndWait.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLog.h"

namespace OVTLClass {

namespace {

constexpr int kOfflinePriority = 95;

}  // namespace

CDeviceOfflineEvent::CDeviceOfflineEvent(const CGenTLLib& lib, const void* camera)
    : m_camera(camera), m_lock(LockRank::OfflineCallbacks, camera), m_native(lib) {}

CDeviceOfflineEvent::~CDeviceOfflineEvent() {
    // The thread uses the registration.
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
    if (!m_native.IsRegistered() || !__BeginWork()) {
        return;
    }
    // Join the thread of before first: its work is done, but it may not have returned yet.
    m_thread.Destory();
    if (!m_thread.Run(this, &__OnThreadGetDeviceOfflineEvent, kOfflinePriority)) {
        __EndWork();
        OV_RAISE(CUnexpectedError, "Failed to start __OnThreadGetDeviceOfflineEvent");
    }
}

void CDeviceOfflineEvent::StopGetDeviceOfflineEventThread() {
    if (!__IsWorking()) {
        OV_RUN_LOGGED([this] { m_thread.Destory(); });
        return;
    }
    // The thread waits without a time-out. If the producer refuses the kill, the end of
    // the registration has to end the wait, or the close would block for ever.
    EndWaitingThread(m_thread, [this] {
        if (m_native.EventKill()) {
            return true;
        }
        OV_RUN_LOGGED([this] { m_native.UnRegisterDeviceOfflineEvent(); });
        return false;
    });
}

void* CDeviceOfflineEvent::RegisterDeviceOfflineCallback(const IDeviceOfflineCallback& callback) {
    const auto entry = std::make_shared<Registered>();
    entry->callback.reset(callback.Clone());
    const CAutoLock lock(m_lock);
    m_callbacks.push_back(entry);
    return static_cast<IEventCallback*>(entry->callback.get());
}

bool CDeviceOfflineEvent::HasDeviceOfflineCallback(const void* handle) {
    const CAutoLock lock(m_lock);
    return std::any_of(m_callbacks.begin(), m_callbacks.end(),
                       [handle](const Entry& entry) { return entry->GetHandle() == handle; });
}

void CDeviceOfflineEvent::UnRegisterDeviceOfflineCallback(void* handle) {
    const CAutoLock lock(m_lock);
    std::erase_if(m_callbacks,
                  [handle](const Entry& entry) { return entry->GetHandle() == handle; });
    // A callback that waited for itself, or for one that waits for it, would never return.
    if (!CCallbackScope::IsInsideAny()) {
        m_returned.wait(m_lock, [&] { return m_running == nullptr || m_running != handle; });
    }
}

void CDeviceOfflineEvent::UnRegisterAllDeviceOfflineCallback() {
    OV_RUN_LOGGED([this] {
        const CAutoLock lock(m_lock);
        // Those that are being called stay alive: the thread shares them.
        m_callbacks.clear();
        m_returned.wait(m_lock, [this] { return m_running == nullptr; });
    });
}

bool CDeviceOfflineEvent::IsDeviceOffineLine() {
    const CAutoLock lock(m_lock);
    return m_offline;
}

void CDeviceOfflineEvent::Clear() {
    const CAutoLock lock(m_lock);
    m_offline = false;
}

std::vector<CDeviceOfflineEvent::Entry>::iterator CDeviceOfflineEvent::__FindUncalled() {
    return std::find_if(m_callbacks.begin(), m_callbacks.end(),
                        [](const Entry& entry) { return !entry->isCalled; });
}

bool CDeviceOfflineEvent::__BeginWork() {
    const CAutoLock lock(m_lock);
    if (m_working || (m_offline && __FindUncalled() == m_callbacks.end())) {
        return false;
    }
    m_working = true;
    return true;
}

void CDeviceOfflineEvent::__EndWork() {
    const CAutoLock lock(m_lock);
    m_working = false;
}

bool CDeviceOfflineEvent::__IsWorking() {
    const CAutoLock lock(m_lock);
    return m_working;
}

void* CDeviceOfflineEvent::__OnThreadGetDeviceOfflineEvent(void* self) {
    if (self == nullptr) {
        OV_LOG("Invalid parameter");
        return nullptr;
    }
    OV_RUN_LOGGED([self] { static_cast<CDeviceOfflineEvent*>(self)->__RunThread(); });
    return nullptr;
}

void CDeviceOfflineEvent::__RunThread() {
    if (__WaitForOffline()) {
        __CallAll();
    } else {
        __EndWork();
    }
}

void CDeviceOfflineEvent::__CallAll() {
    while (const Entry next = __TakeNext()) {
        OV_RUN_LOGGED([&] {
            const CCallbackScope scope(CallbackKind::Offline, m_camera);
            (*next->callback)();
        });
        __EndCall();
    }
}

bool CDeviceOfflineEvent::__WaitForOffline() {
    // The producer signals a loss once. A thread that was started again for a later callback
    // would wait for ever.
    if (IsDeviceOffineLine()) {
        return true;
    }
    const bool isGone = m_native.GetOfflineEvent() == 0;
    const CAutoLock lock(m_lock);
    m_offline = isGone;
    return isGone;
}

CDeviceOfflineEvent::Entry CDeviceOfflineEvent::__TakeNext() {
    const CAutoLock lock(m_lock);
    const auto next = __FindUncalled();
    if (next == m_callbacks.end()) {
        m_working = false;
        return nullptr;
    }
    // Marked before the call: a callback that throws has been called.
    (*next)->isCalled = true;
    m_running = (*next)->GetHandle();
    return *next;
}

void CDeviceOfflineEvent::__EndCall() {
    const CAutoLock lock(m_lock);
    m_running = nullptr;
    m_returned.notify_all();
}

}  // namespace OVTLClass
