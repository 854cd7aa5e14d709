#pragma once
/// The cameras that are found.

#include <cstdint>

#include "Json.h"
#include "OvIAPI.h"

void List(uint32_t timeout, bool json);

/// What the list tells of one camera.
/// @param index  its place, from 1
Json ToJson(size_t index, const OV_DEVICE_BASE_INFO& camera);
