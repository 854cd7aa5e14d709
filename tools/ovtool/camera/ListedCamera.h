#pragma once
/// What the library's list tells of a camera, for machines.

#include <cstddef>

#include "OvIAPI.h"
#include "support/Json.h"

/// The word for the interface's number.
const char* ClassName(OV_DEVICE_CLASS deviceClass);

/// @param index  its place, from 1
Json ToJson(size_t index, const OV_DEVICE_BASE_INFO& camera);

Json CameraAddresses(const OV_DEVICE_IP_INFO& info);
/// With the adapter's description.
Json AdapterAddresses(const OV_DEVICE_IP_INFO& info);
