// Functions that the interface declares and this version doesn't serve yet.

#include "QyImageProc.h"

QY_STATUS QyRaw12PackedToRaw16(const void* /*src*/, void* /*dst*/, int32_t /*width*/,
                               int32_t /*height*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyRaw10PackedToRaw16(const void* /*src*/, void* /*dst*/, int32_t /*width*/,
                               int32_t /*height*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyRaw16toRaw8(const void* /*src*/, void* /*dst*/, int32_t /*width*/, int32_t /*height*/,
                        QyValidBit /*validBit*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyRGB48toRGB24(const void* /*src*/, void* /*dst*/, int32_t /*width*/, int32_t /*height*/,
                         QyValidBit /*validBit*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyGetGammatLut(uint32_t* /*lut*/, int32_t* /*size*/, double /*gamma*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyGetContrastLut(int32_t /*contrast*/, uint32_t* /*lut*/, int32_t* /*size*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyGetLut(int32_t /*contrast*/, int32_t /*lightness*/, uint8_t* /*lut*/,
                   uint16_t* /*size*/, double /*gamma*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyBrightness(const void* /*src*/, void* /*dst*/, int32_t /*count*/, int32_t /*factor*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyContrast(const void* /*src*/, void* /*dst*/, int32_t /*count*/, int32_t /*factor*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QySaturation(const void* /*src*/, void* /*dst*/, int32_t /*pixelCount*/,
                       int32_t /*factor*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QySharpen24B(const void* /*src*/, void* /*dst*/, int32_t /*width*/, int32_t /*height*/,
                       float /*factor*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyImageImprovment(const void* /*src*/, void* /*dst*/, int32_t /*width*/,
                            int32_t /*height*/, const QyColorCorrectionRecord* /*colorRecord*/,
                            const uint32_t* /*contrastLut*/, const uint32_t* /*gammaLut*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyImageImprovmentEx(const void* /*src*/, void* /*dst*/, int32_t /*width*/,
                              int32_t /*height*/, const QyColorCorrectionRecord* /*colorRecord*/,
                              const uint32_t* /*contrastLut*/, const uint32_t* /*gammaLut*/,
                              QyChannelOrder /*order*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyARGBImageImprovment(const void* /*src*/, void* /*dst*/, int32_t /*width*/,
                                int32_t /*height*/, const QyColorCorrectionRecord* /*colorRecord*/,
                                const uint32_t* /*contrastLut*/, const uint32_t* /*gammaLut*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyRaw8ImgProcess(void* /*src*/, void* /*dst*/, int32_t /*width*/, int32_t /*height*/,
                           const QyRawImgRecord* /*record*/) {
    return QY_NOT_SUPPORTED;
}

QY_STATUS QyMono8ImgProcess(void* /*src*/, void* /*dst*/, int32_t /*width*/, int32_t /*height*/,
                            const QyMonoImgRecord* /*record*/) {
    return QY_NOT_SUPPORTED;
}
