// Pictures written past the caches, beside the same ones written through them.

#include <gtest/gtest.h>

#include <limits>

#include "Bytes.h"
#include "QyImageProc.h"
#include "bayer/BayerVector.h"

namespace {

using QyBayer::Image;

/// A frame to interpolate: sizes, method, layout and address.
struct StreamedFrame {
    int width;
    int height;
    int method;
    int filter;
    bool flip;
    size_t offset;
};

constexpr int kStreamedHeight = 8;
constexpr size_t kAnySize = std::numeric_limits<size_t>::max();
/// Machines on which the size of a picture decides.
constexpr QyWriting::Machine kThrough = {kAnySize, kAnySize, nullptr};
constexpr QyWriting::Machine kPast = {0, 0, nullptr};

template <class Sample, int Width>
void Run(const Image<Sample, Width>& image, const StreamedFrame& frame) {
    const auto layout = QyBayer::LayoutOf(frame.filter);
    switch (frame.method) {
        case QY_RAW2RGB_NEIGHBOUR:
            QyBayer::InterpolateFast(image, QyBayer::Neighbours::TwoByTwo, layout);
            break;
        case QY_RAW2RGB_NEIGHBOUR3:
            QyBayer::InterpolateFast(image, QyBayer::Neighbours::ThreeByThree, layout);
            break;
        default:
            QyBayer::InterpolateAdaptive(image, layout);
            break;
    }
}

/// The picture of a frame on a machine.
template <class Sample, int Width>
GuardedBytes Picture(const SourceBytes<uint8_t>& src, const StreamedFrame& frame,
                     const QyWriting::Machine& machine) {
    const auto width = static_cast<size_t>(frame.width);
    const auto height = static_cast<size_t>(frame.height);
    GuardedBytes out(width * height * Width * sizeof(Sample), frame.offset);
    Image<Sample, Width> image{};
    image.src = static_cast<const Sample*>(static_cast<const void*>(src.Data()));
    image.dst = static_cast<Sample*>(static_cast<void*>(out.Data()));
    image.width = width;
    image.height = height;
    image.stride = width * Width;
    image.flip = frame.flip;
    image.red = QyBayer::R;
    image.blue = QyBayer::B;
    image.alpha = Sample(9);
    image.limit = (1 << (8 * sizeof(Sample))) - 1;
    image.machine = machine;
    CountCase();
    Run(image, frame);
    return out;
}

template <class Sample, int Width>
void ExpectSame(const StreamedFrame& frame, const QyWriting::Machine& machine) {
    const auto raw =
        MakeRaw(frame.width * static_cast<int>(sizeof(Sample)), frame.height, Content::Random, 255);
    const SourceBytes<uint8_t> src(raw, SourceOffset(frame.offset));
    auto cached = Picture<Sample, Width>(src, frame, kThrough);
    auto streamed = Picture<Sample, Width>(src, frame, machine);
    const std::vector<uint8_t> expected(cached.Data(), cached.Data() + cached.Size());
    EXPECT_EQ(Difference(streamed, expected), "")
        << frame.width << " wide, method " << frame.method << ", layout " << frame.filter
        << ", flip " << frame.flip << " at " << frame.offset;
}

template <class Sample, int Width>
void ExpectAllSame() {
    WithEachInstructionSet([] {
        for (const int width : {6, 38, 140, 258, 500, 514, 1020, 2054, 2058, 4102, 4106}) {
            for (int method = 0; method <= QY_RAW2RGB_NEIGHBOUR3; ++method) {
                for (int filter = QY_BAYER_RG; filter <= QY_BAYER_BG; ++filter) {
                    const auto offset =
                        static_cast<size_t>(filter) * 17 + static_cast<size_t>(method);
                    ExpectSame<Sample, Width>(
                        {width, kStreamedHeight, method, filter, filter % 2 == 0, offset}, kPast);
                    ExpectSame<Sample, Width>(
                        {width, kStreamedHeight, method, filter, filter % 2 != 0, 0}, kPast);
                }
            }
        }
    });
}

TEST(BayerStreams, WriteTheSameThreeBytes) {
    ExpectAllSame<uint8_t, 3>();
}

TEST(BayerStreams, WriteTheSameFourBytes) {
    ExpectAllSame<uint8_t, 4>();
}

TEST(BayerStreams, WriteTheSameThreeWords) {
    ExpectAllSame<QyBayer::Word, 3>();
}

/// A clock whose steps become shorter or longer, so that the way which is timed last, or the one
/// which is timed first, is the faster one.
template <int Change>
int64_t SteppedTime() {
    static int64_t time = 0;
    static int64_t step = int64_t{1} << 40;
    step += Change;
    return time += step;
}

template <class Sample, int Width>
void ExpectSameInTurns() {
    constexpr int kRows = 6 + 8 * static_cast<int>(QyWriting::WayOfWriting::kStripeBytes) /
                                  (500 * Width * static_cast<int>(sizeof(Sample)));
    WithEachInstructionSet([] {
        for (int method = 0; method <= QY_RAW2RGB_NEIGHBOUR3; ++method) {
            const StreamedFrame frame{500, kRows - kRows % 2, method, QY_BAYER_GR, false, 5};
            ExpectSame<Sample, Width>(frame, {0, kAnySize, SteppedTime<-1>});
            ExpectSame<Sample, Width>(frame, {0, kAnySize, SteppedTime<1>});
        }
    });
}

TEST(BayerStreams, WriteTheSameThreeBytesInTurns) {
    ExpectSameInTurns<uint8_t, 3>();
}

TEST(BayerStreams, WriteTheSameFourBytesInTurns) {
    ExpectSameInTurns<uint8_t, 4>();
}

TEST(BayerStreams, WriteTheSameThreeWordsInTurns) {
    ExpectSameInTurns<QyBayer::Word, 3>();
}

}  // namespace
