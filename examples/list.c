// Lists all cameras and opens one by its serial number, the virtual one if none is named.
// Usage: list [SERIAL NUMBER]
#include "example.h"

int main(int argc, char** argv) {
    OV_DEVICE_BASE_INFO cameras[32];
    size_t size = sizeof cameras;
    uint32_t count = 0;
    Check(OVInitLib(), "OVInitLib");
    Check(OVUpdateDeviceList(&count, 1000), "OVUpdateDeviceList");
    Check(OVGetAllDeviceBaseInfo(cameras, &size), "OVGetAllDeviceBaseInfo");
    count = (uint32_t)(size / sizeof cameras[0]);
    for (uint32_t i = 0; i < count; ++i) {
        printf("%u  %s %s, serial number %s\n", i + 1, cameras[i].szVendorName,
               cameras[i].szModelName, cameras[i].szSN);
    }
    if (count == 0) {
        printf("no camera was found\n");
        OVCloseLib();
        return 1;
    }

    // Exclusive access: nobody else can open the camera meanwhile.
    const char* const serial = argc > 1 ? argv[1] : VIRTUAL_CAMERA;
    const OV_OPEN_PARAM param = {serial, OV_OPEN_SN, OV_ACCESS_EXCLUSIVE};
    OV_DEV_HANDLE camera = NULL;
    int64_t width = 0;
    int64_t height = 0;
    Check(OVOpenDevice(&param, &camera), "OVOpenDevice");
    Check(OVGetInt(camera, OV_FEATURE_SensorWidth, &width), "SensorWidth");
    Check(OVGetInt(camera, OV_FEATURE_SensorHeight, &height), "SensorHeight");
    printf("%s has a sensor of %lld x %lld pixels\n", serial, (long long)width, (long long)height);
    Check(OVCloseDevice(camera), "OVCloseDevice");
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
