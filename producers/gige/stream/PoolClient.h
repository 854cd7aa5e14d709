#pragma once
/// Buffers of a stream for the assembly of blocks, and its way back to the camera.

#include "framework/BufferPool.h"
#include "gige/assembly/BlockClient.h"
#include "gige/net/UdpSocket.h"

namespace OvGige {

class PoolClient : public BlockClient {
public:
    /// @param frames  most frames to deliver; buffers of others go back to the pool
    /// @param camera  where the camera listens for commands
    PoolClient(OvProducer::BufferPool& pool, uint64_t frames, UdpSocket& socket,
               const Endpoint& camera)
        : m_pool(pool), m_frames(frames), m_socket(socket), m_camera(camera) {}

    /// Whether all frames were delivered.
    bool IsDone() const { return m_delivered == m_frames; }

    std::shared_ptr<OvProducer::Buffer> TakeBuffer() override;
    void Deliver(const std::shared_ptr<OvProducer::Buffer>& buffer,
                 const OvProducer::FrameInfo& frame) override;
    void GiveBack(const std::shared_ptr<OvProducer::Buffer>& buffer) override;
    void AskAgain(const ResendRequest& request) override;

private:
    OvProducer::BufferPool& m_pool;
    const uint64_t m_frames;
    UdpSocket& m_socket;
    const Endpoint m_camera;
    uint16_t m_requestId = 0;
    uint64_t m_delivered = 0;
};

}  // namespace OvGige
