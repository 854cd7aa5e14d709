#pragma once
/// Starts and stops a camera's acquisition, and fetches its frames. A `place` is the
/// place of the exported function, which failures name.

#include <cstdint>

#include "OvIDef.h"
#include "camera/DeviceInfo.h"
#include "errors/Place.h"

/// Starts stream and camera, in up to three attempts. The camera's transport parameters
/// stay locked until the stop.
void StartAcquisition(COvDeviceInfo& info, const OvPlace& place);

/// Stops camera and stream. If the camera fails, the stream is stopped all the same, and
/// the camera's first failure is thrown at the end.
void StopAcquisition(COvDeviceInfo& info, const OvPlace& place);

/// Stops the acquisition of a camera that is being closed. Failures are only logged.
void EndAcquisition(COvDeviceInfo& info) noexcept;

/// Throws with the message if an acquisition runs.
void CheckStopped(OVTLClass::IDataStream& stream, const char* message, const OvPlace& place);

// The next three fetch frames. They must be called inside the camera's gate.

/// Waits for a frame and copies it to frame.pImgBuf.
void CopyFrame(COvDeviceInfo& info, OV_FRAME_DATA& frame, uint32_t timeout);

/// Waits for a frame and lends it.
OV_FRAME_BUFFER* LendFrame(COvDeviceInfo& info, uint32_t timeout, const OvPlace& place);

/// Lends all frames that are waiting, and waits for one if there is none.
/// @return their number
uint32_t LendAllFrames(COvDeviceInfo& info, OV_FRAME_BUFFER** frames, uint32_t size,
                       uint32_t timeout, const OvPlace& place);
