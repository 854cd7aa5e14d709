#include "simulator/message/MessageRegisters.h"

#include <array>

namespace OvSimulator {
namespace {

using namespace OvGige;

constexpr auto kWritten = std::to_array<uint32_t>({
    kRegMessagePort,
    kRegMessageDestination,
    kRegMessageTimeout,
    kRegMessageRetries,
    kRegMessageConfig,
    kRegStreamConfig,
});

}  // namespace

MessageSetup MessageSetupOf(const BootstrapRegisters& registers) {
    return {
        .destination = {{registers.Get(kRegMessageDestination)},
                        static_cast<uint16_t>(registers.Get(kRegMessagePort) & kMessagePortMask)},
        .timeout = std::chrono::milliseconds(registers.Get(kRegMessageTimeout)),
        .retries = registers.Get(kRegMessageRetries),
        .isExtended = (registers.Get(kRegStreamConfig) & kStreamConfigExtendedIds) != 0,
        .joinsEvents = (registers.Get(kRegMessageConfig) & kMessageConfigSeveralEvents) != 0};
}

void ConnectMessageRegisters(BootstrapRegisters& registers, MessageKind kind,
                             const std::function<void(const MessageSetup&)>& configure) {
    if (kind == MessageKind::None) {
        for (const uint32_t address :
             {kRegMessagePort, kRegMessageDestination, kRegMessageTimeout, kRegMessageRetries,
              kRegMessageSourcePort, kRegMessageConfig}) {
            registers.Remove(address);
        }
        return;
    }
    const uint32_t offered = registers.Get(kRegControlCapability);
    registers.Set(kRegControlCapability,
                  offered | (kind == MessageKind::EventData ? kOffersEventData : kOffersEvent));
    registers.Set(kRegMessageChannelCount, 1);
    registers.Set(kRegMessageCapability,
                  kOffersMessageSourcePort | kOffersMessageConfig | kOffersSeveralEvents);
    for (const uint32_t address : kWritten) {
        registers.FollowWrites(
            address, [&registers, configure](uint32_t) { configure(MessageSetupOf(registers)); });
    }
}

}  // namespace OvSimulator
