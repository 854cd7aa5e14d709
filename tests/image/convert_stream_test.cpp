// Samples converted past the caches, beside the same ones by the plain conversion.

#include <limits>

#include "Bytes.h"
#include "ConvertReference.h"
#include "QyImageProc.h"
#include "convert/ConvertVector.h"

namespace {

using QyConvert::Word;
using QyWriting::Machine;

/// Writes past the caches, whatever the size of the picture.
constexpr Machine kPastCaches = {0, 0, nullptr};

/// Compares what a conversion writes with the words that it shall give.
template <class Unpack>
void ExpectWords(const std::vector<uint8_t>& packed, const std::vector<uint16_t>& words,
                 size_t offset, const Unpack& unpack) {
    std::vector<uint8_t> expected(words.size() * sizeof(uint16_t));
    std::memcpy(expected.data(), words.data(), expected.size());
    const auto call = [&](const void* src, void* dst) {
        unpack(static_cast<const uint8_t*>(src), static_cast<Word*>(dst));
        return QY_OK;
    };
    EXPECT_EQ(CompareBytes(call, packed, expected, offset), "") << words.size() << " words";
}

void ExpectUnpacked12(size_t pairs, size_t offset, const Machine& machine) {
    const auto packed = MakeBytes(pairs * 3, Content::Random);
    ExpectWords(
        packed, ConvertReference::Unpack12(packed, pairs * 2), offset,
        [&](const uint8_t* src, Word* dst) { QyConvert::Unpack12(src, dst, pairs, machine); });
}

void ExpectUnpacked10(size_t samples, size_t offset, const Machine& machine) {
    const auto packed = MakeBytes((samples + 2) / 3 * 4, Content::Random);
    ExpectWords(
        packed, ConvertReference::Unpack10(packed, samples), offset,
        [&](const uint8_t* src, Word* dst) { QyConvert::Unpack10(src, dst, samples, machine); });
}

/// Also in place, on each instruction set.
void ExpectReduced(size_t samples, int shift, size_t offset, const Machine& machine) {
    const auto source = MakeBytes(samples * sizeof(Word), Content::Random);
    std::vector<uint8_t> expected;
    for (size_t i = 0; i < source.size(); i += sizeof(Word)) {
        const int sample = source[i] | source[i + 1] << 8;
        expected.push_back(ConvertReference::Reduce(static_cast<uint16_t>(sample), shift));
    }
    const auto call = [&](const void* src, void* dst) {
        QyConvert::Reduce(static_cast<const Word*>(src), static_cast<uint8_t*>(dst), samples, shift,
                          machine);
        return QY_OK;
    };
    SCOPED_TRACE(testing::Message() << samples << " samples");
    ExpectSameOnAll(call, source, expected, offset);
}

TEST(ConvertStreams, UnpackTheSameSamples) {
    WithEachInstructionSet([] {
        for (size_t count = 1; count <= 400; ++count) {
            ExpectUnpacked12(count, 0, kPastCaches);
            ExpectUnpacked10(count, 0, kPastCaches);
        }
    });
}

TEST(ConvertStreams, UnpackTheSameSamplesToAnyAddress) {
    WithEachInstructionSet([] {
        for (size_t offset = 0; offset < kAddresses; ++offset) {
            ExpectUnpacked12(2100, offset, kPastCaches);
            ExpectUnpacked10(4201, offset, kPastCaches);
        }
    });
}

TEST(ConvertStreams, ReduceTheSameSamples) {
    for (size_t count = 1; count <= 300; ++count) {
        ExpectReduced(count, static_cast<int>(count % 5), 0, kPastCaches);
    }
}

TEST(ConvertStreams, ReduceTheSameSamplesToAnyAddress) {
    for (size_t offset = 0; offset < kAddresses; ++offset) {
        ExpectReduced(20001, 4, offset, kPastCaches);
    }
}

/// A clock by which the way that is timed first is the faster one.
int64_t SlowingTime() {
    static int64_t time = 0;
    static int64_t step = 0;
    return time += ++step;
}

constexpr Machine kInTurns = {0, std::numeric_limits<size_t>::max(), SlowingTime};

TEST(ConvertStreams, UnpackTheSameSamplesInTurns) {
    constexpr size_t kSamples = 8 * QyWriting::WayOfWriting::kStripeBytes / sizeof(Word);
    WithEachInstructionSet([&] {
        ExpectUnpacked12(kSamples / 2, 3, kInTurns);
        ExpectUnpacked12(kSamples / 2, 4, kInTurns);
        ExpectUnpacked10(kSamples, 2, kInTurns);
    });
}

TEST(ConvertStreams, ReduceTheSameSamplesInTurns) {
    ExpectReduced(8 * QyWriting::WayOfWriting::kStripeBytes, 2, 3, kInTurns);
}

}  // namespace
