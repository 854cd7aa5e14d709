#pragma once
/// A camera's action signals: which commands they obey, at once or at a time of the clock that
/// cameras share.

#include <map>
#include <optional>
#include <vector>

#include "gige/protocol/Action.h"
#include "simulator/Account.h"
#include "simulator/Clock.h"
#include "simulator/device/CameraDevice.h"

namespace OvSimulator {

/// Knows no hosts. Used by one thread at a time.
class ActionSignals {
public:
    ActionSignals(CameraDevice& device, Account& account) : m_device(device), m_account(account) {}

    /// Does what the camera has to do now, or keeps it for later.
    /// @return what the camera answers; nothing if no signal of it is meant
    std::optional<OvGige::Status> Take(const OvGige::ActionRequest& request);

    /// Does what is due by the camera's clock.
    void RunDue();
    /// When `RunDue` has something to do.
    /// @param now  the present time, as hosts of this machine have it
    std::optional<Clock::time_point> DueTime(Clock::time_point now) const;
    void Forget() { m_waiting.clear(); }

private:
    using Signals = std::vector<uint32_t>;

    Signals Meant(const OvGige::ActionRequest& request) const;
    OvGige::Status Schedule(uint64_t time, const Signals& signals);
    /// A status, or what hosts understand that don't know it.
    OvGige::Status Known(OvGige::Status status) const;
    void Assert(const Signals& signals);

    CameraDevice& m_device;
    Account& m_account;
    std::multimap<uint64_t, Signals> m_waiting;  // by time, in nanoseconds of the shared clock
};

}  // namespace OvSimulator
