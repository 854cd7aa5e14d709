#include "gige/discovery/Inquiry.h"

#include "gige/control/ControlChannel.h"
#include "gige/net/CameraSocket.h"
#include "gige/net/UdpLink.h"

namespace OvGige {
namespace {

using namespace std::chrono_literals;

/// Cameras may wait a second before they answer a search, but that is meant for searches of
/// all cameras at once.
constexpr Patience kPatience{.timeout = 400ms, .tries = 2};

}  // namespace

std::optional<FoundCamera> Inquire(const Adapter& adapter, const Endpoint& endpoint) {
    try {
        ControlChannel channel(std::make_unique<UdpLink>(MakeCameraSocket(adapter), endpoint), 1);
        channel.SetPatience(kPatience);
        if (const auto identity = ParseIdentity(channel.Exchange(Command::Discovery, {}))) {
            return FoundCamera{.identity = *identity, .endpoint = endpoint, .isNamed = true};
        }
    } catch (const OvProducer::Failure&) {  // NOLINT(bugprone-empty-catch): nobody is there
    }
    return {};
}

}  // namespace OvGige
