// The library's interpolation against the plain one, byte for byte.

#include <gtest/gtest.h>

#include "forms.h"
#include "instruction_sets.h"

namespace {

using testing::Combine;
using testing::Values;
using testing::ValuesIn;

/// Form, method, layout, flip.
class BayerCompare : public testing::TestWithParam<std::tuple<Form, int, int, bool>> {
protected:
    Conversion Make() const {
        Conversion conversion;
        conversion.form = std::get<0>(GetParam());
        conversion.options.method = std::get<1>(GetParam());
        conversion.options.filter = std::get<2>(GetParam());
        conversion.options.flip = std::get<3>(GetParam());
        return conversion;
    }
    int Least() const { return std::get<1>(GetParam()) == 1 ? 6 : 4; }
    void ExpectSame(const Conversion& conversion, int width, int height, Content content) const {
        const auto raw = MakeRaw(width, height, content, conversion.Limit());
        EXPECT_EQ(Compare(conversion, raw), "")
            << testing::PrintToString(conversion) << ", " << width << " x " << height;
    }
};

TEST_P(BayerCompare, EveryWidthUpToTwoVectors) {
    for (int width = Least(); width <= 140; width += 2) {
        ExpectSame(Make(), width, Least() + 2, Content::Random);
    }
}

TEST_P(BayerCompare, EveryHeightFromTheSmallest) {
    for (int height = Least(); height <= 20; height += 2) {
        ExpectSame(Make(), 22, height, Content::Random);
    }
}

TEST_P(BayerCompare, StructuredFrames) {
    for (const Content content : {Content::Ramp, Content::Edges, Content::Extremes}) {
        ExpectSame(Make(), 74, 18, content);
    }
}

TEST_P(BayerCompare, AnyAlignmentOfSourceAndDestination) {
    for (size_t offset = 0; offset < 17; ++offset) {
        Conversion conversion = Make();
        conversion.offset = offset;
        ExpectSame(conversion, 70, 8, Content::Random);
    }
}

INSTANTIATE_TEST_SUITE_P(All, BayerCompare,
                         Combine(ValuesIn(kForms), Values(0, 1, 2), Values(0, 1, 2, 3, 4, 5),
                                 testing::Bool()));

/// Method, layout.
class BayerStride : public testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(BayerStride, LeavesWhatLiesBetweenRowsAsItWas) {
    for (const bool flip : {false, true}) {
        for (const int padding : {0, 1, 2, 5, 16}) {
            Conversion conversion;
            conversion.form = Form::Argb32;
            conversion.options.method = std::get<0>(GetParam());
            conversion.options.filter = std::get<1>(GetParam());
            conversion.options.flip = flip;
            conversion.padding = padding;
            EXPECT_EQ(Compare(conversion, MakeRaw(38, 12, Content::Random, 255)), "")
                << testing::PrintToString(conversion);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, BayerStride, Combine(Values(0, 1, 2), Values(1, 2, 3, 4, 5)));

/// Form, method, layout, flip: what vectors do.
class BayerInstructionSets : public BayerCompare {};

TEST_P(BayerInstructionSets, AllGiveTheSameBytes) {
    WithEachInstructionSet([&] {
        for (const size_t offset : {0U, 1U, 6U}) {
            Conversion conversion = Make();
            conversion.offset = offset;
            for (int width = 4; width <= 140; width += 2) {
                ExpectSame(conversion, width, 6, Content::Random);
            }
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Fast, BayerInstructionSets,
                         Combine(ValuesIn(kForms), Values(0, 2), Values(1, 2, 3, 4),
                                 testing::Bool()));

/// Words that hold more bits than the call says: layout.
class BayerWords : public testing::TestWithParam<int> {
protected:
    static void ExpectSame(int method, int bits) {
        Conversion conversion;
        conversion.form = Form::Rgb48;
        conversion.options.method = method;
        conversion.options.filter = GetParam();
        conversion.bits = bits;
        for (const Content content : {Content::Random, Content::Extremes}) {
            EXPECT_EQ(Compare(conversion, MakeRaw(150, 8, content, 65535)), "")
                << testing::PrintToString(conversion);
        }
    }
};

TEST_P(BayerWords, AreTakenAsTheyAreByTheFastMethods) {
    ExpectSame(0, 8);
    ExpectSame(2, 8);
}

TEST_P(BayerWords, AreLimitedToTheBitsByTheEdgeDirectedMethod) {
    for (const int bits : {1, 8, 10, 12, 15, 16}) {
        ExpectSame(1, bits);
    }
}

INSTANTIATE_TEST_SUITE_P(All, BayerWords, Values(1, 2, 3, 4));

}  // namespace
