// Segments of a curve. Applications compare tables bit by bit, so the order of the
// operations on doubles matters.

#include "tone/Curve.h"

#include <algorithm>

namespace QyTone {

namespace {

/// The inner control values of a cubic.
struct Inner {
    double c1;
    double c2;
};

double Slope(const Point& from, const Point& to) {
    return (to.y - from.y) / (to.x - from.x);
}

Inner InnerOf(const Point& p0, const Point& p1, const Point& p2, const Point& p3, bool isFirst,
              bool isLast) {
    const double dx = p2.x - p1.x;
    if (isFirst && isLast) {
        return {(p2.y - p1.y) / 3 + p1.y, 2 * (p2.y - p1.y) / 3 + p1.y};
    }
    if (isFirst) {
        const double c2 = p2.y - Slope(p1, p3) * dx / 3;
        return {(c2 - p1.y) * 0.5 + p1.y, c2};
    }
    const double c1 = p1.y + Slope(p0, p2) * dx / 3;
    if (isLast) {
        return {c1, (c1 - p2.y) * 0.5 + p2.y};
    }
    return {c1, p2.y - Slope(p1, p3) * dx / 3};
}

}  // namespace

size_t Curve::Build(size_t i0, size_t i1, size_t i2, size_t i3) {
    const Point& p1 = m_points[i1];
    const Point& p2 = m_points[i2];
    const auto [c1, c2] = InnerOf(m_points[i0], p1, p2, m_points[i3], i0 == i1, i2 == i3);
    const double dx = p2.x - p1.x;
    const auto n = static_cast<double>(m_table.size() - 1);
    const auto steps = static_cast<size_t>(Rounded(n * dx));
    const auto start = static_cast<size_t>(Rounded(p1.x * n));
    for (size_t i = 0; i <= steps && start + i < m_table.size(); ++i) {
        const double t = static_cast<double>(i) / dx / n;
        const double u = 1 - t;
        const double y =
            u * u * u * p1.y + 3 * u * u * t * c1 + 3 * u * t * t * c2 + t * t * t * p2.y;
        m_table[start + i] = std::clamp(y, 0.0, 1.0);
    }
    return steps + 1;
}

}  // namespace QyTone
