#include <stdio.h>

#include "OvIAPI.h"

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
    if (OVOpenDeviceByIndex(1, &camera) != OV_STATUS_SUCCESS ||
        OVGetFloat(camera, OV_FEATURE_ExposureTime, &exposure) != OV_STATUS_SUCCESS) {
        return Fail();
    }
    printf("cameras: %u; the first exposes for %g us\n", count, exposure);
    OVCloseLib();
    return 0;
}
