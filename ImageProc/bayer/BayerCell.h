#pragma once
/// Samples, layouts and outputs of the mosaic interpolation.

#include <cstddef>
#include <cstdint>

#include "support/WayOfWriting.h"
#include "support/Word.h"

namespace QyBayer {

using QySample::Word;

/// A colour's place in the output.
enum Channel : int { R = 0, G = 1, B = 2 };

/// The layout of a mosaic: parities of the column and of the row of its R samples.
struct Layout {
    unsigned redX;
    unsigned redY;
};

constexpr Layout LayoutOf(int32_t filter) {
    switch (filter) {
        case 1:
            return {0, 0};
        case 2:
            return {0, 1};
        case 3:
            return {1, 0};
        default:
            return {1, 1};
    }
}

/// Work on a row of pixels, which is done while the row is still in the caches.
template <class Sample>
class RowWork {
public:
    virtual void Do(Sample* row) const = 0;

protected:
    RowWork() = default;
    ~RowWork() = default;
};

/// A frame to interpolate, and where its pixels go.
/// @tparam Sample  uint8_t or Word
/// @tparam Width   samples of an output pixel, 3 or 4
template <class Sample, int Width>
struct Image {
    const Sample* src;
    Sample* dst;
    size_t width;
    size_t height;
    /// Samples from one output row to the next.
    size_t stride;
    bool flip;
    /// Places of R and B in an output pixel.
    int red;
    int blue;
    Sample alpha;
    /// The largest value of a sample.
    int32_t limit;
    /// What decides whether the image is written past the caches.
    QyWriting::Machine machine;
    /// Is called once for each row as soon as it is finished; may be null.
    const RowWork<Sample>* onRow;

    const Sample* Row(size_t y) const { return src + y * width; }
    Sample* Out(size_t y) const { return dst + (flip ? height - 1 - y : y) * stride; }

    void Finish(Sample* row) const {
        if (onRow != nullptr) {
            onRow->Do(row);
        }
    }

    void Put(Sample* pixel, Sample r, Sample g, Sample b) const {
        pixel[red] = r;
        pixel[1] = g;
        pixel[blue] = b;
        if constexpr (Width == 4) {
            pixel[3] = alpha;
        }
    }
};

}  // namespace QyBayer
