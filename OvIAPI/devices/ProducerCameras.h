#pragma once
/// The cameras of one producer, as entries of the device list.

#include <memory>
#include <vector>

#include "camera/DeviceInfo.h"

namespace OVTLClass {
class ITL;
}

using OvDeviceInfoList = std::vector<std::shared_ptr<COvDeviceInfo>>;

/// Makes an entry for each camera of a producer, in the producer's order. A GigE Vision
/// producer's cameras are sorted by MAC address, each address once, and cameras that an
/// application opened by their address alone are left out. All GigE Vision cameras have
/// addresses in their entries.
OvDeviceInfoList ListCamerasOf(OVTLClass::ITL& tl);
