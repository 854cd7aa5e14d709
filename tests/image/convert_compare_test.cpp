// The library's conversion of raw formats against the plain one, byte for byte.

#include "Bytes.h"
#include "ConvertReference.h"
#include "QyImageProc.h"

namespace {

using Bytes = std::vector<uint8_t>;

Bytes ToBytes(const std::vector<uint16_t>& words) {
    Bytes bytes(words.size() * sizeof(uint16_t));
    std::memcpy(bytes.data(), words.data(), bytes.size());
    return bytes;
}

void ExpectSame12(int width, int height, Content content, size_t offset) {
    const size_t samples = static_cast<size_t>(width) * static_cast<size_t>(height);
    const Bytes packed = MakeBytes(samples / 2 * 3, content);
    Bytes expected = ToBytes(ConvertReference::Unpack12(packed, samples));
    if (samples % 2 != 0) {
        expected.insert(expected.end(), 2, kGuard);
    }
    const auto call = [&](const void* src, void* dst) {
        return QyRaw12PackedToRaw16(src, dst, width, height);
    };
    EXPECT_EQ(CompareBytes(call, packed, expected, offset), "") << width << " x " << height;
}

void ExpectSame10(int width, int height, Content content, size_t offset) {
    const size_t samples = static_cast<size_t>(width) * static_cast<size_t>(height);
    const Bytes packed = MakeBytes((samples + 2) / 3 * 4, content);
    const Bytes expected = ToBytes(ConvertReference::Unpack10(packed, samples));
    const auto call = [&](const void* src, void* dst) {
        return QyRaw10PackedToRaw16(src, dst, width, height);
    };
    EXPECT_EQ(CompareBytes(call, packed, expected, offset), "") << width << " x " << height;
}

/// Both functions that reduce words to bytes, in place and not.
void ExpectSameReduced(int width, int height, int validBit, Content content, size_t offset) {
    for (const bool isColour : {false, true}) {
        const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
        const Bytes source = MakeBytes(pixels * (isColour ? 6 : 2), content);
        Bytes expected;
        for (size_t i = 0; i < source.size(); i += 2) {
            const int sample = source[i] | source[i + 1] << 8;
            expected.push_back(ConvertReference::Reduce(static_cast<uint16_t>(sample), validBit));
        }
        const auto call = [&](const void* src, void* dst) {
            return isColour ? QyRGB48toRGB24(src, dst, width, height, validBit)
                            : QyRaw16toRaw8(src, dst, width, height, validBit);
        };
        SCOPED_TRACE(testing::Message() << width << " x " << height << " from bit " << validBit);
        ExpectSameOnAll(call, source, expected, offset);
    }
}

TEST(ConvertInstructionSets, UnpackEveryWidthUpToSomeVectors) {
    WithEachInstructionSet([] {
        for (int width = 2; width <= 400; ++width) {
            ExpectSame12(width, 1, Content::Random, 0);
            ExpectSame10(width, 1, Content::Random, 0);
        }
    });
}

TEST(ConvertInstructionSets, UnpackStructuredFrames) {
    WithEachInstructionSet([] {
        for (const Content content : kContents) {
            ExpectSame12(77, 9, content, 0);
            ExpectSame10(77, 9, content, 0);
        }
    });
}

TEST(ConvertInstructionSets, UnpackAtAnyAddress) {
    WithEachInstructionSet([] {
        for (size_t offset = 0; offset < kAddresses; ++offset) {
            ExpectSame12(150, 3, Content::Random, offset);
            ExpectSame10(151, 3, Content::Random, offset);
        }
    });
}

TEST(ConvertInstructionSets, ReduceEveryWidthUpToSomeVectors) {
    for (int width = 1; width <= 140; ++width) {
        ExpectSameReduced(width, 1, width % 5, Content::Random, 0);
    }
}

TEST(ConvertInstructionSets, ReduceEveryChoiceOfBitsAtAnyAddress) {
    for (int validBit = QY_BIT_0_7; validBit <= QY_BIT_4_11; ++validBit) {
        for (size_t offset = 0; offset < kAddresses; ++offset) {
            ExpectSameReduced(67, 3, validBit, Content::Random, offset);
        }
        for (const Content content : kContents) {
            ExpectSameReduced(67, 3, validBit, content, 0);
        }
    }
}

TEST(ConvertInstructionSets, ReduceEverySample) {
    constexpr int kSamples = 65536;
    std::vector<uint16_t> words(kSamples);
    for (size_t i = 0; i < words.size(); ++i) {
        words[i] = static_cast<uint16_t>(i);
    }
    WithEachInstructionSet([&] {
        for (int validBit = QY_BIT_0_7; validBit <= QY_BIT_4_11; ++validBit) {
            Bytes reduced(kSamples);
            CountCase();
            ASSERT_EQ(QyRaw16toRaw8(words.data(), reduced.data(), kSamples, 1, validBit), QY_OK);
            for (size_t i = 0; i < words.size(); ++i) {
                ASSERT_EQ(reduced[i], ConvertReference::Reduce(words[i], validBit)) << i;
            }
        }
    });
}

}  // namespace
