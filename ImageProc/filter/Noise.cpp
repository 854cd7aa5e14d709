// Reduces the noise of whole images, row by row.

#include "filter/Noise.h"

#include <algorithm>
#include <vector>

#include "filter/NoiseRow.h"
#include "tone/ToneVector.h"

namespace QyNoise {

namespace {

constexpr size_t kPixelBytes = 3;
constexpr size_t kLevels = 256;

using Levels = std::array<uint8_t, kLevels>;

/// For each level of a pixel, the difference that a neighbour must stay below to count.
/// It grows from dark levels to the lower middle and falls after it.
constexpr Levels MakeTolerances() {
    Levels tolerances = {28,  42,  55,  71,  82,  93,  103, 113, 120, 128, 138, 146, 151, 157,
                         161, 167, 171, 176, 180, 183, 187, 189, 192, 194, 195, 197, 199, 200,
                         202, 203, 204, 205, 205, 205, 206, 206, 206, 206, 206, 206, 206, 206,
                         206, 205, 205, 204, 204, 203, 202, 202, 201, 201, 200, 199, 198, 198,
                         197, 196, 195, 194, 193, 193, 192, 191, 190, 189};
    for (size_t level = 66; level <= 127; ++level) {
        tolerances[level] = static_cast<uint8_t>(254 - level);
    }
    tolerances[128] = 127;
    tolerances[129] = 126;
    for (size_t level = 130; level < kLevels; ++level) {
        tolerances[level] = static_cast<uint8_t>(256 - level);
    }
    return tolerances;
}

constexpr Levels kTolerances = MakeTolerances();
static_assert(kTolerances[65] == 189 && kTolerances[66] == 188 && kTolerances[127] == 127);
static_assert(kTolerances[130] == 126 && kTolerances[131] == 125 && kTolerances[255] == 1);

/// For each level, the largest difference that counts.
constexpr Levels kReaches = [] {
    Levels reaches = kTolerances;
    for (uint8_t& reach : reaches) {
        --reach;
    }
    return reaches;
}();

/// Copies of the last `Count` rows, each as it was at some moment.
template <size_t Count>
class Ring {
public:
    explicit Ring(size_t width)
        : m_width(width),
          m_length((kFront + width + kPadding) / kSamples * kSamples),
          m_memory(Count * RowLines()) {}

    KeptRow Row(size_t y) {
        void* const row = m_memory.data() + y % Count * RowLines();
        auto* const values = static_cast<int16_t*>(row) + kFront;
        auto* const reaches = static_cast<uint8_t*>(row) + ValueBytes() + kFront;
        const auto channel = [&](size_t place) {
            return KeptChannel{values + place * m_length, reaches + place * m_length};
        };
        return {channel(0), channel(1), channel(2)};
    }
    KeptRows Around(size_t y, size_t radius) { return {Row(y - radius), Row(y), Row(y + radius)}; }

    /// Turns the bytes of a row that was kept into what its pixels reach.
    void SetReaches(size_t y) {
        const KeptRow row = Row(y);
        for (const KeptChannel& channel : {row.first, row.green, row.third}) {
            QyTone::MapBytes(channel.reaches, channel.reaches, m_width, kReaches.data());
        }
    }

private:
    static constexpr size_t kChannels = 3;
    /// Rows begin at cache lines, so that fewer vectors lie in two of them.
    struct alignas(64) Line {
        uint8_t bytes[64];
    };
    static constexpr size_t kSamples = sizeof(Line);

    size_t ValueBytes() const { return kChannels * m_length * sizeof(int16_t); }
    size_t RowLines() const { return (ValueBytes() + kChannels * m_length) / sizeof(Line); }

    size_t m_width;
    size_t m_length;
    std::vector<Line> m_memory;
};

/// Copies columns of a row.
void CopyColumns(const KeptRow& from, const KeptRow& to, size_t begin, size_t end) {
    for (const auto channel : {&KeptRow::first, &KeptRow::green, &KeptRow::third}) {
        const auto& [values, reaches] = from.*channel;
        std::copy(values + begin, values + end, (to.*channel).values + begin);
        std::copy(reaches + begin, reaches + end, (to.*channel).reaches + begin);
    }
}

/// Writes the pixels of columns of a row.
void PutColumns(const KeptRow& kept, uint8_t* row, size_t begin, size_t end) {
    for (size_t x = begin; x < end; ++x) {
        uint8_t* const pixel = row + x * kPixelBytes;
        const int green = kept.green.values[x] >> 4;
        pixel[0] = static_cast<uint8_t>((kept.first.values[x] >> 4) + green);
        pixel[1] = static_cast<uint8_t>(green);
        pixel[2] = static_cast<uint8_t>((kept.third.values[x] >> 4) + green);
    }
}

/// Both passes over an image. The second one follows the first at the distance of its radius,
/// while the rows are still in the caches.
class Passes {
public:
    Passes(uint8_t* image, size_t width, size_t height)
        : m_image(image), m_width(width), m_height(height), m_original(width), m_once(width) {}

    void Run() {
        constexpr size_t kDelay = kNear + kFar;
        for (size_t y = 0; y < m_height + kDelay; ++y) {
            if (y < m_height) {
                KeepRow(Row(y), m_width, m_original.Row(y));
                m_original.SetReaches(y);
            }
            if (y >= kNear && y < m_height + kNear) {
                ReduceOnce(y - kNear);
            }
            if (y >= kDelay) {
                ReduceTwice(y - kDelay);
            }
        }
    }

private:
    static constexpr size_t kNear = 1;
    static constexpr size_t kFar = 2;

    uint8_t* Row(size_t y) const { return m_image + y * m_width * kPixelBytes; }
    bool IsBorder(size_t y, size_t radius) const { return y < radius || y + radius >= m_height; }

    void ReduceOnce(size_t y) {
        const KeptRow from = m_original.Row(y);
        const KeptRow to = m_once.Row(y);
        if (IsBorder(y, kNear)) {
            CopyColumns(from, to, 0, m_width);
            return;
        }
        ReduceToKept(m_original.Around(y, kNear), m_width, kNear, to);
        m_once.SetReaches(y);
        CopyColumns(from, to, 0, kNear);
        CopyColumns(from, to, m_width - kNear, m_width);
    }
    void ReduceTwice(size_t y) {
        const KeptRow from = m_once.Row(y);
        if (IsBorder(y, kFar)) {
            PutColumns(from, Row(y), 0, m_width);
            return;
        }
        ReduceToPixels(m_once.Around(y, kFar), m_width, kFar, Row(y));
        PutColumns(from, Row(y), 0, kFar);
        PutColumns(from, Row(y), m_width - kFar, m_width);
    }

    uint8_t* m_image;
    size_t m_width;
    size_t m_height;
    Ring<2 * kNear + 1> m_original;
    Ring<2 * kFar + 1> m_once;
};

}  // namespace

void Reduce(uint8_t* image, size_t width, size_t height) {
    constexpr size_t kLeast = 3;
    if (width >= kLeast && height >= kLeast) {
        Passes(image, width, height).Run();
    }
}

}  // namespace QyNoise
