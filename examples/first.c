#include <stdio.h>

#include "OvIAPI.h"

// The first virtual camera; "ovtool list" prints the serial numbers of yours.
static const char* const kCamera = "VC000001";

static int Fail(void) {
    char text[1024] = "";
    size_t size = sizeof text;
    OVGetLastError(NULL, text, &size);
    printf("failed: %s\n", text);
    OVCloseLib();
    return 1;
}

int main(void) {
    uint32_t count = 0;
    const OV_OPEN_PARAM param = {kCamera, OV_OPEN_SN, OV_ACCESS_READONLY};
    OV_DEV_HANDLE camera = NULL;
    double exposure = 0;
    if (OVInitLib() != OV_STATUS_SUCCESS || OVUpdateDeviceList(&count, 1000) != OV_STATUS_SUCCESS) {
        return Fail();
    }
    if (count == 0) {
        printf("no camera was found: is one connected and switched on?\n");
        OVCloseLib();
        return 1;
    }
    if (OVOpenDevice(&param, &camera) != OV_STATUS_SUCCESS ||
        OVGetFloat(camera, OV_FEATURE_ExposureTime, &exposure) != OV_STATUS_SUCCESS) {
        return Fail();
    }
    printf("cameras: %u; %s exposes for %g us\n", count, kCamera, exposure);
    OVCloseLib();
    return 0;
}
