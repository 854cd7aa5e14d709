/// @file
/// Selectors of whatever a description says.
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

class FileCameraSelectors : public FileCameraTest {
protected:
    void Move(const Feature& selector, int64_t value) {
        const Answer<bool> set = selector.Write(value);
        EXPECT_EQ(set.status, OV_STATUS_SUCCESS) << "to " << value << ": " << set.message;
        const Answer<FeatureValue> now = selector.Read();
        EXPECT_EQ(now.message, "");
        EXPECT_EQ(ToText(now.value), ToText(value));
        ++moves;
    }

    unsigned selectors = 0;
    unsigned moves = 0;
};

TEST_P(FileCameraSelectors, MoveToEachOfTheirValuesAndBack) {
    const ReferenceMap reference(camera, Description());
    for (const Feature& feature : FeaturesOf(OV_FEATURE_LEVEL_REMOTE_DEVICE)) {
        if (!reference.IsSelector(feature) || !feature.IsWritable().value) {
            continue;
        }
        SCOPED_TRACE(feature.Name());
        const int64_t before = std::get<int64_t>(feature.Read().value);
        const std::vector<int64_t> values = ValuesOf(feature);
        for (const int64_t value : values) {
            Move(feature, value);
        }
        if (std::find(values.begin(), values.end(), before) != values.end()) {
            Move(feature, before);
        } else {
            Tell(std::string("doesn't move back: ") + feature.Name() + " was at " +
                 std::to_string(before) + ", which is not available");
        }
        ++selectors;
    }
    std::printf("%-44s selectors %2u, moves %3u\n", GetParam().c_str(), selectors, moves);
}

OV_FOR_EACH_FILE_CAMERA(FileCameraSelectors);

}  // namespace
