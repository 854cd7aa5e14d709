// Prints what the camera appends to its frames, feature by feature.
#include "OvINodes.h"
#include "example.h"

// Keeps the features of frames and returns their number: without a frame they aren't available.
static size_t KeepFrameFeatures(OV_NODE_HANDLE* features, size_t number) {
    size_t kept = 0;
    for (size_t i = 0; i < number; ++i) {
        OV_NODE_ACCESS access = OV_NODE_ACCESS_NOT_IMPLEMENTED;
        Check(OvNodeGetAccess(features[i], &access), "OvNodeGetAccess");
        if (access == OV_NODE_ACCESS_NOT_AVAILABLE) {
            features[kept++] = features[i];
        }
    }
    return kept;
}

static void PrintChunks(const OV_NODE_HANDLE* features, size_t number) {
    for (size_t i = 0; i < number; ++i) {
        char name[128];
        char value[256];
        size_t size = sizeof name;
        Check(OvNodeGetText(features[i], OV_NODE_TEXT_NAME, name, &size), "OvNodeGetText");
        size = sizeof value;
        // A frame need not have all of them.
        if (OvNodeGetAsText(features[i], value, &size) == OV_STATUS_SUCCESS) {
            printf("  %s = %s\n", name, value);
        }
    }
}

int main(int argc, char** argv) {
    OV_DEV_HANDLE camera = OpenCamera(argc > 1 ? argv[1] : NULL);
    OV_NODE_HANDLE chunks = 0;
    OV_NODE_HANDLE features[64];
    size_t number = sizeof features / sizeof features[0];
    Check(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "ChunkDataControl", &chunks), "chunks");
    Check(OvNodeGetRelated(chunks, OV_NODE_RELATION_FEATURES, features, &number), "features");
    number = KeepFrameFeatures(features, number);
    Check(OVSetBool(camera, OV_FEATURE_ChunkModeActive, true), "ChunkModeActive");
    Check(OVStreamOn(camera), "OVStreamOn");
    for (int i = 0; i < 2; ++i) {
        OV_FRAME_BUFFER* frame = NULL;
        Check(OVDQBuf(camera, &frame, 10000), "OVDQBuf");
        printf("frame %llu\n", (unsigned long long)frame->nFrameID);
        // From here to OVQBuf() the features have the values of this frame.
        Check(OvNodeAttachFrame(camera, frame), "OvNodeAttachFrame");
        PrintChunks(features, number);
        Check(OVQBuf(camera, frame), "OVQBuf");
    }
    Check(OVStreamOff(camera), "OVStreamOff");
    Check(OVSetBool(camera, OV_FEATURE_ChunkModeActive, false), "ChunkModeActive");
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
