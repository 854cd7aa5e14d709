#include "gige/net/FirewallHole.h"

namespace OvGige {
namespace {

using std::chrono::steady_clock;

/// Firewalls forget a sender that nothing was sent to for half a minute.
constexpr std::chrono::seconds kPeriod{15};

}  // namespace

FirewallHole::FirewallHole(const Endpoint& source)
    : m_source(source),
      m_due(source.port != 0 ? steady_clock::time_point::min() : steady_clock::time_point::max()) {}

void FirewallHole::KeepOpen(UdpSocket& socket) {
    const auto now = steady_clock::now();
    if (now < m_due) {
        return;
    }
    m_due = now + kPeriod;
    const Bytes nothing(1);
    socket.SendTo(m_source, nothing);
}

}  // namespace OvGige
