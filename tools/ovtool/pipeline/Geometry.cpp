#include "pipeline/Geometry.h"

#include <algorithm>
#include <utility>

#include "support/Error.h"

namespace {

/// The picture's bytes with each of its planes gone through `function`.
template <class Function>
Picture ByPlanes(const Picture& picture, Function function, const char* what) {
    const size_t step = picture.PixelBytes();
    const size_t pixels = picture.bytes.size() / step;
    Picture result = picture;
    std::vector<uint8_t> source(pixels);
    std::vector<uint8_t> target(pixels);
    for (size_t plane = 0; plane < step; ++plane) {
        for (size_t i = 0; i < pixels; ++i) {
            source[i] = picture.bytes[i * step + plane];
        }
        CheckImage(function(source.data(), target.data(), static_cast<int32_t>(picture.width),
                            static_cast<int32_t>(picture.height)),
                   what);
        for (size_t i = 0; i < pixels; ++i) {
            result.bytes[i * step + plane] = target[i];
        }
    }
    return result;
}

}  // namespace

Picture Mirror(const Picture& picture, QyImageMirrorMode mode) {
    return ByPlanes(
        picture,
        [mode](const void* source, void* target, int32_t width, int32_t height) {
            return QyImageMirror(source, target, width, height, mode);
        },
        "mirror");
}

Picture Rotate(const Picture& picture, Turn turn) {
    Picture result =
        ByPlanes(picture, turn == Turn::Clockwise ? QyRotate90CW8B : QyRotate90CCW8B, "rotate");
    std::swap(result.width, result.height);
    return result;
}

Picture Zoom(const Picture& picture, uint32_t factor) {
    Picture result = picture;
    result.width *= factor;
    result.height *= factor;
    const size_t step = picture.PixelBytes();
    const size_t row = result.width * step;
    result.bytes.resize(row * result.height);
    for (size_t y = 0; y < result.height; ++y) {
        const uint8_t* const source = &picture.bytes[y / factor * picture.width * step];
        uint8_t* const target = &result.bytes[y * row];
        for (size_t x = 0; x < result.width; ++x) {
            std::copy_n(source + x / factor * step, step, target + x * step);
        }
    }
    return result;
}
