#pragma once
/// The registers of a virtual camera, at the addresses of descriptions/VirtualCamera.xml.

#include <memory>

#include "framework/Port.h"
#include "virtual/Camera.h"

namespace OvVirtual {

/// Adds the camera's registers without its description. They own the camera too.
/// @param facts  the texts of the camera's identity
void AddCameraRegisters(OvProducer::RegisterSpace& registers, const std::shared_ptr<Camera>& camera,
                        const OvProducer::PortFacts& facts);

/// Makes the camera's own port with its description. The port owns the camera too.
std::unique_ptr<OvProducer::Port> MakeCameraPort(const std::shared_ptr<Camera>& camera,
                                                 const OvProducer::PortFacts& facts);

}  // namespace OvVirtual
