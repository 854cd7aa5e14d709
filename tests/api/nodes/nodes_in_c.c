/* The header as a C program sees it. */
#include "OvINodes.h"

int ReadNodesInC(void);

/* Finds nodes, reads one and fails on purpose. 0 when all went as it should. */
int ReadNodesInC(void) {
    uint32_t count = 0;
    size_t number = 0;
    int64_t width = 0;
    OV_NODE_HANDLE node = 0;
    OV_DEV_HANDLE camera = NULL;
    if (OVInitLib() != OV_STATUS_SUCCESS || OVUpdateDeviceList(&count, 1000) != OV_STATUS_SUCCESS ||
        OVOpenDeviceByIndex(1, &camera) != OV_STATUS_SUCCESS) {
        return 1;
    }
    if (OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, NULL, &number) != OV_STATUS_SUCCESS ||
        number < 40) {
        return 2;
    }
    if (OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Width", &node) != OV_STATUS_SUCCESS) {
        return 3;
    }
    if (OvNodeGetInteger(node, &width) != OV_STATUS_SUCCESS || width != 64) {
        return 4;
    }
    if (OvNodeExecute(node) != OV_STATUS_ERROR_TYPE) {
        return 5;
    }
    return OVCloseLib() == OV_STATUS_SUCCESS ? 0 : 6;
}
