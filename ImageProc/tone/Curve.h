#pragma once
/// A smooth curve through control points, kept as a table.

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace QyTone {

/// Rounds a number that isn't negative to the nearest integer.
inline double Rounded(double value) {
    return std::floor(value + 0.5);
}

struct Point {
    double x;
    double y;
};

/// Both coordinates of a point are from 0 to 1, except for points that only set a slope.
class Curve {
public:
    /// @throws std::bad_alloc
    Curve(size_t count, std::vector<Point> points) : m_points(std::move(points)), m_table(count) {}

    /// Fills the table from point i1 to point i2. The points i0 and i3 set the slopes at
    /// the ends; if i0 is i1, or i3 is i2, the slope at that end follows from the other
    /// end. A segment overwrites the entry that it shares with an earlier one.
    /// @return the number of entries of the segment
    size_t Build(size_t i0, size_t i1, size_t i2, size_t i3);

    const std::vector<double>& Table() const { return m_table; }

private:
    std::vector<Point> m_points;
    std::vector<double> m_table;
};

}  // namespace QyTone
