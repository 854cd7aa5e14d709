// Stages for which there is no memory are left out.

#include <gtest/gtest.h>

#include "Bytes.h"
#include "FailingMemory.h"
#include "NoiseReference.h"
#include "QyImageProc.h"
#include "ToneReference.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kImageWidth = 24;
constexpr int kImageHeight = 14;
constexpr size_t kImagePixels = size_t{kImageWidth} * kImageHeight;
constexpr float kFactor = 2;

Bytes Sharpened(const Bytes& image, int channels) {
    return ToneReference::Sharpening(image, kImageWidth, kImageHeight, channels, kFactor).Run();
}

/// Lets each allocation of a call fail in its turn, and gives what came of it;
/// the last is the call's without a failure.
template <class Run>
std::vector<Bytes> WithEachFailure(const Run& run) {
    std::vector<Bytes> results;
    for (size_t before = 0;; ++before) {
        Bytes out(kImagePixels * 3);
        const MemoryUse use;
        {
            const FailingMemory failing(before);
            EXPECT_EQ(run(out.data()), QY_OK) << before;
        }
        EXPECT_EQ(use.Left(), 0U) << before;
        results.push_back(out);
        if (!FailingMemory::HasFailed()) {
            return results;
        }
    }
}

TEST(ProcessMemory, AStageOfARawFrameWithoutMemoryIsLeftOut) {
    Bytes source = MakeBytes(kImagePixels, Content::Random);
    QyRawImgRecord record{};
    record.Filter = QY_BAYER_GR;
    Bytes plain(kImagePixels * 3);
    ASSERT_EQ(QyRaw8ImgProcess(source.data(), plain.data(), kImageWidth, kImageHeight, &record),
              QY_OK);
    record.Denoise = 1;
    record.Sharpness = 1;
    record.SharpFactor = kFactor;
    const auto results = WithEachFailure([&](uint8_t* out) {
        return QyRaw8ImgProcess(source.data(), out, kImageWidth, kImageHeight, &record);
    });
    const Bytes reduced = NoiseReference::Reduce(plain, kImageWidth, kImageHeight);
    EXPECT_EQ(results.back(), Sharpened(reduced, 3));
    EXPECT_EQ(results.front(), Sharpened(plain, 3));
    ASSERT_GT(results.size(), 2U);
    EXPECT_EQ(results[results.size() - 2], reduced);
    for (const Bytes& result : results) {
        EXPECT_TRUE(result == Sharpened(reduced, 3) || result == Sharpened(plain, 3) ||
                    result == reduced);
    }
}

TEST(ProcessMemory, SharpeningOfAMonochromeFrameWithoutMemoryIsLeftOut) {
    Bytes source = MakeBytes(kImagePixels, Content::Random);
    QyMonoImgRecord record{};
    record.Sharpness = 1;
    record.SharpFactor = kFactor;
    auto results = WithEachFailure([&](uint8_t* out) {
        return QyMono8ImgProcess(source.data(), out, kImageWidth, kImageHeight, &record);
    });
    for (Bytes& result : results) {
        result.resize(kImagePixels);
    }
    EXPECT_EQ(results.back(), Sharpened(source, 1));
    results.pop_back();
    EXPECT_FALSE(results.empty());
    for (const Bytes& result : results) {
        EXPECT_EQ(result, source);
    }
}

}  // namespace
