/// @file
/// Selectors of whatever a description says.
#include <algorithm>
#include <iterator>

#include "FileCameraTest.h"

namespace {

constexpr int64_t kMostValues = 40;

/// All values of a selector, or as many from its least to its greatest.
std::vector<int64_t> ValuesOf(const Feature& selector) {
    std::vector<int64_t> values;
    if (selector.Type() == OV_FEATURE_TYPE_ENUM) {
        for (const OV_ENUM_DESCRIPTION& entry : selector.Entries().value) {
            values.push_back(entry.nValue);
        }
        return values;
    }
    const OV_INT_RANGE range = selector.IntRange().value;
    if (range.nMax < range.nMin || range.nInc <= 0) {
        return values;  // made-up limits
    }
    const int64_t last = (range.nMax - range.nMin) / range.nInc;
    const int64_t count = std::min(last, kMostValues - 1) + 1;
    for (int64_t i = 0; i < count; ++i) {
        values.push_back(range.nMin + (count == 1 ? 0 : last * i / (count - 1)) * range.nInc);
    }
    return values;
}

/// @return how many moves that was
unsigned MoveThrough(const Feature& selector) {
    const FeatureValue before = selector.Read().value;
    std::vector<int64_t> values = ValuesOf(selector);
    values.push_back(std::get<int64_t>(before));
    for (const int64_t value : values) {
        const Answer<bool> set = selector.Write(value);
        EXPECT_EQ(set.status, OV_STATUS_SUCCESS) << "to " << value << ": " << set.message;
        const Answer<FeatureValue> now = selector.Read();
        EXPECT_EQ(now.message, "");
        EXPECT_EQ(ToText(now.value), ToText(value));
    }
    return static_cast<unsigned>(values.size());
}

/// How a selector refuses to move that the state of others hides or locks in all
/// that the power-up tries.
struct Refusal {
    const char* camera;
    const char* selector;
    OV_STATUS status;
    const char* message;
};

constexpr Refusal kRefusals[] = {
    {"Basler-acA640-300gm", "LineSelector", OV_STATUS_NOT_IMPLEMENTED,
     "The feature \"LineSelector\" is not implemented"},
    {"Basler-acA640-300gm", "ColorTransformationValueSelector", OV_STATUS_NOT_IMPLEMENTED,
     "The feature \"ColorTransformationValueSelector\" is not implemented"},
};

const Refusal* RefusalOf(const std::string& camera, const std::string& selector) {
    const auto* const found =
        std::find_if(std::begin(kRefusals), std::end(kRefusals), [&](const Refusal& refusal) {
            return refusal.camera == camera && refusal.selector == selector;
        });
    return found == std::end(kRefusals) ? nullptr : found;
}

TEST_P(FileCamera, MovesSelectorsToEachOfTheirValuesAndBack) {
    const ReferenceMap reference = Reference();
    unsigned selectors = 0;
    unsigned moves = 0;
    for (const Feature& feature : Features()) {
        if (!reference.IsSelector(feature)) {
            continue;
        }
        SCOPED_TRACE(feature.Name());
        const std::string why = reference.WhyFixed(feature);
        if (!why.empty()) {
            EXPECT_FALSE(feature.IsWritable().value && ValuesOf(feature).size() > 1);
            Tell(std::string("doesn't move: ") + feature.Name() + ": " + why);
            continue;
        }
        if (const Refusal* const refusal = RefusalOf(GetParam(), feature.Name())) {
            ExpectFailure(feature.Write(int64_t{0}).status, refusal->status, refusal->message);
            Tell(std::string("doesn't move: ") + feature.Name() + ": " + refusal->message);
            continue;
        }
        EXPECT_TRUE(feature.IsWritable().value);
        moves += MoveThrough(feature);
        ++selectors;
    }
    std::printf("%-30s selectors %2u, moves %3u\n", GetParam().c_str(), selectors, moves);
}

}  // namespace
