// Writes a file into a camera, reads it back and deletes it.
#include "OvINodes.h"
#include "example.h"

int main(int argc, char** argv) {
    static const char kContent[] = "Kept by the camera";
    OV_DEV_HANDLE camera = OpenCamera(argc > 1 ? argv[1] : NULL);
    uint8_t content[256];
    // More than the file has: the size then says where it ends.
    size_t size = sizeof content;
    Check(OvNodeWriteFile(camera, "UserFile", (const uint8_t*)kContent, sizeof kContent - 1),
          "OvNodeWriteFile");
    Check(OvNodeReadFile(camera, "UserFile", 0, content, &size), "OvNodeReadFile");
    printf("UserFile has %zu bytes: %.*s\n", size, (int)size, (const char*)content);
    Check(OvNodeDeleteFile(camera, "UserFile"), "OvNodeDeleteFile");
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
