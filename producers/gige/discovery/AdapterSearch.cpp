#include "gige/discovery/AdapterSearch.h"

#include <poll.h>

#include <algorithm>
#include <array>

#include "framework/Failure.h"
#include "gige/net/CameraSocket.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/Registers.h"

namespace OvGige {
namespace {

using Time = FoundCameras::Time;
using std::chrono::steady_clock;

/// A broadcast may be lost, so it is repeated. Cameras may wait a second before they answer.
constexpr std::chrono::milliseconds kRepeat{400};

CameraUse UseOf(uint32_t privilege) {
    if ((privilege & kPrivilegeExclusive) != 0) {
        return CameraUse::Exclusive;
    }
    return (privilege & kPrivilegeControl) != 0 ? CameraUse::Controlled : CameraUse::Free;
}

}  // namespace

AdapterSearch::AdapterSearch(Adapter adapter, uint16_t cameraPort)
    : m_adapter(std::move(adapter)), m_cameraPort(cameraPort) {}

void AdapterSearch::Run(std::chrono::milliseconds time, const SearchTargets& targets,
                        FoundCameras& found) {
    const Time deadline = steady_clock::now() + time;
    const std::lock_guard search(m_search);
    m_stop.Clear();
    Time next = steady_clock::now();
    do {
        SendToAll(targets);
        next += kRepeat;
        while (const auto datagram = Receive(std::min(next, deadline))) {
            Take(*datagram, targets, found);
        }
    } while (next < deadline && !m_stop.IsSignalled());
}

// An adapter that refuses everything may be down, and come back as another one with the same
// name: the next round has a new socket. One that refuses a part keeps its socket, to which
// the answers to the other part come.
void AdapterSearch::SendToAll(const SearchTargets& targets) {
    std::vector<Endpoint> all = targets.cameras;
    if (targets.limitedBroadcast) {
        all.push_back({kEverybody, m_cameraPort});
    }
    if (targets.directedBroadcast && !m_adapter.broadcast.IsNone()) {
        all.push_back({m_adapter.broadcast, m_cameraPort});
    }
    if (SendToEach(Command::Discovery, {}, all) == 0 && !all.empty()) {
        m_socket.reset();
    }
}

size_t AdapterSearch::SendToEach(Command command, ByteView payload,
                                 const std::vector<Endpoint>& to) {
    const Bytes packet = BuildCommand({.flags = kFlagAnswerRequired | kFlagBroadcastAnswer,
                                       .command = command,
                                       .requestId = TakeRequestId(),
                                       .payload = payload});
    return static_cast<size_t>(std::count_if(
        to.begin(), to.end(), [&](const Endpoint& endpoint) { return Send(endpoint, packet); }));
}

// An adapter that is down, or that a firewall closes, has no cameras; that is no failure of a
// search.
bool AdapterSearch::Send(const Endpoint& to, ByteView packet) {
    try {
        if (!m_socket) {
            m_socket = MakeBroadcastSocket(m_adapter);
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

// A camera may take a number that it has just seen for a repetition.
uint16_t AdapterSearch::TakeRequestId() {
    m_requestId = NextRequestId(m_requestId);
    return m_requestId;
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
void AdapterSearch::Take(const Datagram& datagram, const SearchTargets& targets,
                         FoundCameras& found) {
    const auto answer = ParseAnswer(datagram.bytes);
    const auto identity = answer && answer->answer == AnswerTo(Command::Discovery) &&
                                  answer->status == Status::Success
                              ? ParseIdentity(answer->payload)
                              : std::optional<Identity>();
    if (identity) {
        TakeIdentity(*identity, datagram.sender, targets, found);
    }
    const bool isUse = answer && !identity && TakeUse(*answer, datagram.sender, found);
    const std::lock_guard lock(m_state);
    ++(identity ? m_counters.answers : isUse ? m_counters.uses : m_counters.ignored);
}

// A camera that answers a broadcast listens where the broadcast went, from whichever port it
// answers. One of another subnet can't be asked anything unless a router leads to it.
void AdapterSearch::TakeIdentity(const Identity& identity, const Endpoint& sender,
                                 const SearchTargets& targets, FoundCameras& found) {
    FoundCamera camera{.identity = identity, .endpoint = sender};
    camera.isNamed =
        std::find(targets.cameras.begin(), targets.cameras.end(), sender) != targets.cameras.end();
    if (!camera.isNamed) {
        camera.endpoint.port = m_cameraPort;
    }
    found.Note(camera, steady_clock::now());
    if (camera.isNamed || IsSameSubnet(sender.ip, m_adapter.ip, m_adapter.mask)) {
        Send(camera.endpoint, BuildCommand({.flags = kFlagAnswerRequired,
                                            .command = Command::ReadRegister,
                                            .requestId = TakeRequestId(),
                                            .payload = BuildNumbers(std::array{kRegPrivilege})}));
    }
}

bool AdapterSearch::TakeUse(const AnswerPacket& answer, const Endpoint& sender,
                            FoundCameras& found) {
    if (answer.answer != AnswerTo(Command::ReadRegister)) {
        return false;
    }
    if (answer.status == Status::AccessDenied) {
        found.NoteUse(sender, CameraUse::Exclusive);
        return true;
    }
    const auto privilege = ParseNumbers(answer.payload);
    if (answer.status != Status::Success || !privilege || privilege->size() != 1) {
        return false;
    }
    found.NoteUse(sender, UseOf(privilege->front()));
    return true;
}

SearchCounters AdapterSearch::Counters() const {
    const std::lock_guard lock(m_state);
    return m_counters;
}

}  // namespace OvGige
