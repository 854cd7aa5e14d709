#pragma once
/// Makes the entries of the device list from the objects of a producer.

#include <memory>
#include <vector>

#include "camera/DeviceInfo.h"

namespace OVTLClass {
class ITL;
}

using OvDeviceInfoList = std::vector<std::shared_ptr<COvDeviceInfo>>;

/// The cameras of one producer. For GigE Vision one entry for each MAC address,
/// sorted by it, and none for a device that an application made by opening an
/// address; for every other transport in the producer's order. Those that speak
/// GigE Vision have addresses.
OvDeviceInfoList ReadDevicesOf(OVTLClass::ITL& tl);
