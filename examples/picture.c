// Takes one frame of a colour sensor and writes it as picture.png: repaired, interpolated
// and white-balanced by the image functions.
#include <png.h>

#include "QyImageProc.h"
#include "example.h"

// BayerRG8, as the pixel format naming convention numbers it.
enum { kBayerRG8 = 0x01080009 };

static void CheckImage(QY_STATUS status, const char* what) {
    if (status != QY_OK) {
        fprintf(stderr, "%s failed (%d)\n", what, status);
        OVCloseLib();
        exit(1);
    }
}

static void Balance(uint8_t* pixels, int32_t width, int32_t height) {
    double ratio[3];
    CheckImage(QyGetWhiteBalanceRatio(pixels, width, height, &ratio[0], &ratio[1], &ratio[2]),
               "QyGetWhiteBalanceRatio");
    for (size_t i = 0; i < (size_t)width * (size_t)height * 3; ++i) {
        const double value = pixels[i] * ratio[i % 3];
        pixels[i] = value > 255 ? 255 : (uint8_t)value;
    }
}

static int WritePng(const char* path, const void* pixels, int32_t width, int32_t height) {
    png_image image = {.version = PNG_IMAGE_VERSION, .format = PNG_FORMAT_RGB};
    image.width = (png_uint_32)width;
    image.height = (png_uint_32)height;
    return png_image_write_to_file(&image, path, 0, pixels, 0, NULL);
}

int main(int argc, char** argv) {
    OV_DEV_HANDLE camera = OpenCamera(argc > 1 ? argv[1] : NULL);
    OV_FRAME_DATA frame = {0};
    int64_t size = 0;
    Choose(camera, OV_FEATURE_PixelFormat, "BayerRG8");
    Check(OVGetInt(camera, OV_FEATURE_PayloadSize, &size), "PayloadSize");
    frame.pImgBuf = malloc((size_t)size);
    if (frame.pImgBuf == NULL) {
        fprintf(stderr, "there is no memory for a frame\n");
        return 1;
    }
    Check(OVStreamOn(camera), "OVStreamOn");
    Check(OVGetImage(camera, &frame, 10000), "OVGetImage");
    Check(OVStreamOff(camera), "OVStreamOff");
    Check(OVCloseLib(), "OVCloseLib");
    if (frame.nStatus != OV_FRAME_STATUS_SUCCESS || frame.nPixelFormat != kBayerRG8) {
        fprintf(stderr, "the frame isn't complete\n");
        return 1;
    }

    const int32_t width = frame.nWidth;
    const int32_t height = frame.nHeight;
    uint8_t* const pixels = malloc((size_t)width * (size_t)height * 3);
    if (pixels == NULL) {
        fprintf(stderr, "there is no memory for a picture\n");
        return 1;
    }
    CheckImage(QyAutoRawDefectivePixelCorrect(frame.pImgBuf, width, height, 8),
               "QyAutoRawDefectivePixelCorrect");
    CheckImage(QyRaw8toRGB24(frame.pImgBuf, pixels, (uint32_t)width, (uint32_t)height,
                             QY_RAW2RGB_ADAPTIVE, QY_BAYER_RG, 0),
               "QyRaw8toRGB24");
    Balance(pixels, width, height);
    if (!WritePng("picture.png", pixels, width, height)) {
        fprintf(stderr, "can't write picture.png\n");
        return 1;
    }
    printf("picture.png: %d x %d\n", width, height);
    free(pixels);
    free(frame.pImgBuf);
    return 0;
}
