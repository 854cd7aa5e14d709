// Takes a frame whenever the program says so.
#include "example.h"

int main(int argc, char** argv) {
    OV_DEV_HANDLE camera = OpenCamera(argc > 1 ? argv[1] : NULL);
    Choose(camera, OV_FEATURE_TriggerMode, "On");
    Choose(camera, OV_FEATURE_TriggerSource, "Software");
    Check(OVStreamOn(camera), "OVStreamOn");
    for (int i = 1; i <= 3; ++i) {
        OV_FRAME_BUFFER* frame = NULL;
        Check(OVSendCommand(camera, OV_FEATURE_TriggerSoftware), "TriggerSoftware");
        Check(OVDQBuf(camera, &frame, 10000), "OVDQBuf");
        printf("trigger %d: frame %llu\n", i, (unsigned long long)frame->nFrameID);
        Check(OVQBuf(camera, frame), "OVQBuf");
    }
    Check(OVStreamOff(camera), "OVStreamOff");
    Choose(camera, OV_FEATURE_TriggerMode, "Off");
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
