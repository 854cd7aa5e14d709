#include "nodes/NearestNames.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace {

constexpr size_t kMostNames = 3;
/// Names of hundreds of letters aren't typed by anybody.
constexpr size_t kLongestName = 256;

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

/// A third of the letters may differ, but at least two.
size_t MostChanges(const std::string& wanted) {
    return std::max<size_t>(2, wanted.size() / 3);
}

struct Candidate {
    size_t distance;
    const std::string* name;
};

}  // namespace

size_t DistanceOf(const std::string& left, const std::string& right) {
    const std::string from = Lower(left);
    const std::string to = Lower(right);
    std::vector<size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < from.size(); ++i) {
        size_t diagonal = std::exchange(row[0], i + 1);
        for (size_t j = 0; j < to.size(); ++j) {
            const size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

std::vector<std::string> NearestNames(const std::string& wanted,
                                      const std::vector<std::string>& names) {
    if (wanted.empty() || wanted.size() > kLongestName) {
        return {};
    }
    std::vector<Candidate> near;
    for (const std::string& name : names) {
        const size_t distance = DistanceOf(wanted, name);
        const bool contains = Lower(name).find(Lower(wanted)) != std::string::npos;
        if (distance <= MostChanges(wanted) || contains) {
            near.push_back({distance, &name});
        }
    }
    std::stable_sort(near.begin(), near.end(), [](const Candidate& left, const Candidate& right) {
        return left.distance < right.distance;
    });
    std::vector<std::string> nearest;
    for (size_t i = 0; i < std::min(near.size(), kMostNames); ++i) {
        nearest.push_back(*near[i].name);
    }
    return nearest;
}
