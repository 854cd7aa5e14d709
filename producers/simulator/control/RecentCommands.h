#pragma once
/// The last command of each host with its answer: a host that missed the answer sends the
/// command again, which must not be done twice.

#include <chrono>
#include <deque>
#include <vector>

#include "gige/protocol/Address.h"
#include "gige/protocol/BigEndian.h"
#include "simulator/Clock.h"

namespace OvSimulator {

/// A packet to send.
struct Reply {
    OvGige::Endpoint to;
    OvGige::Bytes packet;
};
using Replies = std::vector<Reply>;

class RecentCommands {
public:
    /// The answer to the same command of the same host, if it was that host's last one and a
    /// short while ago; null otherwise.
    const Replies* Find(const OvGige::Endpoint& sender, OvGige::ByteView packet,
                        Clock::time_point now) const;
    void Keep(const OvGige::Endpoint& sender, OvGige::ByteView packet, Replies replies,
              Clock::time_point now);
    void Clear() { m_commands.clear(); }

private:
    struct Done {
        OvGige::Endpoint sender;
        OvGige::Bytes packet;
        Replies replies;
        Clock::time_point time;
    };

    std::deque<Done> m_commands;  // the newest first
};

}  // namespace OvSimulator
