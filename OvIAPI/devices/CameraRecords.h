#pragma once
/// What the interface's records say of a camera.

#include "OvIDef.h"

class COvDeviceInfo;

/// A record that is filled anew. A text that is too long for its field is cut.
void FillRecord(OV_DEVICE_BASE_INFO& record, const COvDeviceInfo& camera);
/// The same for the addresses of a GigE Vision camera and of its adapter.
void FillRecord(OV_DEVICE_IP_INFO& record, const COvDeviceInfo& camera);
