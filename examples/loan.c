// Looks at frames where the producer put them: nothing is copied. Each buffer goes back as
// soon as it was looked at; a camera whose buffers are all on loan discards frames.
#include "example.h"

static unsigned long long Sum(const OV_FRAME_BUFFER* frame) {
    const uint8_t* const bytes = frame->pImgBuf;
    unsigned long long sum = 0;
    for (int32_t i = 0; i < frame->nImgSize; ++i) {
        sum += bytes[i];
    }
    return sum;
}

int main(int argc, char** argv) {
    OV_DEV_HANDLE camera = OpenCamera(argc > 1 ? argv[1] : NULL);
    Check(OVSetAcqusitionBufferNumber(camera, 8), "OVSetAcqusitionBufferNumber");
    Check(OVStreamOn(camera), "OVStreamOn");
    for (int i = 0; i < 10; ++i) {
        OV_FRAME_BUFFER* frame = NULL;
        Check(OVDQBuf(camera, &frame, 10000), "OVDQBuf");
        if (frame->nStatus == OV_FRAME_STATUS_SUCCESS && frame->pImgBuf != NULL) {
            printf("%d x %d, mean level %llu\n", frame->nWidth, frame->nHeight,
                   Sum(frame) / (unsigned long long)frame->nImgSize);
        }
        Check(OVQBuf(camera, frame), "OVQBuf");
    }
    Check(OVStreamOff(camera), "OVStreamOff");
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
