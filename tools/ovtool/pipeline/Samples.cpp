#include "pipeline/Samples.h"

#include <cstring>
#include <string>

#include "support/Error.h"

namespace {

size_t PixelsOf(const RawFrame& frame) {
    return static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height);
}

/// The frame's own bytes, without what may lie behind them.
std::vector<uint8_t> OwnBytes(const RawFrame& frame, const PixelFormat& format) {
    const size_t size =
        format.Bytes(static_cast<size_t>(frame.width), static_cast<size_t>(frame.height));
    if (frame.bytes.size() < size) {
        throw ToolError("the frame holds fewer bytes than its size asks for");
    }
    return {frame.bytes.begin(), frame.bytes.begin() + static_cast<ptrdiff_t>(size)};
}

std::vector<uint8_t> Unpack(const RawFrame& frame, const PixelFormat& format) {
    std::vector<uint8_t> packed = OwnBytes(frame, format);
    if (format.packing == Packing::None) {
        return packed;
    }
    const size_t samples = PixelsOf(frame);
    const bool pairs = format.packing == Packing::TwoInThree;
    if (pairs && samples % 2 != 0) {
        throw ToolError(std::string(format.name) + " holds pairs of samples; " +
                        std::to_string(frame.width) + "x" + std::to_string(frame.height) +
                        " is an odd number of them");
    }
    // One word is read behind the samples of ten bits.
    packed.resize(packed.size() + sizeof(uint32_t));
    std::vector<uint8_t> words(samples * sizeof(uint16_t));
    const auto unpack = pairs ? QyRaw12PackedToRaw16 : QyRaw10PackedToRaw16;
    CheckImage(unpack(packed.data(), words.data(), frame.width, frame.height),
               "unpack the samples");
    return words;
}

}  // namespace

std::vector<uint8_t> MakeSamples(const RawFrame& frame, const PixelFormat& format,
                                 const PipelinePlan& plan, bool repair) {
    std::vector<uint8_t> samples = Unpack(frame, format);
    if (repair) {
        CheckImage(
            QyAutoRawDefectivePixelCorrect(samples.data(), frame.width, frame.height, format.bits),
            "repair defects");
    }
    if (format.bits == 8 || plan.keepsWords) {
        return samples;
    }
    std::vector<uint8_t> bytes(samples.size() / sizeof(uint16_t));
    const auto reduce = format.channels == 3 ? QyRGB48toRGB24 : QyRaw16toRaw8;
    CheckImage(reduce(samples.data(), bytes.data(), frame.width, frame.height, plan.validBit),
               "keep eight bits");
    return bytes;
}

void StretchTo16Bits(std::vector<uint8_t>& words, int bits) {
    for (size_t at = 0; at + 1 < words.size(); at += 2) {
        uint16_t word = 0;
        std::memcpy(&word, &words[at], sizeof(word));
        word = static_cast<uint16_t>(word << (16 - bits));
        std::memcpy(&words[at], &word, sizeof(word));
    }
}
