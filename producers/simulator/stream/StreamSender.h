#pragma once
/// Sends the frames of a virtual camera to a host.

#include <deque>
#include <memory>
#include <mutex>
#include <thread>

#include "gige/protocol/GvspResend.h"
#include "simulator/Account.h"
#include "simulator/Faults.h"
#include "simulator/stream/BlockSpoiler.h"
#include "simulator/stream/StreamBlock.h"
#include "simulator/stream/StreamSocket.h"
#include "virtual/Camera.h"

namespace OvSimulator {

/// Has a thread of its own, which takes frames at the camera's pace. Any thread may call all
/// operations.
class StreamSender {
public:
    StreamSender(OvVirtual::Camera& camera, const Faults& faults, Account& account);

    /// Takes the camera's address, and a port that is free.
    /// @return the port
    uint16_t Occupy(OvGige::Ipv4 address);
    /// Counts from the next frame on.
    void Configure(const StreamSetup& setup);
    StreamSetup Setup() const;
    /// Sends a packet of the size that is set, which tells the host what the network carries.
    void FireTestPacket();
    /// Sends packets of the last blocks again.
    /// @param saysMore  whether the host understands why a packet can't be had
    void Resend(const OvGige::ResendRequest& request, bool saysMore);

private:
    using Block = std::shared_ptr<StreamBlock>;

    void Run(const std::stop_token& stop);
    void CarryFrame(const std::stop_token& stop);
    void SendPaced(std::span<const StreamPacket> packets, const StreamSetup& setup,
                   const std::stop_token& stop);
    void Send(std::span<const StreamPacket> packets, const StreamSetup& setup);
    Block TakeBlock();
    void Keep(const Block& block);
    Block Find(uint64_t id) const;
    void Refuse(const OvGige::ResendRequest& request, bool saysMore);

    OvVirtual::Camera& m_camera;
    const Faults m_faults;
    Account& m_account;
    BlockSpoiler m_spoiler;      // only the thread's own
    mutable std::mutex m_mutex;  // guards what follows
    StreamSetup m_setup;
    std::shared_ptr<StreamSocket> m_socket;
    std::deque<Block> m_blocks;  // the newest last
    std::jthread m_thread;
};

}  // namespace OvSimulator
