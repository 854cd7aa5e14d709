/* The header as a program in C sees it. */
#include "QyImageProc.h"

int InterpolateInC(const unsigned char* raw, unsigned char* rgb);

int InterpolateInC(const unsigned char* raw, unsigned char* rgb) {
    QyRawImgRecord record = {0};
    QyMonoImgRecord mono = {0};
    (void)record;
    (void)mono;
    return QyRaw8toRGB24(raw, rgb, 4, 4, QY_RAW2RGB_NEIGHBOUR, QY_BAYER_RG, 0);
}
