#include "TLClassUpdate/Updater.h"

#include "TLClassFeature/IFeatureControl.h"
#include "TLClassModule/IInterface.h"
#include "TLClassModule/ITL.h"
#include "TLClassSupport/OvLog.h"

namespace OVTLClass {

namespace {

constexpr int kUpdatePriority = 50;
constexpr const char* kStopFeature = "DeviceStopUpdateList";

void RunUpdate(ITL& tl, unsigned timeout, bool& changed) {
    tl.DoUpdateInterfaceList(timeout, changed);
}

void RunUpdate(IInterface& target, unsigned timeout, bool& changed) {
    target.DoUpdateDeviceList(timeout, changed);
}

const char* NullText(const ITL*) {
    return "Null CTLUpdater pointer";
}
const char* NullText(const IInterface*) {
    return "Null CIFUpdater pointer";
}

}  // namespace

bool IUpdater::IsListChanged() {
    const CAutoLock lock(m_changedLock);
    return m_changed;
}

void IUpdater::_SetListChangedFlag(bool changed) {
    const CAutoLock lock(m_changedLock);
    m_changed = changed;
}

unsigned IUpdater::_GetTimeout() {
    const CAutoLock lock(m_timeoutLock);
    return m_timeout;
}

void IUpdater::_SetTimeout(unsigned timeout) {
    const CAutoLock lock(m_timeoutLock);
    m_timeout = timeout;
}

template <class Target>
void CThreadUpdater<Target>::DoUpdate(unsigned timeout) {
    if (!DoIsFinished()) {
        return;
    }
    _SetTimeout(timeout);
    // Before the start: the thread may end before this function does.
    _SetListChangedFlag(false);
    // A thread that doesn't start counts as ended, with an unchanged list.
    if (!m_thread.Run(this, &__OnThread, kUpdatePriority)) {
        OV_LOG("Failed to start thread");
    }
}

template <class Target>
void* CThreadUpdater<Target>::__OnThread(void* self) {
    auto* const updater = static_cast<CThreadUpdater*>(self);
    if (updater == nullptr) {
        OV_LOG(NullText(static_cast<const Target*>(nullptr)));
        return nullptr;
    }
    OV_RUN_LOGGED([updater] {
        bool changed = false;
        RunUpdate(*updater->m_target, updater->_GetTimeout(), changed);
        updater->_SetListChangedFlag(changed);
    });
    return nullptr;
}

template class CThreadUpdater<ITL>;
template class CThreadUpdater<IInterface>;

void CIFUpdater::DoStopUpdate() {
    const IFeatureControl* const control = GetTarget().GetFeatureControl();
    if (control == nullptr) {
        OV_LOG("Null IFeatureControl pointer");
        return;
    }
    // The search may end by itself at the same time; then the command does nothing.
    OV_RUN_LOGGED([control] {
        if (control->DoExist(kStopFeature)) {
            control->DoSendCommand(kStopFeature);
        }
    });
}

}  // namespace OVTLClass
