#pragma once
/// What the factory measured of a virtual camera.

#include <string>

namespace OvVirtual {

struct CameraIdentity;

/// A text of one fact a line, as "SerialNumber=VC000001". The balance is what a
/// camera from the factory has.
std::string FactoryCalibration(const CameraIdentity& identity);

}  // namespace OvVirtual
