// The library's interpolation against the plain one, byte for byte.

#include <gtest/gtest.h>

#include <numeric>

#include "Forms.h"

namespace {

using testing::Combine;
using testing::Values;
using testing::ValuesIn;

/// Form, method, layout, flip.
class BayerInstructionSets : public testing::TestWithParam<std::tuple<Form, int, int, bool>> {
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
    void ExpectSame(int width, int height, Content content,
                    const std::vector<size_t>& offsets) const {
        const Conversion conversion = Make();
        ExpectSameOnAll(conversion, MakeRaw(width, height, content, conversion.Limit()), offsets);
    }
};

TEST_P(BayerInstructionSets, EveryWidthUpToTwoVectors) {
    for (int width = Least(); width <= 140; width += 2) {
        ExpectSame(width, Least() + 2, Content::Random, {0, 1, 6});
    }
}

TEST_P(BayerInstructionSets, EveryHeightFromTheSmallest) {
    for (int height = Least(); height <= 20; height += 2) {
        ExpectSame(22, height, Content::Random, {0, 3});
    }
}

TEST_P(BayerInstructionSets, StructuredFrames) {
    for (const Content content : kContents) {
        ExpectSame(74, 12, content, {0});
    }
}

TEST_P(BayerInstructionSets, AnyAlignmentOfSourceAndDestination) {
    std::vector<size_t> offsets(kAddresses);
    std::iota(offsets.begin(), offsets.end(), size_t{0});
    ExpectSame(70, 8, Content::Random, offsets);
}

/// Rows that are worked on in parts, of which the last one is whole or begins before its place.
TEST_P(BayerInstructionSets, WidthsOfManyVectors) {
    for (const int width : {1020, 2050, 2052, 2058, 4092, 4098, 4100, 4106, 4162}) {
        ExpectSame(width, 8, Content::Random, {0});
    }
}

INSTANTIATE_TEST_SUITE_P(All, BayerInstructionSets,
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
            for (const int width : {6, 38, 70}) {
                ExpectSameOnAll(conversion, MakeRaw(width, 8, Content::Random, 255), {0, 1});
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, BayerStride, Combine(Values(0, 1, 2), Values(1, 2, 3, 4, 5)));

/// Words that hold more bits than the call says: layout.
class BayerWords : public testing::TestWithParam<int> {
protected:
    static void ExpectSame(int method, int bits) {
        Conversion conversion;
        conversion.form = Form::Rgb48;
        conversion.options.method = method;
        conversion.options.filter = GetParam();
        conversion.bits = bits;
        for (const Content content : kContents) {
            ExpectSameOnAll(conversion, MakeRaw(150, 8, content, 65535), {0, 1});
        }
    }
};

TEST_P(BayerWords, AreTakenAsTheyAreByTheFastMethods) {
    ExpectSame(0, 8);
    ExpectSame(2, 8);
}

/// Without a mosaic the words are copied as they are.
TEST_P(BayerWords, AreLimitedToTheBitsByTheEdgeDirectedMethod) {
    for (const int bits : {1, 8, 10, 12, 15, 16}) {
        ExpectSame(1, bits);
    }
}

INSTANTIATE_TEST_SUITE_P(All, BayerWords, Values(0, 1, 2, 3, 4));

}  // namespace
