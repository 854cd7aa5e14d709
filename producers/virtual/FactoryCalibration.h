/// @file
/// What the factory measured of a virtual camera.
#ifndef OV_VIRTUAL_FACTORY_CALIBRATION_H
#define OV_VIRTUAL_FACTORY_CALIBRATION_H

#include <string>

namespace OvVirtual {

struct CameraIdentity;

/// A text of one fact a line, as "SerialNumber=VC000001". The balance is what a
/// camera from the factory has.
std::string FactoryCalibration(const CameraIdentity& identity);

}  // namespace OvVirtual

#endif
