#pragma once
/// The factory's measurements of a virtual camera.

#include <string>

namespace OvVirtual {

struct CameraIdentity;

/// Returns a text with one fact in each line, such as "SerialNumber=VC000001". The
/// balance is that of a new camera.
std::string FactoryCalibration(const CameraIdentity& identity);

}  // namespace OvVirtual
