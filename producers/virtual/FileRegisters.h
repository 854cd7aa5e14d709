#pragma once
/// The registers for access to the files of a virtual camera.

#include <memory>

#include "framework/RegisterSpace.h"
#include "virtual/Camera.h"

namespace OvVirtual {

/// Adds them to a port. They own the camera too. The parameters of the next operation
/// belong to the port.
void AddFileRegisters(OvProducer::RegisterSpace& registers, const std::shared_ptr<Camera>& camera);

}  // namespace OvVirtual
