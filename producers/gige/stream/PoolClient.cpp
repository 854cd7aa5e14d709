#include "gige/stream/PoolClient.h"

#include <algorithm>

#include "gige/protocol/ControlPacket.h"

namespace OvGige {

std::shared_ptr<OvProducer::Buffer> PoolClient::TakeBuffer() {
    std::shared_ptr<OvProducer::Buffer> buffer = m_pool.TakeInput();
    if (!buffer) {
        m_pool.CountLost();
    }
    return buffer;
}

void PoolClient::Deliver(const std::shared_ptr<OvProducer::Buffer>& buffer,
                         const OvProducer::FrameInfo& frame) {
    if (IsDone()) {
        m_pool.GiveBack(buffer);
        return;
    }
    m_pool.Deliver(buffer, frame);
    ++m_delivered;
}

void PoolClient::GiveBack(const std::shared_ptr<OvProducer::Buffer>& buffer) {
    m_pool.GiveBack(buffer);
}

void PoolClient::AskAgain(const ResendRequest& request) {
    // 0 is no request.
    m_requestId = static_cast<uint16_t>(std::max(1, (m_requestId + 1) & 0xFFFF));
    const Bytes payload = BuildResend(request);
    try {
        m_socket.SendTo(m_camera, BuildCommand({.flags = request.Flags(),
                                                .command = Command::PacketResend,
                                                .requestId = m_requestId,
                                                .payload = payload}));
    } catch (const OvProducer::Failure&) {
        // A request that can't be sent is like one that is lost: it is repeated.
    }
}

}  // namespace OvGige
