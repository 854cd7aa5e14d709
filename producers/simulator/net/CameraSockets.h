#pragma once
/// A simulated camera's place on the network of this machine.

#include <optional>
#include <vector>

#include "gige/net/Adapters.h"
#include "gige/net/UdpSocket.h"
#include "simulator/CameraProfile.h"
#include "simulator/Clock.h"

namespace OvSimulator {

/// The adapter that a camera with the address sits on.
/// @param name  of the adapter; empty: whichever has the address
/// @throws OvProducer::Failure GC_ERR_NOT_AVAILABLE if there is none
OvGige::Adapter AdapterFor(const std::string& name, OvGige::Ipv4 address);

/// Whether one of this machine's adapters has the address.
bool IsOwnAddress(OvGige::Ipv4 address);

/// A packet with the way that it came.
struct Packet {
    OvGige::Datagram datagram;
    bool wasBroadcast = false;
};

/// The camera's own socket, and those for the two kinds of broadcasts, which other cameras
/// of this machine listen to, too.
class CameraSockets {
public:
    /// @param port  0: any that is free
    CameraSockets(const OvGige::Adapter& adapter, const IpAddresses& addresses, uint16_t port);

    OvGige::Endpoint Local() const { return m_own.Local(); }
    /// To the host, or to everyone on the adapter's network.
    void Send(const OvGige::Endpoint& to, OvGige::ByteView packet);
    /// From another port of the camera's address, as somebody else would.
    void SendAsStranger(const OvGige::Endpoint& to, OvGige::ByteView packet) const;
    /// Waits for a packet until the deadline, or until the file `wake` has something to read.
    std::optional<Packet> Receive(Clock::time_point deadline, int wake);

private:
    void Listen(OvGige::Ipv4 broadcast, uint16_t port);
    std::optional<Packet> Take();

    OvGige::Adapter m_adapter;
    OvGige::UdpSocket m_own;
    std::vector<OvGige::UdpSocket> m_broadcasts;
};

}  // namespace OvSimulator
