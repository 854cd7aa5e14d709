#pragma once
/// A smooth curve through control points, kept as a table.

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace QyTone {

/// The whole number next to one that isn't negative.
inline double Rounded(double value) {
    return std::floor(value + 0.5);
}

struct Point {
    double x;
    double y;
};

/// Both coordinates are from 0 to 1, but for points that only set a slope.
class Curve {
public:
    /// @throws std::bad_alloc
    Curve(size_t count, std::vector<Point> points) : m_points(std::move(points)), m_table(count) {}

    /// Fills the table from point i1 to point i2; i0 and i3 set the slopes, and
    /// one that equals its neighbour leaves the slope to the other. A later
    /// segment overwrites the entry that it shares with one before.
    /// @return the number of entries of the segment
    size_t Build(size_t i0, size_t i1, size_t i2, size_t i3);

    const std::vector<double>& Table() const { return m_table; }

private:
    std::vector<Point> m_points;
    std::vector<double> m_table;
};

}  // namespace QyTone
