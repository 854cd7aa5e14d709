#pragma once
/// The registers of a virtual camera, at the addresses of descriptions/VirtualCamera.xml.

#include <memory>

#include "framework/Port.h"
#include "virtual/Camera.h"

namespace OvVirtual {

/// Makes the camera's own port with its description. The port owns the camera too.
std::unique_ptr<OvProducer::Port> MakeCameraPort(const std::shared_ptr<Camera>& camera,
                                                 const OvProducer::PortFacts& facts);

}  // namespace OvVirtual
