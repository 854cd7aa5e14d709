#pragma once
/// Sockets that reach nobody but this machine.

#include "gige/net/UdpSocket.h"

constexpr OvGige::Ipv4 kLoopback{0x7F000001};

/// A socket with a port of its own.
inline OvGige::UdpSocket LoopbackSocket() {
    OvGige::UdpSocket socket;
    socket.Bind({kLoopback, 0});
    return socket;
}
