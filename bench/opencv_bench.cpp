// The same work done by OpenCV, if it is installed, for comparison in image_bench.

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "QyImageProc.h"
#include "image_row.h"

namespace ImageBench {

namespace {

cv::Mat Image(const uint8_t* bytes, int width, int height, int type) {
    // The cast is safe: a matrix has no constructor for constant data, but that of a
    // source is never written.
    return {height, width, type, const_cast<uint8_t*>(bytes)};
}

template <int Code, int From, int To>
void Demosaic(const uint8_t* src, uint8_t* dst, int w, int h) {
    cv::Mat out = Image(dst, w, h, To);
    cv::cvtColor(Image(src, w, h, From), out, Code);
}

/// The table of a function from byte to byte.
template <QY_STATUS Function(const void*, void*, int32_t, int32_t)>
cv::Mat TableOf() {
    cv::Mat identity(1, 256, CV_8UC1);
    for (int i = 0; i < 256; ++i) {
        identity.at<uint8_t>(i) = static_cast<uint8_t>(i);
    }
    cv::Mat table(1, 256, CV_8UC1);
    Function(identity.data, table.data, 256, 30);
    return table;
}

template <QY_STATUS Function(const void*, void*, int32_t, int32_t)>
void LookUp(const uint8_t* src, uint8_t* dst, int w, int h) {
    static const cv::Mat table = TableOf<Function>();
    cv::Mat out = Image(dst, w, h, CV_8UC1);
    cv::LUT(Image(src, w, h, CV_8UC1), table, out);
}

void Transform(const uint8_t* src, uint8_t* dst, int w, int h) {
    static const cv::Mat matrix = (cv::Mat_<float>(3, 3) << 1.375F, -0.25F, -0.125F, -0.3125F, 1.5F,
                                   -0.1875F, -0.0625F, -0.4375F, 1.5F);
    cv::Mat out = Image(dst, w, h, CV_8UC3);
    cv::transform(Image(src, w, h, CV_8UC3), out, matrix);
}

/// A buffer between two steps, which applications keep from frame to frame.
template <int Step>
uint8_t* Between(int w, int h) {
    static cv::Mat buffer;
    buffer.create(h, w, CV_8UC3);
    return buffer.data;
}

void TransformAndLookUp(const uint8_t* src, uint8_t* dst, int w, int h) {
    static const cv::Mat table = TableOf<QyContrast>();
    uint8_t* const mixed = Between<0>(w, h);
    Transform(src, mixed, w, h);
    cv::Mat out = Image(dst, w, h, CV_8UC3);
    cv::LUT(Image(mixed, w, h, CV_8UC3), table, out);
}

void Pipeline(const uint8_t* src, uint8_t* dst, int w, int h) {
    uint8_t* const colours = Between<1>(w, h);
    Demosaic<cv::COLOR_BayerRGGB2RGB, CV_8UC1, CV_8UC3>(src, colours, w, h);
    TransformAndLookUp(colours, dst, w, h);
}

template <int Type>
void Filter(const uint8_t* src, uint8_t* dst, int w, int h) {
    static const cv::Mat kernel = (cv::Mat_<float>(5, 5) << 0, -1, -2, -1, 0, -1, 0, 2, 0, -1, -2,
                                   2, 12, 2, -2, -1, 0, 2, 0, -1, 0, -1, -2, -1, 0) /
                                  4;
    cv::Mat out = Image(dst, w, h, Type);
    cv::filter2D(Image(src, w, h, Type), out, -1, kernel);
}

template <int Code>
void Flip(const uint8_t* src, uint8_t* dst, int w, int h) {
    cv::Mat out = Image(dst, w, h, CV_8UC1);
    cv::flip(Image(src, w, h, CV_8UC1), out, Code);
}

template <int Code>
void Rotate(const uint8_t* src, uint8_t* dst, int w, int h) {
    cv::Mat out = Image(dst, h, w, CV_8UC1);
    cv::rotate(Image(src, w, h, CV_8UC1), out, Code);
}

void Sum(const uint8_t* src, uint8_t* /*dst*/, int w, int h) {
    cv::sum(Image(src, w, h, CV_8UC3));
}

}  // namespace

std::vector<Rival> OpenCvRivals() {
    cv::setNumThreads(1);
    return {
        // It has no two by two form; this is the fastest one that it has.
        {"OpenCV, bilinear", Kind::Cells, Demosaic<cv::COLOR_BayerRGGB2RGB, CV_8UC1, CV_8UC3>},
        {"OpenCV, bilinear", Kind::Bilinear, Demosaic<cv::COLOR_BayerRGGB2RGB, CV_8UC1, CV_8UC3>},
        {"OpenCV, edge-aware", Kind::EdgeAware,
         Demosaic<cv::COLOR_BayerRGGB2RGB_EA, CV_8UC1, CV_8UC3>},
        {"OpenCV, bilinear", Kind::BilinearFourBytes,
         Demosaic<cv::COLOR_BayerRGGB2RGBA, CV_8UC1, CV_8UC4>},
        {"OpenCV, bilinear", Kind::Bilinear16,
         Demosaic<cv::COLOR_BayerRGGB2RGB, CV_16UC1, CV_16UC3>},
        {"OpenCV, edge-aware", Kind::EdgeAware16,
         Demosaic<cv::COLOR_BayerRGGB2RGB_EA, CV_16UC1, CV_16UC3>},
        {"OpenCV, LUT", Kind::Brightness, LookUp<QyBrightness>, true},
        {"OpenCV, LUT", Kind::Contrast, LookUp<QyContrast>, true},
        {"OpenCV, transform", Kind::Matrix, Transform},
        {"OpenCV, transform and LUT", Kind::ColoursAndTables, TransformAndLookUp},
        {"OpenCV, bilinear, transform, LUT", Kind::RawPipeline, Pipeline},
        {"OpenCV, filter2D", Kind::SharpenThreeBytes, Filter<CV_8UC3>},
        {"OpenCV, filter2D", Kind::SharpenOneByte, Filter<CV_8UC1>},
        {"OpenCV, flip", Kind::MirrorHorizontal, Flip<1>, true},
        {"OpenCV, flip", Kind::MirrorVertical, Flip<0>, true},
        {"OpenCV, rotate", Kind::TurnClockwise, Rotate<cv::ROTATE_90_CLOCKWISE>, true},
        {"OpenCV, rotate", Kind::TurnCounterClockwise, Rotate<cv::ROTATE_90_COUNTERCLOCKWISE>,
         true},
        {"OpenCV, sum", Kind::ChannelSums, Sum},
    };
}

}  // namespace ImageBench
