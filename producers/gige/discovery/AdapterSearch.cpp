#include "gige/discovery/AdapterSearch.h"

#include <poll.h>

#include <algorithm>

#include "framework/Failure.h"
#include "gige/protocol/ControlPacket.h"

namespace OvGige {
namespace {

using Time = FoundCameras::Time;
using std::chrono::steady_clock;

constexpr Ipv4 kEverybody{0xFFFFFFFF};

/// A broadcast may be lost, so it is repeated. Cameras may wait a second before they answer.
constexpr std::chrono::milliseconds kRepeat{400};

/// Answers of a few hundred cameras that come at once.
constexpr size_t kReceiveBuffer = 1 << 20;

}  // namespace

AdapterSearch::AdapterSearch(Adapter adapter, uint16_t cameraPort)
    : m_adapter(std::move(adapter)), m_cameraPort(cameraPort) {}

void AdapterSearch::Run(std::chrono::milliseconds time, const SearchTargets& targets,
                        FoundCameras& found) {
    const Time deadline = steady_clock::now() + time;
    const std::lock_guard search(m_search);
    m_stop.Clear();
    for (Time next = steady_clock::now(); next < deadline && !m_stop.IsSignalled();) {
        SendToAll(targets);
        next += kRepeat;
        while (const auto datagram = Receive(std::min(next, deadline))) {
            Take(*datagram, found);
        }
    }
}

// The socket has no address of its own: bound to one, it would get no broadcast answers, by
// which cameras of other subnets answer. Where it can't be bound to the adapter either, each
// datagram names the adapter that it leaves by.
void AdapterSearch::Open() {
    UdpSocket socket;
    static_cast<void>(socket.BindToDevice(m_adapter.name));
    socket.AllowBroadcast();
    socket.SetReceiveBuffer(kReceiveBuffer);
    socket.Bind({});
    m_socket = std::move(socket);
}

// An adapter that refuses everything may be down, and come back as another one with the same
// name: the next round has a new socket. One that refuses a part keeps its socket, to which
// the answers to the other part come.
void AdapterSearch::SendToAll(const SearchTargets& targets) {
    m_requestId = m_requestId == 0xFFFF ? uint16_t{1} : static_cast<uint16_t>(m_requestId + 1);
    size_t tried = 0;
    size_t sent = 0;
    const auto send = [&](const Endpoint& to) {
        ++tried;
        sent += Send(to) ? 1 : 0;
    };
    if (targets.limitedBroadcast) {
        send({kEverybody, m_cameraPort});
    }
    if (targets.directedBroadcast && !m_adapter.broadcast.IsNone()) {
        send({m_adapter.broadcast, m_cameraPort});
    }
    std::for_each(targets.cameras.begin(), targets.cameras.end(), send);
    if (tried > 0 && sent == 0) {
        m_socket.reset();
    }
}

// An adapter that is down, or that a firewall closes, has no cameras; that is no failure of a
// search.
bool AdapterSearch::Send(const Endpoint& to) {
    const Bytes packet = BuildCommand({.flags = kFlagAnswerRequired | kFlagBroadcastAnswer,
                                       .command = Command::Discovery,
                                       .requestId = m_requestId,
                                       .payload = {}});
    try {
        if (!m_socket) {
            Open();
        }
        m_socket->SendTo(to, packet, m_adapter.index);
    } catch (const OvProducer::Failure&) {
        CountFailure();
        return false;
    }
    const std::lock_guard lock(m_state);
    ++m_counters.sent;
    return true;
}

void AdapterSearch::CountFailure() {
    const std::lock_guard lock(m_state);
    ++m_counters.failures;
}

std::optional<Datagram> AdapterSearch::Receive(Time deadline) {
    if (m_socket) {
        try {
            return m_socket->Receive(deadline, m_stop.File());
        } catch (const OvProducer::Failure&) {
            m_socket.reset();
            CountFailure();
        }
    }
    Wait(deadline);
    return {};
}

void AdapterSearch::Wait(Time deadline) const {
    using std::chrono::milliseconds;
    pollfd file{m_stop.File(), POLLIN, 0};
    for (auto left = deadline - steady_clock::now(); left.count() > 0;
         left = deadline - steady_clock::now()) {
        const auto rounded = std::chrono::ceil<milliseconds>(left).count();
        if (poll(&file, 1, static_cast<int>(rounded)) > 0) {
            return;
        }
    }
}

// An answer to an earlier search is as good as one to this: the camera is there.
void AdapterSearch::Take(const Datagram& datagram, FoundCameras& found) {
    const auto answer = ParseAnswer(datagram.bytes);
    const auto identity = answer && answer->answer == AnswerTo(Command::Discovery) &&
                                  answer->status == Status::Success
                              ? ParseIdentity(answer->payload)
                              : std::optional<Identity>();
    if (identity) {
        found.Note(*identity, steady_clock::now());
    }
    const std::lock_guard lock(m_state);
    ++(identity ? m_counters.answers : m_counters.ignored);
}

SearchCounters AdapterSearch::Counters() const {
    const std::lock_guard lock(m_state);
    return m_counters;
}

}  // namespace OvGige
