#include "simulator/control/RecentCommands.h"

#include <algorithm>

namespace OvSimulator {
namespace {

/// Hosts whose last command is kept.
constexpr size_t kHostsMax = 16;

/// Beyond it, a host that begins anew may use the same number for the same command.
constexpr std::chrono::seconds kMemory{3};

}  // namespace

const Replies* RecentCommands::Find(const OvGige::Endpoint& sender, OvGige::ByteView packet,
                                    Clock::time_point now) const {
    const auto found = std::find_if(m_commands.begin(), m_commands.end(), [&](const Done& done) {
        return done.sender == sender && now - done.time < kMemory &&
               std::equal(done.packet.begin(), done.packet.end(), packet.begin(), packet.end());
    });
    return found == m_commands.end() ? nullptr : &found->replies;
}

void RecentCommands::Keep(const OvGige::Endpoint& sender, OvGige::ByteView packet, Replies replies,
                          Clock::time_point now) {
    std::erase_if(m_commands, [&](const Done& done) { return done.sender == sender; });
    if (m_commands.size() == kHostsMax) {
        m_commands.pop_back();
    }
    m_commands.push_front({.sender = sender,
                           .packet = {packet.begin(), packet.end()},
                           .replies = std::move(replies),
                           .time = now});
}

}  // namespace OvSimulator
