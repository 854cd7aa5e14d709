#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "GenApi/Types.h"

namespace GenApi_3_0_ORVANE {

class CNodeCallback;

/// A registered callback, shared by its node and by every thread that is about to call it. If
/// it is deregistered in the meantime, `Run` does nothing. The callback is destroyed when the
/// last running call returns.
class CCallbackRegistration {
public:
    explicit CCallbackRegistration(CNodeCallback& callback) : m_Callback(callback) {}

    /// Calls the callback unless it has been deregistered.
    void Run(ECallbackType type);
    /// Prevents further calls. Doesn't wait for running ones: destroys the callback now, or
    /// leaves that to the last call that returns.
    void TakeAway();
    const CNodeCallback* GetCallback() const { return &m_Callback; }

private:
    /// Counts one call for the life of a scope.
    class Call;

    static constexpr uint32_t kTakenAway = 1;
    static constexpr uint32_t kOneCall = 2;

    CNodeCallback& m_Callback;
    /// Bit 0: deregistered. The bits above: the number of running calls. Both are in one number,
    /// so that exactly one thread sees that it must destroy the callback.
    std::atomic<uint32_t> m_State{0};
};

using CallbackList = std::vector<std::shared_ptr<CCallbackRegistration>>;

/// Calls each callback once.
void FireCallbacks(const CallbackList& callbacks, ECallbackType type);
/// Sorts the list by the callbacks' addresses and removes duplicates.
void SortCallbacks(CallbackList& callbacks);

}  // namespace GenApi_3_0_ORVANE
