// What the examples share: a failure ends the program with its text, and a camera is opened.
#ifndef OVI_EXAMPLE_H
#define OVI_EXAMPLE_H

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "OvIAPI.h"

static inline void Check(OV_STATUS status, const char* what) {
    char text[1024] = "";
    size_t size = sizeof text;
    if (status == OV_STATUS_SUCCESS) {
        return;
    }
    OVGetLastError(NULL, text, &size);
    fprintf(stderr, "%s failed (%d): %s\n", what, status, text);
    OVCloseLib();
    exit(1);
}

// The first virtual camera, so that no example takes a camera that others work with.
#define VIRTUAL_CAMERA "VC000001"

// Opens the camera of a serial number, the virtual one without it.
static inline OV_DEV_HANDLE OpenCamera(const char* serial) {
    const OV_OPEN_PARAM param = {serial ? serial : VIRTUAL_CAMERA, OV_OPEN_SN, OV_ACCESS_EXCLUSIVE};
    uint32_t count = 0;
    OV_DEV_HANDLE camera = NULL;
    Check(OVInitLib(), "OVInitLib");
    Check(OVUpdateDeviceList(&count, 1000), "OVUpdateDeviceList");
    if (count == 0) {
        fprintf(stderr, "no camera was found\n");
        OVCloseLib();
        exit(1);
    }
    Check(OVOpenDevice(&param, &camera), "OVOpenDevice");
    return camera;
}

// Sets an enumeration by the name of an entry: cameras differ in their numbers.
static inline void Choose(OV_DEV_HANDLE camera, OV_FEATURE_ID feature, const char* name) {
    OV_ENUM_DESCRIPTION entries[64];
    size_t size = sizeof entries;
    Check(OVGetEnumDescription(camera, feature, entries, &size), "OVGetEnumDescription");
    for (size_t i = 0; i < size / sizeof entries[0]; ++i) {
        if (strncmp(entries[i].szSymbolic, name, sizeof entries[i].szSymbolic) == 0) {
            Check(OVSetEnum(camera, feature, entries[i].nValue), name);
            return;
        }
    }
    fprintf(stderr, "the camera has no \"%s\"\n", name);
    OVCloseLib();
    exit(1);
}

#endif
