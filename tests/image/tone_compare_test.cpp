// The library's adjustments of images against the plain ones, byte for byte.

#include "Bytes.h"
#include "QyImageProc.h"
#include "ToneReference.h"
#include "filter/Sharpen.h"

namespace {

using Bytes = std::vector<uint8_t>;

void ExpectSameTone(size_t count, int factor, Content content, size_t offset) {
    const Bytes source = MakeBytes(count, content);
    const auto size = static_cast<int32_t>(count);
    SCOPED_TRACE(testing::Message() << count << " bytes, factor " << factor);
    ExpectSameOnAll(
        [&](const void* src, void* dst) { return QyBrightness(src, dst, size, factor); }, source,
        ToneReference::ThroughTable(source, ToneReference::Lightness(factor, 8)), offset);
    ExpectSameOnAll([&](const void* src, void* dst) { return QyContrast(src, dst, size, factor); },
                    source, ToneReference::ThroughTable(source, ToneReference::Contrast(factor, 8)),
                    offset);
}

void ExpectSameSaturation(size_t pixels, int factor, Content content, size_t offset) {
    const Bytes source = MakeBytes(3 * pixels, content);
    SCOPED_TRACE(testing::Message() << pixels << " pixels, factor " << factor);
    ExpectSameOnAll(
        [&](const void* src, void* dst) {
            return QySaturation(src, dst, static_cast<int32_t>(pixels), factor);
        },
        source, ToneReference::Saturate(source, factor), offset);
}

/// A frame to be sharpened.
struct Sharpened {
    int width;
    int height;
    float factor = 1.5F;
    Content content = Content::Random;
    size_t offset = 0;

    Bytes Source(int channels) const {
        const BayerReference::Raw raw = MakeRaw(width * channels, height, content, 255);
        return {raw.samples.begin(), raw.samples.end()};
    }
};

void ExpectSameSharpness(const Sharpened& frame) {
    SCOPED_TRACE(testing::Message()
                 << frame.width << " x " << frame.height << ", factor " << frame.factor);
    for (const int channels : {1, 3}) {
        const Bytes source = frame.Source(channels);
        const ToneReference::Sharpening reference(source, frame.width, frame.height, channels,
                                                  frame.factor);
        const auto call = [&](const void* src, void* dst) {
            if (channels == 3) {
                return QySharpen24B(src, dst, frame.width, frame.height, frame.factor);
            }
            QySharpen::OneByte(static_cast<const uint8_t*>(src), static_cast<uint8_t*>(dst),
                               static_cast<size_t>(frame.width), static_cast<size_t>(frame.height),
                               frame.factor);
            return QY_STATUS{QY_OK};
        };
        ExpectSameOnAll(call, source, reference.Run(), frame.offset);
    }
}

TEST(ToneInstructionSets, MapEveryCountUpToSomeVectors) {
    for (size_t count = 1; count <= 200; ++count) {
        ExpectSameTone(count, 37, Content::Random, count % 3);
    }
}

TEST(ToneInstructionSets, MapEveryByteByEveryTable) {
    for (int factor = -50; factor <= 100; factor += 3) {
        ExpectSameTone(256, factor, Content::Ramp, 0);
    }
}

TEST(ToneInstructionSets, BrightenByEveryFactor) {
    const Bytes source = MakeBytes(256, Content::Ramp);
    for (int factor = -150; factor <= 150; ++factor) {
        SCOPED_TRACE(factor);
        ExpectSameOnAll(
            [&](const void* src, void* dst) { return QyBrightness(src, dst, 256, factor); }, source,
            ToneReference::ThroughTable(source, ToneReference::Lightness(factor, 8)), 0);
    }
}

TEST(ToneInstructionSets, MapStructuredFrames) {
    for (const Content content : kContents) {
        ExpectSameTone(301, 81, content, 1);
    }
}

TEST(ToneInstructionSets, SaturateEveryCountUpToSomeVectors) {
    for (size_t pixels = 1; pixels <= 200; ++pixels) {
        ExpectSameSaturation(pixels, 100, Content::Random, pixels % 3);
        ExpectSameSaturation(pixels, 0, Content::Random, pixels % 3);
    }
}

TEST(ToneInstructionSets, SaturateByEveryFactor) {
    for (int factor = 0; factor <= 128; ++factor) {
        for (const Content content : kContents) {
            ExpectSameSaturation(201, factor, content, 0);
        }
    }
}

TEST(ToneInstructionSets, SharpenEveryWidthUpToSomeVectors) {
    for (int width = 1; width <= 140; ++width) {
        ExpectSameSharpness({.width = width, .height = 6});
    }
}

TEST(ToneInstructionSets, SharpenEveryHeightFromTheSmallest) {
    for (int height = 1; height <= 20; ++height) {
        ExpectSameSharpness({.width = 21, .height = height});
    }
}

TEST(ToneInstructionSets, SharpenByManyFactors) {
    for (const float factor : {0.1F, 0.15F, 0.95F, 1.0F, 1.05F, 2.35F, 4.95F, 4.999F, 5.0F}) {
        for (const Content content : kContents) {
            ExpectSameSharpness({.width = 75, .height = 12, .factor = factor, .content = content});
        }
    }
}

TEST(ToneInstructionSets, MapAndSaturateAtAnyAddress) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectSameTone(220, 50, Content::Random, offset);
        ExpectSameSaturation(75, 128, Content::Random, offset);
    }
}

TEST(ToneInstructionSets, SharpenAtAnyAddress) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectSameSharpness({.width = 70, .height = 8, .offset = offset});
    }
}

}  // namespace
