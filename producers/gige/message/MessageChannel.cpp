#include "gige/message/MessageChannel.h"

#include "gige/protocol/Bootstrap.h"

namespace OvGige {
namespace {

/// How long a camera waits for an acknowledgement before it sends a message again, and how often
/// it does so. A network that loses every tenth packet loses one message in a thousand.
constexpr uint32_t kAnswerTimeout = 300;  // milliseconds
constexpr uint32_t kRetries = 2;

/// Cameras exist whose patience is fixed.
void WriteIfPossible(CameraMemory& camera, uint32_t address, uint32_t value) {
    try {
        camera.WriteRegister(address, value);
    } catch (const Refusal& refusal) {
        OvProducer::LogWarning(std::string("The patience of a camera's messages: ") +
                               refusal.what());
    }
}

}  // namespace

bool MessageChannel::IsThere() const {
    return m_camera.ReadRegisterIfThere(kRegMessageChannelCount) != 0;
}

uint16_t MessageChannel::SourcePort() const {
    const uint32_t offered = m_camera.ReadRegisterIfThere(kRegMessageCapability);
    return (offered & kOffersMessageSourcePort) != 0
               ? static_cast<uint16_t>(m_camera.ReadRegisterIfThere(kRegMessageSourcePort) &
                                       kMessagePortMask)
               : uint16_t{0};
}

void MessageChannel::Open(const Endpoint& destination) {
    m_camera.WriteRegister(kRegMessagePort, 0);
    m_camera.WriteRegister(kRegMessageDestination, destination.ip.value);
    WriteIfPossible(m_camera, kRegMessageTimeout, kAnswerTimeout);
    WriteIfPossible(m_camera, kRegMessageRetries, kRetries);
    m_camera.WriteRegister(kRegMessagePort, destination.port);
}

}  // namespace OvGige
