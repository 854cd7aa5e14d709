// The same kinds of work by OpenCV, where it is installed: rows of image_bench.

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "image_ratio.h"

namespace {

using ImageRatio::Row;

cv::Mat Image(const uint8_t* bytes, int width, int height, int type) {
    // The matrix of a source is never written to, but it has no other constructor.
    return {height, width, type, const_cast<uint8_t*>(bytes)};
}

template <int Code>
void Demosaic(const uint8_t* src, uint8_t* dst, int w, int h) {
    cv::Mat out = Image(dst, w, h, CV_8UC3);
    cv::cvtColor(Image(src, w, h, CV_8UC1), out, Code);
}

void LookUp(const uint8_t* src, uint8_t* dst, int w, int h) {
    static const cv::Mat table = [] {
        cv::Mat made(1, 256, CV_8UC1);
        for (int i = 0; i < 256; ++i) {
            made.at<uint8_t>(i) = static_cast<uint8_t>(255 - i);
        }
        return made;
    }();
    cv::Mat out = Image(dst, w, h, CV_8UC1);
    cv::LUT(Image(src, w, h, CV_8UC1), table, out);
}

void Transform(const uint8_t* src, uint8_t* dst, int w, int h) {
    static const cv::Mat matrix =
        (cv::Mat_<float>(3, 3) << 1.4F, -0.2F, -0.2F, -0.3F, 1.4F, -0.1F, -0.2F, -0.2F, 1.4F);
    cv::Mat out = Image(dst, w, h, CV_8UC3);
    cv::transform(Image(src, w, h, CV_8UC3), out, matrix);
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

constexpr Row kRows[] = {
    {"OpenCvBilinear", 8, 24, Demosaic<cv::COLOR_BayerBG2RGB>},
    {"OpenCvEdgeAware", 8, 24, Demosaic<cv::COLOR_BayerBG2RGB_EA>},
    {"OpenCvLut", 8, 8, LookUp},
    {"OpenCvTransform", 24, 24, Transform},
    {"OpenCvFilter2D24B", 24, 24, Filter<CV_8UC3>},
    {"OpenCvFilter2D8B", 8, 8, Filter<CV_8UC1>},
    {"OpenCvFlipHorizontal", 8, 8, Flip<1>},
    {"OpenCvFlipVertical", 8, 8, Flip<0>},
    {"OpenCvRotateClockwise", 8, 8, Rotate<cv::ROTATE_90_CLOCKWISE>},
    {"OpenCvRotateCounterClockwise", 8, 8, Rotate<cv::ROTATE_90_COUNTERCLOCKWISE>},
};

[[maybe_unused]] const bool kRegistered = [] {
    cv::setNumThreads(1);
    for (const Row& row : kRows) {
        ImageRatio::Register(row);
    }
    return true;
}();

}  // namespace
