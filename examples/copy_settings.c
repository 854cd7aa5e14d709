// Copies settings from one camera to another, by the names of the features.
//     copy_settings [FROM [TO]]    serial numbers
#include "OvINodes.h"
#include "example.h"

enum { kMost = 4096, kRounds = 3 };

// A feature that is kept with the settings, and can be read and set now.
static int IsSetting(OV_NODE_HANDLE node) {
    OV_NODE_INFO info;
    return OvNodeGetInfo(node, &info) == OV_STATUS_SUCCESS &&
           (info.nFlags & OV_NODE_FLAG_STREAMABLE) != 0 && info.access == OV_NODE_ACCESS_READ_WRITE;
}

// Returns how many features of the other camera have taken another value.
static int CopyOnce(const OV_NODE_HANDLE* nodes, size_t number, OV_DEV_HANDLE to) {
    int changed = 0;
    for (size_t i = 0; i < number; ++i) {
        char name[128];
        char value[1024];
        char before[1024];
        size_t size = sizeof name;
        size_t valueSize = sizeof value;
        size_t beforeSize = sizeof before;
        OV_NODE_HANDLE target = 0;
        if (!IsSetting(nodes[i]) ||
            OvNodeGetText(nodes[i], OV_NODE_TEXT_NAME, name, &size) != OV_STATUS_SUCCESS ||
            OvNodeGetAsText(nodes[i], value, &valueSize) != OV_STATUS_SUCCESS ||
            OvNodeFind(to, OV_NODE_MODULE_CAMERA, name, &target) != OV_STATUS_SUCCESS ||
            OvNodeGetAsText(target, before, &beforeSize) != OV_STATUS_SUCCESS ||
            strcmp(value, before) == 0) {
            continue;
        }
        // What another setting forbids now may be possible in the next round.
        if (OvNodeSetAsText(target, value) == OV_STATUS_SUCCESS) {
            printf("%s = %s\n", name, value);
            ++changed;
        }
    }
    return changed;
}

int main(int argc, char** argv) {
    static OV_NODE_HANDLE nodes[kMost];
    size_t number = kMost;
    OV_DEV_HANDLE from = OpenCamera(argc > 1 ? argv[1] : NULL);
    const OV_OPEN_PARAM other = {argc > 2 ? argv[2] : "VC000002", OV_OPEN_SN, OV_ACCESS_EXCLUSIVE};
    OV_DEV_HANDLE to = NULL;
    Check(OVOpenDevice(&other, &to), "OVOpenDevice");
    Check(OvNodeGetAll(from, OV_NODE_MODULE_CAMERA, nodes, &number), "OvNodeGetAll");
    for (int round = 0; round < kRounds && CopyOnce(nodes, number, to) != 0; ++round) {
    }
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
