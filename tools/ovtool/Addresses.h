#pragma once
/// Addresses of cameras and of the adapters that see them, for machines.

#include "Json.h"
#include "OvIAPI.h"

Json CameraAddresses(const OV_DEVICE_IP_INFO& info);
/// With the adapter's description.
Json AdapterAddresses(const OV_DEVICE_IP_INFO& info);
