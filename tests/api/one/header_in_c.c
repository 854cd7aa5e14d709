/* The header as a C program sees it. */
#include "OvIAPI.h"

int OpenCloseInC(void);

/* Opens a camera, reads a feature, fails on purpose and closes. 0 when all
   went as it should. */
int OpenCloseInC(void) {
    uint32_t count = 0;
    int64_t width = 0;
    OV_DEV_HANDLE camera = NULL;
    if (OVInitLib() != OV_STATUS_SUCCESS) {
        return 1;
    }
    if (OVUpdateDeviceList(&count, 1000) != OV_STATUS_SUCCESS || count != 1) {
        return 2;
    }
    if (OVOpenDeviceByIndex(1, &camera) != OV_STATUS_SUCCESS) {
        return 3;
    }
    if (OVGetInt(camera, OV_FEATURE_Width, &width) != OV_STATUS_SUCCESS || width != 64) {
        return 4;
    }
    if (OVGetInt(camera, OV_FEATURE_ExposureTime, &width) != OV_STATUS_ERROR_TYPE) {
        return 5;
    }
    if (OVCloseDevice(camera) != OV_STATUS_SUCCESS) {
        return 6;
    }
    return OVCloseLib() == OV_STATUS_SUCCESS ? 0 : 7;
}
