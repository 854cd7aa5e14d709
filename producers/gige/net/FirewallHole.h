#pragma once
/// The way of a camera's packets through the firewalls between it and the host.

#include <chrono>

#include "gige/net/UdpSocket.h"

namespace OvGige {

/// Anything sent to where the packets come from makes a firewall let them in. The camera drops it.
class FirewallHole {
public:
    /// @param source  where the packets come from; port 0 if that isn't known: nothing is ever sent
    explicit FirewallHole(const Endpoint& source = {});

    /// When something must be sent; at once for a new one.
    std::chrono::steady_clock::time_point Due() const { return m_due; }
    /// Sends if it is time.
    /// @throws OvProducer::Failure as the socket does; it is tried again at the next time
    void KeepOpen(UdpSocket& socket);

private:
    Endpoint m_source;
    std::chrono::steady_clock::time_point m_due;
};

}  // namespace OvGige
