#pragma once
/// The port of an open camera.

#include <atomic>
#include <memory>

#include "framework/Port.h"
#include "gige/device/CameraConnection.h"

namespace OvGige {

/// What of an open camera's port changes or is of interest to others.
struct PortState {
    /// Whether numbers of four bytes go by register commands instead of memory commands.
    std::atomic<bool> isLegacy = false;
    /// Whether the register of the stream's packet size was written.
    std::atomic<bool> isPacketSizeChosen = false;
};

/// Makes the port with the camera's description. Every access fails with GC_ERR_CUSTOM_ID once
/// the camera is lost, also one that is under way then.
/// @throws OvProducer::Failure GC_ERR_NOT_AVAILABLE if the description can't be had
std::unique_ptr<OvProducer::Port> MakeCameraPort(
    const OvProducer::PortFacts& facts, const std::shared_ptr<CameraConnection>& connection,
    const std::shared_ptr<PortState>& state);

}  // namespace OvGige
