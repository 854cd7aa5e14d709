#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

class CNodeCallback;

/// A callback as its node keeps it, and as those keep it who are about to call
/// it. They may come to call it when another thread has taken it away, so they
/// ask here; the callback itself goes with the last call that was under way.
class CCallbackRegistration {
public:
    explicit CCallbackRegistration(CNodeCallback& callback) : m_Callback(callback) {}

    /// Calls the callback unless it was taken away.
    void Run(ECallbackType type);
    /// Has it called no more. Waits for no call: the callback is destroyed here
    /// or, where calls are under way, by the last of them to return.
    void TakeAway();
    const CNodeCallback* GetCallback() const { return &m_Callback; }

private:
    /// Counts one call for the life of a scope.
    class Call;

    static constexpr uint32_t kTakenAway = 1;
    static constexpr uint32_t kOneCall = 2;

    CNodeCallback& m_Callback;
    /// The calls under way, above the bit that tells that it was taken away. One
    /// number, so that exactly one side finds that it has to destroy.
    std::atomic<uint32_t> m_State{0};
};

using CallbackList = std::vector<std::shared_ptr<CCallbackRegistration>>;

/// Calls each callback once.
void FireCallbacks(const CallbackList& callbacks, ECallbackType type);
/// Orders the callbacks and leaves each once.
void SortCallbacks(CallbackList& callbacks);

}  // namespace GenApi_3_0_ORVANE
