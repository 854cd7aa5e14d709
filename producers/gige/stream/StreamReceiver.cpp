#include "gige/stream/StreamReceiver.h"

#include <fcntl.h>
#include <sys/time.h>

#include <algorithm>

#include "gige/net/WaitForFiles.h"

namespace OvGige {

StreamReceiver::StreamReceiver(UdpSocket& socket, BlockAssembler& assembler, Ipv4 camera)
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
}

void StreamReceiver::Work(TimePoint deadline, const WakeFile& wake) {
    m_planned = m_assembler.Plan(m_plan);
    const TimePoint due = std::min(deadline, m_assembler.Due());
    // To wait for the first packet in the call that takes it saves a call, but it can't be
    // woken. So that is for waits whose end isn't urgent.
    const TimePoint now = Clock::now();
    const bool isUrgent = !m_assembler.IsBusy() || due - now < kReceiverWait;
    if (isUrgent && !m_mayHaveMore) {
        Wait(due, wake);
    }
    const size_t count = m_batch.Receive(m_socket.File(), std::span(m_plan).first(m_planned),
                                         m_assembler.PlannedForm().HeadSize(), !isUrgent);
    m_mayHaveMore = count == PacketBatch::kMax;
    const TimePoint later = Clock::now();
    Pass(count, later);
    if (later >= m_assembler.Due()) {
        m_assembler.Tick(later);
    }
}

void StreamReceiver::Wait(TimePoint deadline, const WakeFile& wake) {
    std::array<pollfd, 2> files{{{m_socket.File(), POLLIN, 0}, {wake.File(), POLLIN, 0}}};
    WaitForFiles(files, deadline);
}

/// Packets that came as they were planned lie at their places. What lies there instead of
/// another packet is moved away first: the next packet may end the block and its buffer leave.
void StreamReceiver::Pass(size_t count, TimePoint now) {
    for (size_t i = PassPlanned(count, now); i < count; ++i) {
        NoteDrops(i);
        if (IsFromCamera(i) && !m_batch.IsCut(i)) {
            m_assembler.Take(m_batch.Packet(i), now);
        } else {
            m_assembler.Ignore();
        }
    }
}

/// Passes on the packets that came as planned, up to the first that didn't.
/// @return how many
size_t StreamReceiver::PassPlanned(size_t count, TimePoint now) {
    std::array<StreamHeader, PacketBatch::kMax> headers;
    const size_t planned = std::min(count, m_planned);
    size_t asPlanned = 0;
    while (asPlanned < planned) {
        const ByteView head = m_batch.Head(asPlanned);
        const auto header = ParseStreamHeader(head);
        if (!header || head.size() < m_assembler.PlannedForm().HeadSize() ||
            !IsFromCamera(asPlanned) || m_batch.DataSize(asPlanned) != m_plan[asPlanned].length ||
            !m_assembler.IsPlanned(*header, head.subspan(header->Size()), m_plan[asPlanned])) {
            break;
        }
        headers[asPlanned++] = *header;
    }
    for (size_t i = asPlanned; i < planned; ++i) {
        m_batch.Gather(i);
    }
    for (size_t i = 0; i < asPlanned; ++i) {
        NoteDrops(i);
        m_assembler.Take(headers[i], m_batch.Head(i).subspan(headers[i].Size()),
                         {m_plan[i].place, m_plan[i].length}, now);
    }
    return asPlanned;
}

void StreamReceiver::NoteDrops(size_t index) {
    const uint32_t drops = m_batch.Drops(index);
    // The counter has 32 bits and may wrap.
    if (drops != m_drops && drops != 0) {
        m_assembler.NoteDrops(drops - m_drops);
        m_drops = drops;
    }
}

}  // namespace OvGige
