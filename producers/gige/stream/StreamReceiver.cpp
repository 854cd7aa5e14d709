#include "gige/stream/StreamReceiver.h"

#include <fcntl.h>
#include <linux/sock_diag.h>
#include <sys/time.h>

#include <algorithm>

#include "gige/net/WaitForFiles.h"

namespace OvGige {

StreamReceiver::StreamReceiver(UdpSocket& socket, BlockAssembler& assembler, Ipv4 camera,
                               bool takesTrains)
    : m_socket(socket), m_assembler(assembler), m_camera(camera) {
    const int file = socket.File();
    const int one = 1;
    const int zero = 0;
    // Failures leave the socket as it is: without the counter no drop is seen, and the others
    // only save time.
    static_cast<void>(setsockopt(file, SOL_SOCKET, SO_RXQ_OVFL, &one, sizeof one));
    static_cast<void>(setsockopt(file, IPPROTO_IP, IP_PKTINFO, &zero, sizeof zero));
    const timeval wait{.tv_sec = 0, .tv_usec = std::chrono::microseconds(kReceiverWait).count()};
    if (setsockopt(file, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait) == 0) {
        static_cast<void>(fcntl(file, F_SETFL, fcntl(file, F_GETFL) & ~O_NONBLOCK));
    }
    if (takesTrains) {
        AllowTrains(file);
    }
}

void StreamReceiver::Work(TimePoint deadline, const WakeFile& wake) {
    const std::span plan = std::span(m_plan).first(m_assembler.Plan(m_plan));
    const TimePoint due = std::min(deadline, m_assembler.Due());
    // To wait for the first packet in the call that takes it saves a call, but it can't be
    // woken. So that is for waits whose end isn't urgent.
    const TimePoint now = Clock::now();
    const bool isUrgent = !m_assembler.IsBusy() || due - now < kReceiverWait;
    if (isUrgent && !m_mayHaveMore) {
        Wait(due, wake);
    }
    const TimePoint later =
        m_trainPatience != 0 ? TakeTrain(plan, !isUrgent) : TakeBatch(plan, !isUrgent);
    if (later >= m_assembler.Due()) {
        m_assembler.Tick(later);
    }
}

TimePoint StreamReceiver::TakeBatch(std::span<const PlannedPacket> plan, bool waits) {
    const size_t count =
        m_batch.Receive(m_socket.File(), plan.first(std::min(plan.size(), PacketBatch::kMax)),
                        m_assembler.PlannedForm().HeadSize(), waits);
    m_mayHaveMore = count == PacketBatch::kMax;
    if (m_batch.HasTrain()) {
        m_trainPatience = kTrainPatience;
    }
    const TimePoint now = Clock::now();
    Pass(m_batch, count, now);
    return now;
}

// Leader and trailer come alone, between trains.
TimePoint StreamReceiver::TakeTrain(std::span<const PlannedPacket> plan, bool waits) {
    const size_t count =
        m_train.Receive(m_socket.File(), plan, m_assembler.PlannedForm().HeadSize(), waits);
    m_mayHaveMore = count != 0;
    if (count > 1) {
        m_trainPatience = kTrainPatience;
    } else if (count == 1) {
        --m_trainPatience;
    }
    const TimePoint now = Clock::now();
    Pass(m_train, count, now);
    return now;
}

void StreamReceiver::Wait(TimePoint deadline, const WakeFile& wake) {
    std::array<pollfd, 2> files{{{m_socket.File(), POLLIN, 0}, {wake.File(), POLLIN, 0}}};
    WaitForFiles(files, deadline);
}

void StreamReceiver::NoteLastDrops() {
    std::array<uint32_t, SK_MEMINFO_VARS> facts{};
    socklen_t size = sizeof facts;
    if (getsockopt(m_socket.File(), SOL_SOCKET, SO_MEMINFO, facts.data(), &size) == 0) {
        NoteDrops(facts[SK_MEMINFO_DROPS]);
    }
}

/// Packets that came as they were planned lie at their places. What lies there instead of
/// another packet is moved away first: the next packet may end the block and its buffer leave.
template <typename Packets>
void StreamReceiver::Pass(Packets& packets, size_t count, TimePoint now) {
    for (size_t i = PassPlanned(packets, count, now); i < count; ++i) {
        NoteDrops(packets.Drops(i));
        if (IsFromCamera(packets, i) && !packets.IsCut(i)) {
            TakeSegments(packets.Packet(i), packets.SegmentSize(i), now);
        } else {
            m_assembler.Ignore();
        }
    }
}

void StreamReceiver::TakeSegments(ByteView message, size_t size, TimePoint now) {
    do {
        const ByteView packet = message.first(std::min(size, message.size()));
        m_assembler.Take(packet, now);
        message = message.subspan(packet.size());
    } while (!message.empty());
}

/// Passes on the packets that came as planned, up to the first that didn't.
/// @return how many
template <typename Packets>
size_t StreamReceiver::PassPlanned(Packets& packets, size_t count, TimePoint now) {
    std::array<StreamHeader, PacketTrain::kMax> headers;
    const size_t planned = packets.PlannedCount();
    size_t asPlanned = 0;
    while (asPlanned < planned) {
        const ByteView head = packets.Head(asPlanned);
        const auto header = ParseStreamHeader(head);
        if (!header || head.size() < m_assembler.PlannedForm().HeadSize() ||
            !IsFromCamera(packets, asPlanned) || packets.IsCut(asPlanned) ||
            packets.DataSize(asPlanned) != m_plan[asPlanned].length ||
            !m_assembler.IsPlanned(*header, head.subspan(header->Size()), m_plan[asPlanned])) {
            break;
        }
        headers[asPlanned++] = *header;
    }
    if (asPlanned < count) {
        packets.GatherFrom(asPlanned);
    }
    for (size_t i = 0; i < asPlanned; ++i) {
        NoteDrops(packets.Drops(i));
        m_assembler.Take(headers[i], packets.Head(i).subspan(headers[i].Size()),
                         {m_plan[i].place, m_plan[i].length}, now);
    }
    return asPlanned;
}

void StreamReceiver::NoteDrops(uint32_t drops) {
    // The counter has 32 bits and may wrap.
    if (drops != m_drops && drops != 0) {
        m_assembler.NoteDrops(drops - m_drops);
        m_drops = drops;
    }
}

}  // namespace OvGige
