// Finds the steps of a tone table.

#include "colour/ToneSteps.h"

#include <algorithm>

namespace QyImprove {

namespace {

/// Finds the steps of a part; false if it falls or has too many.
bool FindSteps(const uint8_t* tone, size_t part, ToneSteps& steps) {
    const uint8_t* const values = tone + part * ToneSteps::kPartValues;
    steps.first[part] = values[0];
    size_t count = 0;
    for (size_t i = 0; i + 1 < ToneSteps::kPartValues; ++i) {
        if (values[i + 1] < values[i] || count + values[i + 1] - values[i] > ToneSteps::kMost) {
            return false;
        }
        for (int grown = values[i + 1] - values[i]; grown > 0; --grown) {
            steps.before[count++][part] = static_cast<uint8_t>(i);
        }
    }
    steps.count = std::max(steps.count, count);
    return true;
}

}  // namespace

std::optional<ToneSteps> ToneStepsOf(const uint8_t* tone) {
    constexpr size_t kFirstPart = ToneSteps::kParts / ToneSteps::kPartValues;
    ToneSteps steps{};
    std::copy_n(tone, steps.low.size(), steps.low.begin());
    for (ToneSteps::Table& table : steps.before) {
        table.fill(ToneSteps::kPartValues - 1);
    }
    for (size_t part = kFirstPart; part < ToneSteps::kParts; ++part) {
        if (!FindSteps(tone, part, steps)) {
            return std::nullopt;
        }
    }
    return steps;
}

}  // namespace QyImprove
