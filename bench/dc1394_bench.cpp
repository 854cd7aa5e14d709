// The same work done by libdc1394, if it is installed, for comparison in image_bench.

#include "image_row.h"

// Included last because it defines a macro with the name of a common word.
#include <dc1394/conversions.h>

namespace ImageBench {

namespace {

template <dc1394bayer_method_t Method>
void Demosaic8(const uint8_t* src, uint8_t* dst, int width, int height) {
    dc1394_bayer_decoding_8bit(src, dst, static_cast<uint32_t>(width),
                               static_cast<uint32_t>(height), DC1394_COLOR_FILTER_RGGB, Method);
}

template <dc1394bayer_method_t Method>
void Demosaic16(const uint8_t* src, uint8_t* dst, int width, int height) {
    constexpr uint32_t kBits = 16;
    dc1394_bayer_decoding_16bit(static_cast<const uint16_t*>(static_cast<const void*>(src)),
                                static_cast<uint16_t*>(static_cast<void*>(dst)),
                                static_cast<uint32_t>(width), static_cast<uint32_t>(height),
                                DC1394_COLOR_FILTER_RGGB, Method, kBits);
}

}  // namespace

std::vector<Rival> Dc1394Rivals() {
    return {
        {"libdc1394, simple", Kind::Cells, Demosaic8<DC1394_BAYER_METHOD_SIMPLE>},
        {"libdc1394, bilinear", Kind::Bilinear, Demosaic8<DC1394_BAYER_METHOD_BILINEAR>},
        {"libdc1394, edge sense", Kind::EdgeAware, Demosaic8<DC1394_BAYER_METHOD_EDGESENSE>},
        {"libdc1394, bilinear", Kind::Bilinear16, Demosaic16<DC1394_BAYER_METHOD_BILINEAR>},
        {"libdc1394, edge sense", Kind::EdgeAware16, Demosaic16<DC1394_BAYER_METHOD_EDGESENSE>},
    };
}

}  // namespace ImageBench
