#pragma once
/// From the socket to the assembler.

#include <functional>

#include "gige/control/DatagramLink.h"
#include "gige/net/UdpSocket.h"
#include "gige/net/WakeFile.h"
#include "gige/stream/PacketBatch.h"

namespace OvGige {

/// Receives a camera's packets until it is told to stop. Used by one thread.
class StreamReceiver {
public:
    /// The socket, the assembler and the account must outlive the receiver.
    /// @param camera  packets of others are ignored
    StreamReceiver(UdpSocket& socket, BlockAssembler& assembler, Ipv4 camera);

    /// Passes on what is there, or waits for packets until the deadline, or until the file
    /// `wake` is ready. Does what the assembler has due.
    void Work(TimePoint deadline, const WakeFile& wake);

private:
    void Wait(TimePoint deadline, const WakeFile& wake);
    void Pass(size_t count, TimePoint now);
    size_t PassPlanned(size_t count, TimePoint now);
    bool IsFromCamera(size_t index) const { return m_batch.Sender(index) == m_camera; }
    void NoteDrops(size_t index);

    UdpSocket& m_socket;
    BlockAssembler& m_assembler;
    const Ipv4 m_camera;
    PacketBatch m_batch;
    std::array<PlannedPacket, PacketBatch::kMax> m_plan;
    size_t m_planned = 0;
    bool m_mayHaveMore = false;  ///< the last batch was full
    uint32_t m_drops = 0;
};

/// How long a receiver's calls wait in the system at most.
constexpr std::chrono::milliseconds kReceiverWait{10};

}  // namespace OvGige
