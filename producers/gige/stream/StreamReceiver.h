#pragma once
/// From the socket to the assembler.

#include <functional>

#include "gige/control/DatagramLink.h"
#include "gige/net/UdpSocket.h"
#include "gige/net/WakeFile.h"
#include "gige/stream/PacketBatch.h"
#include "gige/stream/PacketTrain.h"

namespace OvGige {

/// Receives a camera's packets until it is told to stop. Used by one thread.
class StreamReceiver {
public:
    /// The socket, the assembler and the account must outlive the receiver.
    /// @param camera       packets of others are ignored
    /// @param takesTrains  whether the system may hand over several packets as one message
    StreamReceiver(UdpSocket& socket, BlockAssembler& assembler, Ipv4 camera, bool takesTrains);

    /// Passes on what is there, or waits for packets until the deadline, or until the file
    /// `wake` is ready. Does what the assembler has due.
    void Work(TimePoint deadline, const WakeFile& wake);

    /// Counts what the system dropped after the last packet that came.
    void NoteLastDrops();

private:
    void Wait(TimePoint deadline, const WakeFile& wake);
    /// Take what is there, and return when they had it.
    ///@{
    TimePoint TakeBatch(std::span<const PlannedPacket> plan, bool waits);
    TimePoint TakeTrain(std::span<const PlannedPacket> plan, bool waits);
    ///@}
    template <typename Packets>
    void Pass(Packets& packets, size_t count, TimePoint now);
    template <typename Packets>
    size_t PassPlanned(Packets& packets, size_t count, TimePoint now);
    void TakeSegments(ByteView message, size_t size, TimePoint now);
    template <typename Packets>
    bool IsFromCamera(const Packets& packets, size_t index) const {
        return packets.Sender(index) == m_camera;
    }
    void NoteDrops(uint32_t drops);

    /// After so many messages of one packet each they are taken in batches again.
    static constexpr int kTrainPatience = 16;

    UdpSocket& m_socket;
    BlockAssembler& m_assembler;
    const Ipv4 m_camera;
    PacketBatch m_batch;
    PacketTrain m_train;
    std::array<PlannedPacket, PacketTrain::kMax> m_plan;
    int m_trainPatience = 0;     ///< more than 0 while trains come
    bool m_mayHaveMore = false;  ///< the last call didn't take all that was there, as far as known
    uint32_t m_drops = 0;
};

/// How long a receiver's calls wait in the system at most.
constexpr std::chrono::milliseconds kReceiverWait{10};

}  // namespace OvGige
