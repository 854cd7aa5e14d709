// Receives frames on the library's thread while the program waits for ten of them.
#include <semaphore.h>

#include "example.h"

// The frame is valid until the function returns. What takes long belongs on another
// thread: meanwhile the camera runs out of buffers.
static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
    if (frame->status == OV_FRAME_STATUS_SUCCESS) {
        sem_post((sem_t*)frame->pUserParam);
    }
}

int main(int argc, char** argv) {
    OV_DEV_HANDLE camera = OpenCamera(argc > 1 ? argv[1] : NULL);
    sem_t complete;
    sem_init(&complete, 0, 0);
    Check(OVRegisterCaptureCallback(camera, &complete, OnFrame), "OVRegisterCaptureCallback");
    Check(OVStreamOn(camera), "OVStreamOn");
    for (int i = 0; i < 10; ++i) {
        sem_wait(&complete);
    }
    Check(OVStreamOff(camera), "OVStreamOff");
    printf("10 complete frames\n");
    // No callback runs after the camera is closed.
    Check(OVCloseLib(), "OVCloseLib");
    sem_destroy(&complete);
    return 0;
}
