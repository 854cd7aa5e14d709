// Callbacks that may be removed while other threads run them. One number holds both how many
// calls are under way and whether the callback was removed, so that exactly one thread finds that
// it has to destroy it, without a lock and without waiting.

#include "core/CallbackRegistration.h"

#include <algorithm>
#include <functional>

#include "GenApi/NodeCallback.h"

namespace GenApi_3_0_ORVANE {

/// Counts a call in, unless the callback was removed before. The loop is needed because another
/// thread may change the count between the look and the exchange.
class CCallbackRegistration::Call {
public:
    explicit Call(CCallbackRegistration& registration) : m_Registration(registration) {
        uint32_t state = registration.m_State.load(std::memory_order_relaxed);
        while ((state & kTakenAway) == 0 && !m_MayRun) {
            m_MayRun = registration.m_State.compare_exchange_weak(state, state + kOneCall,
                                                                  std::memory_order_acq_rel);
        }
    }
    ~Call() {
        if (m_MayRun && m_Registration.m_State.fetch_sub(kOneCall, std::memory_order_acq_rel) ==
                            kOneCall + kTakenAway) {
            m_Registration.m_Callback.Destroy();
        }
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    bool MayRun() const { return m_MayRun; }

private:
    CCallbackRegistration& m_Registration;
    bool m_MayRun = false;
};

void CCallbackRegistration::Run(ECallbackType type) {
    const Call call(*this);
    if (call.MayRun()) {
        m_Callback(type);
    }
}

/// Never waits: a callback may remove itself, and would wait for its own end.
void CCallbackRegistration::TakeAway() {
    if (m_State.fetch_or(kTakenAway, std::memory_order_acq_rel) == 0) {
        m_Callback.Destroy();
    }
}

void Deregister(CallbackHandleType handle) {
    if (auto* const callback = reinterpret_cast<CNodeCallback*>(handle)) {
        callback->GetNode()->DeregisterCallback(handle);
    }
}

void SortCallbacks(CallbackList& callbacks) {
    // A new callback may have the address of one that was destroyed: the registrations
    // distinguish them.
    std::sort(callbacks.begin(), callbacks.end(), [](const auto& left, const auto& right) {
        return left->GetCallback() != right->GetCallback()
                   ? std::less<>()(left->GetCallback(), right->GetCallback())
                   : std::less<>()(left.get(), right.get());
    });
    callbacks.erase(std::unique(callbacks.begin(), callbacks.end()), callbacks.end());
}

/// A callback that throws ends the round. The exception goes to whoever caused the change.
void FireCallbacks(const CallbackList& callbacks, ECallbackType type) {
    for (const auto& callback : callbacks) {
        callback->Run(type);
    }
}

}  // namespace GenApi_3_0_ORVANE
