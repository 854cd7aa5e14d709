// Makes the tone tables.

#include "tone/ToneCurve.h"

#include <algorithm>
#include <cmath>

#include "support/Memory.h"
#include "tone/Curve.h"

namespace QyTone {

namespace {

constexpr double kMiddle = 0.5;

/// The range of values of a number of bits.
class Range {
public:
    static bool IsServed(int32_t bits) { return bits >= 8 && bits <= 16; }

    explicit Range(int32_t bits) : m_bits(bits) {}

    size_t Count() const { return size_t{1} << m_bits; }
    int32_t Top() const { return (1 << m_bits) - 1; }
    /// A value of 8 bits in this many.
    int32_t Scale(int32_t value) const { return value * (1 << (m_bits - 8)); }
    /// A value of the table as a coordinate.
    double Coordinate(int32_t value) const { return static_cast<double>(value) / Top(); }

private:
    int32_t m_bits;
};

void Round(const Curve& curve, const Range& range, uint32_t* table) {
    std::transform(curve.Table().begin(), curve.Table().end(), table, [&](double y) {
        const auto value = static_cast<int32_t>(Rounded(y * range.Top()));
        return static_cast<uint32_t>(std::clamp(value, 0, range.Top()));
    });
}

Curve ContrastCurve(int32_t contrast, const Range& range) {
    const int32_t dark = range.Scale(63);
    const int32_t bright = range.Scale(191);
    const int32_t offset = range.Scale(contrast) / 2;
    Curve curve(range.Count(), {{0, 0},
                                {range.Coordinate(dark), range.Coordinate(dark - offset)},
                                {kMiddle, kMiddle},
                                {range.Coordinate(bright), range.Coordinate(bright + offset)},
                                {1, 1}});
    curve.Build(0, 0, 1, 2);
    curve.Build(0, 1, 2, 3);
    curve.Build(1, 2, 3, 4);
    curve.Build(2, 3, 4, 4);
    return curve;
}

Curve LightnessCurve(int32_t lightness, const Range& range) {
    const double ratio = static_cast<double>(range.Scale(lightness)) / range.Scale(150);
    const int32_t low = range.Scale(100);
    const int32_t high = range.Scale(220);
    const double middle = (high + low) * 0.5;
    const double half = ratio * (high - low) * 0.5;
    // The last point lies outside the table: it only sets the slope at the end.
    Curve curve(range.Count(), {{0, 0},
                                {range.Coordinate(static_cast<int32_t>(middle - half)),
                                 range.Coordinate(static_cast<int32_t>(middle + half))},
                                {1, 1},
                                {1.1, 1.0}});
    curve.Build(0, 0, 1, 2);
    curve.Build(0, 1, 2, 3);
    return curve;
}

/// The checks of all three functions.
QY_STATUS Check(bool isValue, int32_t bits, const uint32_t* table) {
    if (!isValue || !Range::IsServed(bits)) {
        return QY_PARAMETER_OUT_OF_BOUND;
    }
    return table == nullptr ? QY_PARAMETER_INVALID : QY_OK;
}

template <class MakeCurve>
QY_STATUS MakeCurved(bool isValue, int32_t bits, uint32_t* table, const MakeCurve& makeCurve) {
    if (const QY_STATUS status = Check(isValue, bits, table); status != QY_OK) {
        return status;
    }
    return QyMemory::OrNotEnough([&] {
        const Range range(bits);
        Round(makeCurve(range), range, table);
        return QY_OK;
    });
}

}  // namespace

bool IsContrast(int32_t contrast) {
    return contrast >= -50 && contrast <= 100;
}

bool IsLightness(int32_t lightness) {
    return lightness >= -150 && lightness <= 150;
}

bool IsGamma(double gamma) {
    return gamma >= 0.1 && gamma <= 10;
}

QY_STATUS MakeContrastTable(int32_t contrast, int32_t bits, uint32_t* table) {
    return MakeCurved(IsContrast(contrast), bits, table,
                      [&](const Range& range) { return ContrastCurve(contrast, range); });
}

QY_STATUS MakeLightnessTable(int32_t lightness, int32_t bits, uint32_t* table) {
    return MakeCurved(IsLightness(lightness), bits, table,
                      [&](const Range& range) { return LightnessCurve(lightness, range); });
}

QY_STATUS MakeGammaTable(int32_t bits, uint32_t* table, double gamma) {
    if (const QY_STATUS status = Check(IsGamma(gamma), bits, table); status != QY_OK) {
        return status;
    }
    const Range range(bits);
    for (int32_t i = 0; i <= range.Top(); ++i) {
        // Truncated, while the two curves are rounded.
        const double y = std::pow(range.Coordinate(i), 1 / gamma);
        table[i] = static_cast<uint32_t>(y * range.Top());
    }
    return QY_OK;
}

}  // namespace QyTone
