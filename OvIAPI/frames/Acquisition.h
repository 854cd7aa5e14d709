#pragma once
/// Start and stop of a camera's acquisition, and the frames in between. The place is
/// that of the exported function.

#include <cstdint>

#include "OvIDef.h"
#include "camera/DeviceInfo.h"
#include "errors/Place.h"

/// Starts camera and stream; up to three attempts. The camera's transport
/// parameters stay locked until the stop.
void StartAcquisition(COvDeviceInfo& info, const OvPlace& place);

/// Stops camera and stream. The host's side is stopped whatever the camera
/// says; the camera's first failure is raised at the end.
void StopAcquisition(COvDeviceInfo& info, const OvPlace& place);

/// The stop of a camera that is being closed: what fails is logged.
void EndAcquisition(COvDeviceInfo& info) noexcept;

/// Raises with the message while the stream acquires.
void CheckStopped(OVTLClass::IDataStream& stream, const char* message, const OvPlace& place);

// A fetch: to be called inside the camera's gate.

/// Waits for a frame and copies it to frame.pImgBuf.
void CopyFrame(COvDeviceInfo& info, OV_FRAME_DATA& frame, uint32_t timeout);

/// Waits for a frame and lends it.
OV_FRAME_BUFFER* LendFrame(COvDeviceInfo& info, uint32_t timeout, const OvPlace& place);

/// Lends all frames that wait, at least one.
/// @return their number
uint32_t LendAllFrames(COvDeviceInfo& info, OV_FRAME_BUFFER** frames, uint32_t size,
                       uint32_t timeout, const OvPlace& place);
