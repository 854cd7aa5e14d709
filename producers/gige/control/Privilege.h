#pragma once
/// Who controls a camera.

#include <chrono>
#include <functional>

#include "gige/control/CameraMemory.h"
#include "gige/protocol/Address.h"

namespace OvGige {

/// What an application may do with a camera that it opens.
enum class Access {
    ReadOnly,   ///< read, beside whoever has control
    Control,    ///< write; others may read
    Exclusive,  ///< write; others get nothing
};

/// Whether the owner of a camera is a process of this machine that has gone: nobody has its
/// port any more.
using IsAbandoned = std::function<bool(const Endpoint& owner)>;

/// Takes control of a camera, or makes sure that it can be read.
///
/// A camera whose owner has gone keeps it until its heartbeat time-out is over. That is waited
/// for only if the owner was a process of this machine. Of any other owner nobody here knows
/// whether it is alive.
/// @param pause  waits for so long
/// @throws OvProducer::Failure GC_ERR_ACCESS_DENIED if somebody else has the camera; the text
///         names the owner's address where the camera tells it
void TakeAccess(CameraMemory& camera, Access access, const IsAbandoned& isAbandoned,
                const std::function<void(std::chrono::milliseconds)>& pause);

/// Gives the camera back; failures are ignored, as there is nobody whom they could help.
void ReleaseAccess(CameraMemory& camera) noexcept;

}  // namespace OvGige
