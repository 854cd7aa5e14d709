#include "pipeline/PixelFormat.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "support/Error.h"

namespace {

constexpr std::array kFormats{
    PixelFormat{0x01080001, "Mono8", QY_FILTER_NONE, 8},
    PixelFormat{0x01100003, "Mono10", QY_FILTER_NONE, 10},
    PixelFormat{0x00000000, "Mono10c3a32", QY_FILTER_NONE, 10, Packing::ThreeInWord},
    PixelFormat{0x01100005, "Mono12", QY_FILTER_NONE, 12},
    PixelFormat{0x010C0047, "Mono12p", QY_FILTER_NONE, 12, Packing::TwoInThree},
    PixelFormat{0x01100007, "Mono16", QY_FILTER_NONE, 16},
    PixelFormat{0x01080008, "BayerGR8", QY_BAYER_GR, 8},
    PixelFormat{0x01080009, "BayerRG8", QY_BAYER_RG, 8},
    PixelFormat{0x0108000A, "BayerGB8", QY_BAYER_GB, 8},
    PixelFormat{0x0108000B, "BayerBG8", QY_BAYER_BG, 8},
    PixelFormat{0x0110000C, "BayerGR10", QY_BAYER_GR, 10},
    PixelFormat{0x0110000D, "BayerRG10", QY_BAYER_RG, 10},
    PixelFormat{0x0110000E, "BayerGB10", QY_BAYER_GB, 10},
    PixelFormat{0x0110000F, "BayerBG10", QY_BAYER_BG, 10},
    PixelFormat{0x00000000, "BayerGR10c3a32", QY_BAYER_GR, 10, Packing::ThreeInWord},
    PixelFormat{0x00000000, "BayerRG10c3a32", QY_BAYER_RG, 10, Packing::ThreeInWord},
    PixelFormat{0x00000000, "BayerGB10c3a32", QY_BAYER_GB, 10, Packing::ThreeInWord},
    PixelFormat{0x00000000, "BayerBG10c3a32", QY_BAYER_BG, 10, Packing::ThreeInWord},
    PixelFormat{0x01100010, "BayerGR12", QY_BAYER_GR, 12},
    PixelFormat{0x01100011, "BayerRG12", QY_BAYER_RG, 12},
    PixelFormat{0x01100012, "BayerGB12", QY_BAYER_GB, 12},
    PixelFormat{0x01100013, "BayerBG12", QY_BAYER_BG, 12},
    PixelFormat{0x010C0057, "BayerGR12p", QY_BAYER_GR, 12, Packing::TwoInThree},
    PixelFormat{0x010C0059, "BayerRG12p", QY_BAYER_RG, 12, Packing::TwoInThree},
    PixelFormat{0x010C0055, "BayerGB12p", QY_BAYER_GB, 12, Packing::TwoInThree},
    PixelFormat{0x010C0053, "BayerBG12p", QY_BAYER_BG, 12, Packing::TwoInThree},
    PixelFormat{0x0110002E, "BayerGR16", QY_BAYER_GR, 16},
    PixelFormat{0x0110002F, "BayerRG16", QY_BAYER_RG, 16},
    PixelFormat{0x01100030, "BayerGB16", QY_BAYER_GB, 16},
    PixelFormat{0x01100031, "BayerBG16", QY_BAYER_BG, 16},
    PixelFormat{0x02180014, "RGB8", QY_FILTER_NONE, 8, Packing::None, 3},
    PixelFormat{0x02180015, "BGR8", QY_FILTER_NONE, 8, Packing::None, 3, QY_ORDER_BGR},
    PixelFormat{0x02200016, "RGBa8", QY_FILTER_NONE, 8, Packing::None, 4},
    PixelFormat{0x02300018, "RGB10", QY_FILTER_NONE, 10, Packing::None, 3},
    PixelFormat{0x0230001A, "RGB12", QY_FILTER_NONE, 12, Packing::None, 3},
    PixelFormat{0x02300033, "RGB16", QY_FILTER_NONE, 16, Packing::None, 3},
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

std::span<const PixelFormat> PixelFormats() {
    return kFormats;
}

const PixelFormat* FindPixelFormat(uint32_t code) {
    return code == 0 ? nullptr
                     : FindIf([code](const PixelFormat& format) { return format.code == code; });
}

const PixelFormat& RequirePixelFormat(const std::string& nameOrCode) {
    const PixelFormat* found =
        FindIf([&nameOrCode](const PixelFormat& format) { return nameOrCode == format.name; });
    if (found == nullptr) {
        found = FindPixelFormat(CodeFrom(nameOrCode));
    }
    if (found == nullptr) {
        throw ToolError("there is no pixel format '" + nameOrCode + "'; these are known:\n" +
                        AllNames());
    }
    return *found;
}
