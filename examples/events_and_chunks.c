// Hears of each exposure as it ends, and takes what the camera appends to its frames.
//
// Chunks follow the image: data, then four bytes with the identifier and four with the
// size of the data, both with the high byte first. They are found from the end.
#include <stdatomic.h>

#include "example.h"

static uint32_t BigEndian(const uint8_t* bytes) {
    return (uint32_t)bytes[0] << 24 | (uint32_t)bytes[1] << 16 | (uint32_t)bytes[2] << 8 | bytes[3];
}

static void PrintChunks(const OV_FRAME_BUFFER* frame) {
    const uint8_t* const bytes = frame->pImgBuf;
    size_t end = (size_t)frame->nImgSize;
    while (end >= 8) {
        const uint32_t id = BigEndian(bytes + end - 8);
        const uint32_t size = BigEndian(bytes + end - 4);
        if (size > end - 8) {
            fprintf(stderr, "the frame isn't made of chunks\n");
            return;
        }
        printf("  chunk 0x%08x of %u bytes\n", id, size);
        end -= 8 + (size_t)size;
    }
}

typedef struct Listener {
    OV_DEV_HANDLE camera;
    atomic_int heard;
} Listener;

// Runs on a thread of the library. The features of the event can be read here.
static void OnExposureEnd(OV_FEATURE_ID feature, void* user) {
    Listener* const listener = user;
    int64_t frame = 0;
    (void)feature;
    if (OVGetInt(listener->camera, OV_FEATURE_EventExposureEndFrameID, &frame) ==
        OV_STATUS_SUCCESS) {
        fprintf(stderr, "exposure of frame %lld has ended\n", (long long)frame);
        atomic_fetch_add(&listener->heard, 1);
    }
}

int main(int argc, char** argv) {
    Listener listener = {OpenCamera(argc > 1 ? argv[1] : NULL), 0};
    OV_DEV_HANDLE camera = listener.camera;
    OV_FEATURE_CALLBACK_HANDLE callback = NULL;
    Check(OVRegisterFeatureCallback(camera, &listener, OnExposureEnd, OV_FEATURE_EventExposureEnd,
                                    &callback),
          "OVRegisterFeatureCallback");
    Choose(camera, OV_FEATURE_EventSelector, "ExposureEnd");
    Choose(camera, OV_FEATURE_EventNotification, "On");
    Check(OVSetBool(camera, OV_FEATURE_ChunkModeActive, true), "ChunkModeActive");
    Check(OVStreamOn(camera), "OVStreamOn");
    while (atomic_load(&listener.heard) < 3) {
        OV_FRAME_BUFFER* frame = NULL;
        Check(OVDQBuf(camera, &frame, 10000), "OVDQBuf");
        printf("frame %llu\n", (unsigned long long)frame->nFrameID);
        if (frame->nStatus == OV_FRAME_STATUS_SUCCESS && frame->pImgBuf != NULL) {
            PrintChunks(frame);
        }
        Check(OVQBuf(camera, frame), "OVQBuf");
    }
    Check(OVStreamOff(camera), "OVStreamOff");
    Check(OVSetBool(camera, OV_FEATURE_ChunkModeActive, false), "ChunkModeActive");
    Choose(camera, OV_FEATURE_EventNotification, "Off");
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
