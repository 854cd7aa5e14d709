#include "gige/discovery/ActionCall.h"

#include <algorithm>

#include "framework/Failure.h"
#include "gige/net/CameraSocket.h"
#include "gige/protocol/ControlPacket.h"

namespace OvGige {
namespace {

using std::chrono::steady_clock;

bool SendToSome(UdpSocket& socket, const Adapter& adapter, const std::vector<Endpoint>& targets,
                ByteView packet) {
    bool isSent = false;
    for (const Endpoint& target : targets) {
        try {
            socket.SendTo(target, packet, adapter.index);
            isSent = true;
        } catch (const OvProducer::Failure& failure) {
            OvProducer::LogWarning(failure.what());
        }
    }
    return isSent;
}

/// Notes the answer unless it is another packet, or the camera has answered before.
void Note(const Datagram& datagram, uint16_t requestId, std::vector<ActionAnswer>& answers) {
    const auto answer = ParseAnswer(datagram.bytes);
    if (!answer || answer->answer != AnswerTo(Command::Action) || answer->requestId != requestId) {
        return;
    }
    const bool isKnown = std::any_of(
        answers.begin(), answers.end(),
        [&datagram](const ActionAnswer& known) { return known.camera == datagram.sender; });
    if (!isKnown) {
        answers.push_back({.camera = datagram.sender, .status = answer->status});
    }
}

}  // namespace

std::vector<Endpoint> TargetsOfAction(const Adapter& adapter, Ipv4 destination,
                                      const std::vector<Endpoint>& named) {
    const bool isBroadcast = destination == kEverybody ||
                             (destination == adapter.broadcast && !adapter.broadcast.IsNone());
    const bool canBroadcast = !adapter.broadcast.IsNone();
    std::vector<Endpoint> targets;
    for (const Endpoint& place : named) {
        const bool hearsBroadcast = canBroadcast && place.port == kControlPort &&
                                    IsSameSubnet(place.ip, adapter.ip, adapter.mask);
        if (isBroadcast ? !hearsBroadcast : place.ip == destination) {
            targets.push_back(place);
        }
    }
    if (isBroadcast ? canBroadcast : targets.empty()) {
        targets.push_back({destination, kControlPort});
    }
    return targets;
}

std::vector<ActionAnswer> CallAction(const Adapter& adapter, const std::vector<Endpoint>& targets,
                                     const ActionCommand& command, std::chrono::milliseconds time) {
    const uint8_t answerFlag = time.count() > 0 ? kFlagAnswerRequired : uint8_t{0};
    const Bytes payload = BuildAction(command.request);
    const Bytes packet =
        BuildCommand({.flags = static_cast<uint8_t>(command.request.Flags() | answerFlag),
                      .command = Command::Action,
                      .requestId = command.requestId,
                      .payload = payload});
    UdpSocket socket = MakeBroadcastSocket(adapter);
    if (!SendToSome(socket, adapter, targets, packet)) {
        throw OvProducer::Failure(GenTL::GC_ERR_IO, "No camera can be reached by " + adapter.name);
    }
    const auto deadline = steady_clock::now() + time;
    std::vector<ActionAnswer> answers;
    while (const auto datagram = time.count() > 0 ? socket.Receive(deadline) : std::nullopt) {
        Note(*datagram, command.requestId, answers);
    }
    return answers;
}

}  // namespace OvGige
