#pragma once
/// The registers that reach the files of a virtual camera.

#include <memory>

#include "framework/RegisterSpace.h"
#include "virtual/Camera.h"

namespace OvVirtual {

/// Adds them to a port's; they keep the camera. How the next operation opens and
/// what it moves belongs to the port.
void AddFileRegisters(OvProducer::RegisterSpace& registers, const std::shared_ptr<Camera>& camera);

}  // namespace OvVirtual
