#pragma once
/// Makes a camera's answers wrong.

#include <vector>

#include "simulator/Account.h"
#include "simulator/Chance.h"
#include "simulator/Faults.h"
#include "simulator/control/RecentCommands.h"

namespace OvSimulator {

/// A packet with the time at which it leaves.
struct TimedReply {
    Reply reply;
    Clock::time_point time;
    bool isFromStranger = false;  ///< from another socket than the camera's
};

/// Answers are numbered as they come: with the same seed, the same happens to the same ones.
class AnswerFaults {
public:
    AnswerFaults(const Faults& faults, Account& account);

    /// What becomes of an answer.
    /// @param knowsPatience  whether the host understands that an answer takes longer
    std::vector<TimedReply> Apply(const Reply& reply, bool knowsPatience, Clock::time_point now);

private:
    bool Hits(double share, Cause cause, Count count);

    const ControlFaults m_faults;
    const Chance m_chance;
    Account& m_account;
    uint64_t m_answers = 0;
};

}  // namespace OvSimulator
