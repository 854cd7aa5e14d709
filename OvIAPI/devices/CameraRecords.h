#pragma once
/// Fills the records of the flat interface that describe a camera.

#include "OvIDef.h"

class COvDeviceInfo;

/// Overwrites the record. Texts that are too long for their fields are cut.
void FillRecord(OV_DEVICE_BASE_INFO& record, const COvDeviceInfo& camera);
/// The same for the addresses of a GigE Vision camera and those of its adapter.
void FillRecord(OV_DEVICE_IP_INFO& record, const COvDeviceInfo& camera);
