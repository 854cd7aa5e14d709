#include "simulator/control/ActionSignals.h"

#include <algorithm>
#include <chrono>

namespace OvSimulator {

using namespace OvGige;

std::optional<Status> ActionSignals::Take(const ActionRequest& request) {
    const Signals signals = Meant(request);
    if (signals.empty()) {
        return {};
    }
    if (request.time) {
        return Known(Schedule(*request.time, signals));
    }
    Assert(signals);
    return Status::Success;
}

ActionSignals::Signals ActionSignals::Meant(const ActionRequest& request) const {
    const BootstrapRegisters& registers = m_device.Bootstrap();
    Signals signals;
    if (request.deviceKey != registers.Get(kRegActionDeviceKey)) {
        return signals;
    }
    for (uint32_t i = 0; i < registers.Get(kRegActionSignalCount); ++i) {
        if (request.groupKey == registers.Get(kRegActionGroupKey + i * kRegActionStride) &&
            (request.groupMask & registers.Get(kRegActionGroupMask + i * kRegActionStride)) != 0) {
            signals.push_back(i);
        }
    }
    return signals;
}

// What comes too late is done at once: a frame at the wrong time is better than none.
Status ActionSignals::Schedule(uint64_t time, const Signals& signals) {
    if (!m_device.Camera().SharesClock()) {
        return Status::NoReferenceTime;
    }
    if (time <= static_cast<uint64_t>(m_device.Camera().Ticks())) {
        m_account.Add(Count::LateActions);
        Assert(signals);
        return Status::ActionLate;
    }
    if (m_waiting.size() >= m_device.Bootstrap().Get(kRegActionQueueSize)) {
        return Status::Overflow;
    }
    m_account.Add(Count::ScheduledActions);
    m_waiting.emplace(time, signals);
    return Status::Success;
}

Status ActionSignals::Known(Status status) const {
    const bool isNew = status == Status::NoReferenceTime || status == Status::Overflow ||
                       status == Status::ActionLate;
    const uint32_t config = m_device.Bootstrap().Get(kRegControlConfig);
    return isNew && (config & kConfigExtendedStatus2) == 0 ? Status::Error : status;
}

void ActionSignals::Assert(const Signals& signals) {
    for (const uint32_t signal : signals) {
        m_account.Add(Count::Actions);
        m_device.Camera().Trigger(SourceOf(signal));
    }
}

void ActionSignals::RunDue() {
    const auto end = m_waiting.upper_bound(static_cast<uint64_t>(m_device.Camera().Ticks()));
    for (auto action = m_waiting.begin(); action != end; ++action) {
        Assert(action->second);
    }
    m_waiting.erase(m_waiting.begin(), end);
}

std::optional<Clock::time_point> ActionSignals::DueTime(Clock::time_point now) const {
    if (m_waiting.empty()) {
        return {};
    }
    // Further ahead than anybody waits for, a time wouldn't fit the other clock.
    constexpr int64_t kFarAhead = std::chrono::nanoseconds(std::chrono::hours(1)).count();
    const int64_t ticks = m_device.Camera().Ticks();
    const auto time = static_cast<int64_t>(
        std::min<uint64_t>(m_waiting.begin()->first, static_cast<uint64_t>(ticks + kFarAhead)));
    return now + std::chrono::nanoseconds(time - ticks);
}

}  // namespace OvSimulator
