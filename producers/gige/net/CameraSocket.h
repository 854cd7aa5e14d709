#pragma once
/// Sockets by which an adapter's cameras are reached.

#include "gige/net/Adapters.h"
#include "gige/net/UdpSocket.h"

namespace OvGige {

/// A socket with a port of its own at the adapter's address. Where two adapters have the same
/// subnet, only its binding to the adapter makes it use the right one.
UdpSocket MakeCameraSocket(const Adapter& adapter);

}  // namespace OvGige
