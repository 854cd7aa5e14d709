#include "simulator/stream/StreamRegisters.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace OvSimulator {
namespace {

using namespace OvGige;

// Bits of the registers of the stream channel.
constexpr uint32_t kHostPort = 0x0000FFFF;
constexpr uint32_t kFireTestPacket = 0x80000000;
constexpr uint32_t kDoNotFragment = 0x40000000;
constexpr uint32_t kPacketSize = 0x0000FFFF;
constexpr uint32_t kExtendedChunks = 0x00000001;
constexpr uint32_t kExtendedIds = 0x40000000;
constexpr uint32_t kHasSourcePort = 0x80000000;
constexpr uint32_t kHasShortIds = 0x40000000;

constexpr uint32_t kPacketSizeMin = 576;
constexpr uint32_t kPacketSizeMax = 16000;
constexpr uint32_t kPacketSizeStep = 4;
constexpr uint32_t kPacketSizeDefault = 1500;

uint32_t RoundedSize(uint32_t size) {
    return std::clamp(size / kPacketSizeStep * kPacketSizeStep, kPacketSizeMin, kPacketSizeMax);
}

void FillDefaults(BootstrapRegisters& registers) {
    registers.Set(kRegStreamChannelCount, 1);
    registers.Set(kRegStreamCapability, kHasSourcePort | kHasShortIds);
    registers.Set(kRegStreamFeatures, kExtendedChunks);
    registers.Set(kRegStreamSwitches, kExtendedChunks);
    registers.Set(kRegStreamPacketSize, kDoNotFragment | kPacketSizeDefault);
}

void KeepBits(BootstrapRegisters& registers, uint32_t address, uint32_t bits) {
    registers.CheckWrites(address, [bits](uint32_t& value) {
        value &= bits;
        return Status::Success;
    });
}

}  // namespace

StreamSetup StreamSetupOf(const BootstrapRegisters& registers) {
    const uint32_t size = registers.Get(kRegStreamPacketSize);
    return {.destination = {{registers.Get(kRegStreamDestination)},
                            static_cast<uint16_t>(registers.Get(kRegStreamPort) & kHostPort)},
            .packetSize = size & kPacketSize,
            .delay = registers.Get(kRegStreamPacketDelay),
            .isExtended = (registers.Get(kRegStreamConfig) & kExtendedIds) != 0,
            .doNotFragment = (size & kDoNotFragment) != 0,
            .marksChunks = (registers.Get(kRegStreamSwitches) & kExtendedChunks) != 0};
}

void ConnectStreamRegisters(BootstrapRegisters& registers,
                            const std::function<void(const StreamSetup&)>& configure,
                            const std::function<void()>& fire) {
    FillDefaults(registers);
    KeepBits(registers, kRegStreamConfig, kExtendedIds);
    KeepBits(registers, kRegStreamSwitches, kExtendedChunks);
    const auto isFiring = std::make_shared<bool>(false);
    registers.CheckWrites(kRegStreamPacketSize, [isFiring](uint32_t& value) {
        *isFiring = (value & kFireTestPacket) != 0;
        value = (value & kDoNotFragment) | RoundedSize(value & kPacketSize);
        return Status::Success;
    });
    for (const uint32_t address : {kRegStreamPort, kRegStreamPacketSize, kRegStreamPacketDelay,
                                   kRegStreamDestination, kRegStreamSwitches, kRegStreamConfig}) {
        registers.FollowWrites(address, [&registers, isFiring, configure, fire](uint32_t) {
            configure(StreamSetupOf(registers));
            if (std::exchange(*isFiring, false)) {
                fire();
            }
        });
    }
}

}  // namespace OvSimulator
