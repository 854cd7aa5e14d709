#include "gige/net/Routes.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include "gige/net/UdpSocket.h"

namespace OvGige {

Ipv4 RouteSource(Ipv4 destination) {
    constexpr uint16_t kDiscardPort = 9;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kDiscardPort);
    address.sin_addr.s_addr = htonl(destination.value);
    // Connecting a socket of this kind sends nothing.
    const UdpSocket socket;
    const bool hasRoute =
        connect(socket.File(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    return hasRoute ? socket.Local().ip : Ipv4();
}

bool LeadsTo(const Adapter& adapter, Ipv4 address) {
    return IsSameSubnet(address, adapter.ip, adapter.mask) || RouteSource(address) == adapter.ip;
}

}  // namespace OvGige
