#pragma once
/// The registers of a virtual camera, as descriptions/VirtualCamera.xml maps
/// them.

#include <memory>

#include "framework/Port.h"
#include "virtual/Camera.h"

namespace OvVirtual {

/// The camera's own port with its description. Keeps the camera.
std::unique_ptr<OvProducer::Port> MakeCameraPort(const std::shared_ptr<Camera>& camera,
                                                 const OvProducer::PortFacts& facts);

}  // namespace OvVirtual
