// Takes frames and survives that the camera is lost: it is closed, searched for and opened
// again, by its serial number, until all frames were taken.
// Usage: lost_camera [FRAMES [SERIAL NUMBER]]
// To see it with a virtual camera, let that drop off after three frames, before:
//     ovtool write 0xa28 03000000
#include <stdatomic.h>
#include <time.h>

#include "example.h"

static void OnLost(void* lost) {
    atomic_store((atomic_bool*)lost, true);
}

// Takes frames until there are enough of them or the camera is lost; returns how many.
static int TakeFrames(OV_DEV_HANDLE camera, int wanted) {
    atomic_bool lost = false;
    OV_EVENT_CALLBACK_HANDLE callback = NULL;
    int taken = 0;
    Check(OVRegisterDeviceOfflineCallback(camera, &lost, OnLost, &callback),
          "OVRegisterDeviceOfflineCallback");
    Check(OVStreamOn(camera), "OVStreamOn");
    while (taken < wanted && !atomic_load(&lost)) {
        OV_FRAME_BUFFER* frame = NULL;
        // Short, so that the loss is noticed soon.
        const OV_STATUS status = OVDQBuf(camera, &frame, 200);
        if (status == OV_STATUS_SUCCESS) {
            ++taken;
            OVQBuf(camera, frame);
        } else if (status != OV_STATUS_TIMEOUT) {
            break;
        }
    }
    // No camera answers after its loss; only the host's side can be stopped.
    OVStreamOff(camera);
    OVCloseDevice(camera);
    return taken;
}

static OV_DEV_HANDLE OpenAgain(const char* serial) {
    const OV_OPEN_PARAM param = {serial, OV_OPEN_SN, OV_ACCESS_EXCLUSIVE};
    OV_DEV_HANDLE camera = NULL;
    const struct timespec pause = {0, 200000000};
    uint32_t count = 0;
    while (OVOpenDevice(&param, &camera) != OV_STATUS_SUCCESS) {
        nanosleep(&pause, NULL);
        Check(OVUpdateDeviceList(&count, 500), "OVUpdateDeviceList");
    }
    return camera;
}

int main(int argc, char** argv) {
    int left = argc > 1 ? atoi(argv[1]) : 10;
    char serial[64];
    size_t size = sizeof serial;
    OV_DEV_HANDLE camera = OpenCamera(argc > 2 ? argv[2] : NULL);
    Check(OVGetString(camera, OV_FEATURE_DeviceSerialNumber, serial, &size), "DeviceSerialNumber");
    for (;;) {
        const int taken = TakeFrames(camera, left);
        printf("%d frames\n", taken);
        left -= taken;
        if (left == 0) {
            break;
        }
        printf("the camera is lost\n");
        camera = OpenAgain(serial);
        printf("the camera is back\n");
    }
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
