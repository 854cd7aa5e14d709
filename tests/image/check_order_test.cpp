// What the functions refuse, and which refusal comes first.

#include <gtest/gtest.h>

#include "forms.h"

namespace {

/// The arguments of a call that succeeds, to be spoilt one by one.
struct Call {
    alignas(2) uint8_t source[512] = {};
    GuardedBytes destination{1024, 0};
    const void* src = source;
    void* dst = destination.Data();
    uint32_t width = 8;
    uint32_t height = 8;
    int32_t stride = 8;
    int32_t method = 0;
    int32_t order = 0;
};

/// An argument that is refused. Of two, the one that stands first in its table
/// decides.
struct Refusal {
    const char* name;
    void (*spoil)(Call& call);
    QY_STATUS status;
};

constexpr Refusal kOrder = {"order", [](Call& c) { c.order = 2; }, QY_NOT_SUPPORTED};
constexpr Refusal kNegativeOrder = {"negative order", [](Call& c) { c.order = -1; },
                                    QY_NOT_SUPPORTED};
constexpr Refusal kSource = {"source", [](Call& c) { c.src = nullptr; }, QY_PARAMETER_INVALID};
constexpr Refusal kDestination = {"destination", [](Call& c) { c.dst = nullptr; },
                                  QY_PARAMETER_INVALID};
constexpr Refusal kStride = {"stride", [](Call& c) { c.stride = 1; }, QY_PARAMETER_INVALID};
constexpr Refusal kNegativeStride = {"negative stride", [](Call& c) { c.stride = -8; },
                                     QY_PARAMETER_INVALID};
constexpr Refusal kOneColumn = {"one column", [](Call& c) { c.width = 1; }, QY_PARAMETER_INVALID};
constexpr Refusal kOneRow = {"one row", [](Call& c) { c.height = 1; }, QY_PARAMETER_INVALID};
constexpr Refusal kMethod = {"method", [](Call& c) { c.method = 3; }, QY_NOT_SUPPORTED};
constexpr Refusal kNegativeMethod = {"negative method", [](Call& c) { c.method = -1; },
                                     QY_NOT_SUPPORTED};
constexpr Refusal kOddWidth = {"odd width", [](Call& c) { c.width = 7; },
                               QY_PARAMETER_OUT_OF_BOUND};
constexpr Refusal kOddHeight = {"odd height", [](Call& c) { c.height = 7; },
                                QY_PARAMETER_OUT_OF_BOUND};
constexpr Refusal kNarrow = {"narrow", [](Call& c) { c.width = 2; }, QY_PARAMETER_OUT_OF_BOUND};
constexpr Refusal kLow = {"low", [](Call& c) { c.height = 2; }, QY_PARAMETER_OUT_OF_BOUND};
constexpr Refusal kNothing = {"nothing", [](Call& c) { c.width = 0; }, QY_PARAMETER_OUT_OF_BOUND};

struct Function {
    const char* name;
    QY_STATUS (*run)(const Call& call);
    std::vector<Refusal> refusals;
};

const Function kFunctions[] = {
    {"QyRaw8toRGB24",
     [](const Call& c) {
         return QyRaw8toRGB24(c.src, c.dst, c.width, c.height, c.method, QY_BAYER_RG, 0);
     },
     {kSource, kDestination, kMethod, kNegativeMethod, kOddWidth, kOddHeight, kNarrow, kLow,
      kNothing}},
    {"QyRaw8toRGB24Ex",
     [](const Call& c) {
         return QyRaw8toRGB24Ex(c.src, c.dst, c.width, c.height, c.method, QY_BAYER_RG, 0, c.order);
     },
     {kOrder, kNegativeOrder, kSource, kDestination, kMethod, kNegativeMethod, kOddWidth,
      kOddHeight, kNarrow, kLow, kNothing}},
    {"QyRaw8toARGB32",
     [](const Call& c) {
         return QyRaw8toARGB32(c.src, c.dst, c.width, c.height, c.stride, c.method, QY_BAYER_RG, 0,
                               0);
     },
     {kDestination, kOneColumn, kOneRow, kStride, kNegativeStride, kSource, kMethod,
      kNegativeMethod, kOddWidth, kOddHeight, kNarrow, kLow}},
    {"QyRaw16toRGB48",
     [](const Call& c) {
         return QyRaw16toRGB48(c.src, c.dst, c.width, c.height, 12, c.method, QY_BAYER_RG, 0);
     },
     {kSource, kDestination, kMethod, kNegativeMethod, kOddWidth, kOddHeight, kNarrow, kLow,
      kNothing}},
};

class CheckOrder : public testing::TestWithParam<Function> {};

TEST_P(CheckOrder, TakesACallThatIsRight) {
    Call call;
    EXPECT_EQ(GetParam().run(call), QY_OK);
    EXPECT_FALSE(call.destination.IsUntouched());
}

TEST_P(CheckOrder, TheFirstOfTwoBadArgumentsDecides) {
    const auto& refusals = GetParam().refusals;
    for (size_t first = 0; first < refusals.size(); ++first) {
        for (size_t second = first; second < refusals.size(); ++second) {
            Call call;
            refusals[second].spoil(call);
            refusals[first].spoil(call);
            EXPECT_EQ(GetParam().run(call), refusals[first].status)
                << refusals[first].name << " before " << refusals[second].name;
            EXPECT_TRUE(call.destination.IsUntouched());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, CheckOrder, testing::ValuesIn(kFunctions),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(CheckOrderOfSizes, TheEdgeDirectedMethodNeedsSixRowsAndColumns) {
    for (const auto& [width, height, status] : {std::tuple{4U, 6U, QY_PARAMETER_OUT_OF_BOUND},
                                                {6U, 4U, QY_PARAMETER_OUT_OF_BOUND},
                                                {6U, 6U, QY_OK}}) {
        Call call;
        EXPECT_EQ(QyRaw8toRGB24(call.src, call.dst, width, height, 1, 1, 0), status);
    }
}

}  // namespace
