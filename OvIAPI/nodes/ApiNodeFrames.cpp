// Frames whose chunks are read as features.

#include "OvINodes.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"

OV_STATUS OvNodeAttachFrame(OV_DEV_HANDLE hDevice, const OV_FRAME_BUFFER* pFrame) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pFrame);
    info.GetAttachedFrame().AttachLent(pFrame, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeAttachCallbackFrame(OV_DEV_HANDLE hDevice,
                                    const OV_FRAME_CALLBACK_PARAM* pFrame) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pFrame);
    info.GetAttachedFrame().AttachDelivered(pFrame, OV_HERE);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeDetachFrame(OV_DEV_HANDLE hDevice) try {
    EnterCamera(hDevice, OV_HERE).GetAttachedFrame().Detach();
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
