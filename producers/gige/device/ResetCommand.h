#pragma once
/// The command by which a camera restarts, as its description has it.

#include <cstdint>
#include <optional>
#include <string_view>

#include "framework/Port.h"
#include "gige/control/CameraMemory.h"
#include "gige/protocol/BigEndian.h"

namespace OvGige {

/// What is written where.
struct ResetCommand {
    uint64_t address = 0;
    Bytes value;

    bool operator==(const ResetCommand&) const = default;
};

/// Finds the command "DeviceReset" of a description. Nothing is returned if there is none, or if
/// its register or value depends on other values: this end doesn't evaluate descriptions.
std::optional<ResetCommand> FindResetCommand(std::string_view xml);

/// Resets a camera. That it may answer no more is no failure.
/// @param port  of the camera, with its description
/// @throws OvProducer::Failure GC_ERR_NOT_IMPLEMENTED if the description has no such command
void SendReset(CameraMemory& camera, const OvProducer::Port& port);

}  // namespace OvGige
