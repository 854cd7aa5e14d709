// A process that has nothing but the C library loads another library, and prints what that took.
// Usage: library_probe load FILE      nanoseconds of CPU time
//        library_probe memory FILE    kilobytes that are resident then
//        library_probe camera FILE    kilobytes that are resident with one camera open, which
//                                     FILE must have functions for

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include "OvIAPI.h"

static double CpuNanoseconds(void) {
    struct timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return (double)time.tv_sec * 1e9 + (double)time.tv_nsec;
}

static double ResidentKilobytes(void) {
    char text[128] = "";
    FILE* const file = fopen("/proc/self/statm", "r");
    if (file == NULL || fgets(text, sizeof text, file) == NULL) {
        exit(1);
    }
    fclose(file);
    // The first number is that of all pages.
    char* second = text;
    strtoul(text, &second, 10);
    return (double)strtoul(second, NULL, 10) * (double)sysconf(_SC_PAGESIZE) / 1024;
}

static void Check(OV_STATUS status, const char* what) {
    if (status != OV_STATUS_SUCCESS) {
        fprintf(stderr, "library_probe: %s: status %d\n", what, (int)status);
        exit(1);
    }
}

static void* Find(void* library, const char* name) {
    void* const function = dlsym(library, name);
    if (function == NULL) {
        fprintf(stderr, "library_probe: %s\n", dlerror());
        exit(1);
    }
    return function;
}

static void OpenCamera(void* library) {
    uint32_t count = 0;
    OV_DEV_HANDLE camera = NULL;
    const OV_OPEN_PARAM param = {"VC000001", OV_OPEN_SN, OV_ACCESS_CONTROL};
    union {
        void* address;
        OV_STATUS (*init)(void);
        OV_STATUS (*update)(uint32_t*, uint32_t);
        OV_STATUS (*open)(const OV_OPEN_PARAM*, OV_DEV_HANDLE*);
    } function;
    function.address = Find(library, "OVInitLib");
    Check(function.init(), "OVInitLib");
    function.address = Find(library, "OVUpdateDeviceList");
    Check(function.update(&count, 1000), "OVUpdateDeviceList");
    function.address = Find(library, "OVOpenDevice");
    Check(function.open(&param, &camera), "OVOpenDevice");
}

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: library_probe load|memory|camera FILE\n");
        return 2;
    }
    const double begin = CpuNanoseconds();
    void* const library = dlopen(argv[2], RTLD_NOW);
    const double taken = CpuNanoseconds() - begin;
    if (library == NULL) {
        fprintf(stderr, "library_probe: %s\n", dlerror());
        return 1;
    }
    if (strcmp(argv[1], "camera") == 0) {
        OpenCamera(library);
    }
    printf("%.0f\n", strcmp(argv[1], "load") == 0 ? taken : ResidentKilobytes());
    return 0;
}
