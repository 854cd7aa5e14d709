#include "pipeline/PixelFormat.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "support/Error.h"

namespace {

using Code = GenTL::PixelFormatCode;

constexpr Code kNoCode{};

constexpr std::array kFormats{
    PixelFormat{Code::Mono8, "Mono8", QY_FILTER_NONE, 8},
    PixelFormat{Code::Mono10, "Mono10", QY_FILTER_NONE, 10},
    PixelFormat{kNoCode, "Mono10c3a32", QY_FILTER_NONE, 10, Packing::ThreeInWord},
    PixelFormat{Code::Mono12, "Mono12", QY_FILTER_NONE, 12},
    PixelFormat{Code::Mono12p, "Mono12p", QY_FILTER_NONE, 12, Packing::TwoInThree},
    PixelFormat{Code::Mono16, "Mono16", QY_FILTER_NONE, 16},
    PixelFormat{Code::BayerGR8, "BayerGR8", QY_BAYER_GR, 8},
    PixelFormat{Code::BayerRG8, "BayerRG8", QY_BAYER_RG, 8},
    PixelFormat{Code::BayerGB8, "BayerGB8", QY_BAYER_GB, 8},
    PixelFormat{Code::BayerBG8, "BayerBG8", QY_BAYER_BG, 8},
    PixelFormat{Code::BayerGR10, "BayerGR10", QY_BAYER_GR, 10},
    PixelFormat{Code::BayerRG10, "BayerRG10", QY_BAYER_RG, 10},
    PixelFormat{Code::BayerGB10, "BayerGB10", QY_BAYER_GB, 10},
    PixelFormat{Code::BayerBG10, "BayerBG10", QY_BAYER_BG, 10},
    PixelFormat{kNoCode, "BayerGR10c3a32", QY_BAYER_GR, 10, Packing::ThreeInWord},
    PixelFormat{kNoCode, "BayerRG10c3a32", QY_BAYER_RG, 10, Packing::ThreeInWord},
    PixelFormat{kNoCode, "BayerGB10c3a32", QY_BAYER_GB, 10, Packing::ThreeInWord},
    PixelFormat{kNoCode, "BayerBG10c3a32", QY_BAYER_BG, 10, Packing::ThreeInWord},
    PixelFormat{Code::BayerGR12, "BayerGR12", QY_BAYER_GR, 12},
    PixelFormat{Code::BayerRG12, "BayerRG12", QY_BAYER_RG, 12},
    PixelFormat{Code::BayerGB12, "BayerGB12", QY_BAYER_GB, 12},
    PixelFormat{Code::BayerBG12, "BayerBG12", QY_BAYER_BG, 12},
    PixelFormat{Code::BayerGR12p, "BayerGR12p", QY_BAYER_GR, 12, Packing::TwoInThree},
    PixelFormat{Code::BayerRG12p, "BayerRG12p", QY_BAYER_RG, 12, Packing::TwoInThree},
    PixelFormat{Code::BayerGB12p, "BayerGB12p", QY_BAYER_GB, 12, Packing::TwoInThree},
    PixelFormat{Code::BayerBG12p, "BayerBG12p", QY_BAYER_BG, 12, Packing::TwoInThree},
    PixelFormat{Code::BayerGR16, "BayerGR16", QY_BAYER_GR, 16},
    PixelFormat{Code::BayerRG16, "BayerRG16", QY_BAYER_RG, 16},
    PixelFormat{Code::BayerGB16, "BayerGB16", QY_BAYER_GB, 16},
    PixelFormat{Code::BayerBG16, "BayerBG16", QY_BAYER_BG, 16},
    PixelFormat{Code::RGB8, "RGB8", QY_FILTER_NONE, 8, Packing::None, 3},
    PixelFormat{Code::BGR8, "BGR8", QY_FILTER_NONE, 8, Packing::None, 3, QY_ORDER_BGR},
    PixelFormat{Code::RGBa8, "RGBa8", QY_FILTER_NONE, 8, Packing::None, 4},
    PixelFormat{Code::RGB10, "RGB10", QY_FILTER_NONE, 10, Packing::None, 3},
    PixelFormat{Code::RGB12, "RGB12", QY_FILTER_NONE, 12, Packing::None, 3},
    PixelFormat{Code::RGB16, "RGB16", QY_FILTER_NONE, 16, Packing::None, 3},
};

template <class Condition>
const PixelFormat* FindIf(Condition condition) {
    const auto* const found = std::find_if(kFormats.begin(), kFormats.end(), condition);
    return found == kFormats.end() ? nullptr : found;
}

/// The number that a text is as a whole, else 0.
uint32_t CodeFrom(const std::string& text) {
    char* end = nullptr;
    const unsigned long long code = std::strtoull(text.c_str(), &end, 0);
    return end == text.c_str() + text.size() && code <= UINT32_MAX ? static_cast<uint32_t>(code)
                                                                   : 0;
}

std::string AllNames() {
    std::string names;
    for (const PixelFormat& format : kFormats) {
        names.append(names.empty() ? "" : " ").append(format.name);
    }
    return names;
}

}  // namespace

size_t PixelFormat::Bytes(size_t width, size_t height) const {
    const size_t samples = width * height * static_cast<size_t>(channels);
    switch (packing) {
        case Packing::TwoInThree:
            return (samples * 3 + 1) / 2;
        case Packing::ThreeInWord:
            return (samples + 2) / 3 * 4;
        default:
            return bits > 8 ? samples * 2 : samples;
    }
}

const PixelFormat* FindPixelFormat(uint32_t code) {
    const auto wanted = static_cast<Code>(code);
    return wanted == kNoCode
               ? nullptr
               : FindIf([wanted](const PixelFormat& format) { return format.code == wanted; });
}

const PixelFormat& RequirePixelFormat(const std::string& nameOrCode) {
    const PixelFormat* found =
        FindIf([&nameOrCode](const PixelFormat& format) { return nameOrCode == format.name; });
    if (found == nullptr) {
        found = FindPixelFormat(CodeFrom(nameOrCode));
    }
    if (found == nullptr) {
        throw UsageError("there is no pixel format '" + nameOrCode + "'; these are known:\n" +
                         AllNames());
    }
    return *found;
}
