#include "gige/net/UdpLink.h"

namespace OvGige {

std::optional<Bytes> UdpLink::Receive(Clock::time_point deadline) {
    while (auto datagram = m_socket.Receive(deadline, m_cancelled.File())) {
        if (datagram->sender == m_camera) {
            return std::move(datagram->bytes);
        }
    }
    return {};
}

}  // namespace OvGige
