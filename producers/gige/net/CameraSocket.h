#pragma once
/// Sockets by which an adapter's cameras are reached.

#include "gige/net/Adapters.h"
#include "gige/net/UdpSocket.h"

namespace OvGige {

/// A socket with a port of its own at the adapter's address. Where two adapters have the same
/// subnet, only its binding to the adapter makes it use the right one.
UdpSocket MakeCameraSocket(const Adapter& adapter);

/// A socket by which all cameras of the adapter's network are reached at once. It has no address
/// of its own: bound to one, it would get no broadcast answers, by which cameras of other subnets
/// answer. Where it can't be bound to the adapter either, each datagram must name the adapter that
/// it leaves by.
UdpSocket MakeBroadcastSocket(const Adapter& adapter);

}  // namespace OvGige
