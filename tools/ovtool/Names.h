#pragma once
/// Words for the interface's numbers.

#include "OvIAPI.h"

const char* ClassName(OV_DEVICE_CLASS deviceClass);
const char* AccessName(OV_ACCESS_STATUS status);
