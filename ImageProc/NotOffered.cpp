// Functions that the interface declares and this version doesn't serve yet.

#include "QyImageProc.h"

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
