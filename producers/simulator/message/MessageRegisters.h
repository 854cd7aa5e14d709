#pragma once
/// The registers of a camera's message channel.

#include "simulator/device/BootstrapRegisters.h"
#include "simulator/message/MessageOutbox.h"

namespace OvSimulator {

/// What the registers say of how messages are to come.
MessageSetup MessageSetupOf(const BootstrapRegisters& registers);

/// Makes the registers steer a message channel, or takes them away from a camera that has none.
/// @param configure  called after each change
void ConnectMessageRegisters(BootstrapRegisters& registers, MessageKind kind,
                             const std::function<void(const MessageSetup&)>& configure);

}  // namespace OvSimulator
