#pragma once
/// The way to a camera over the network.

#include "gige/control/DatagramLink.h"
#include "gige/net/UdpSocket.h"
#include "gige/net/WakeFile.h"

namespace OvGige {

/// A camera knows its owner by address and port, so the socket is the same for as long as the
/// camera is open.
class UdpLink : public DatagramLink {
public:
    UdpLink(UdpSocket socket, const Endpoint& camera)
        : m_socket(std::move(socket)), m_camera(camera) {}

    Endpoint Local() const { return m_socket.Local(); }

    void Send(ByteView packet) override { m_socket.SendTo(m_camera, packet); }
    std::optional<Bytes> Receive(Clock::time_point deadline) override;
    void Cancel() override { m_cancelled.Signal(); }
    void Resume() override { m_cancelled.Clear(); }

private:
    const WakeFile m_cancelled;
    UdpSocket m_socket;
    Endpoint m_camera;
};

}  // namespace OvGige
