#pragma once
/// The registers of a camera's stream channel.

#include "simulator/device/BootstrapRegisters.h"
#include "simulator/stream/StreamBlock.h"

namespace OvSimulator {

/// What the registers say of how frames are to come.
StreamSetup StreamSetupOf(const BootstrapRegisters& registers);

/// Makes the registers steer a stream.
/// @param configure  called after each change
/// @param fire       called when the host asks for a test packet
void ConnectStreamRegisters(BootstrapRegisters& registers,
                            const std::function<void(const StreamSetup&)>& configure,
                            const std::function<void()>& fire);

}  // namespace OvSimulator
