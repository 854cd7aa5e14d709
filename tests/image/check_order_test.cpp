// What the interpolating functions refuse, and which refusal comes first.

#include "Forms.h"
#include "Refusals.h"

namespace {

struct InterpolationCall {
    alignas(2) uint8_t source[512] = {};
    GuardedBytes destination{1024, 0};
    const void* src = source;
    void* dst = destination.Data();
    uint32_t width = 8;
    uint32_t height = 8;
    int32_t stride = 8;
    int32_t method = 0;
    int32_t filter = QY_BAYER_RG;
    int32_t order = 0;

    bool IsUntouched() const { return destination.IsUntouched(); }
};

using InterpolationRefusals = std::vector<Refusal<InterpolationCall>>;

const InterpolationRefusals kOrder = {
    {"order", [](InterpolationCall& c) { c.order = 2; }, QY_NOT_SUPPORTED},
    {"negative order", [](InterpolationCall& c) { c.order = -1; }, QY_NOT_SUPPORTED},
};
const Refusal<InterpolationCall> kSource = {"source", [](InterpolationCall& c) { c.src = nullptr; },
                                            QY_PARAMETER_INVALID};
const Refusal<InterpolationCall> kDestination = {
    "destination", [](InterpolationCall& c) { c.dst = nullptr; }, QY_PARAMETER_INVALID};
const InterpolationRefusals kStride = {
    kDestination,
    {"no column", [](InterpolationCall& c) { c.width = 0; }, QY_PARAMETER_INVALID},
    {"no row", [](InterpolationCall& c) { c.height = 0; }, QY_PARAMETER_INVALID},
    {"one column", [](InterpolationCall& c) { c.width = 1; }, QY_PARAMETER_INVALID},
    {"one row", [](InterpolationCall& c) { c.height = 1; }, QY_PARAMETER_INVALID},
    {"stride", [](InterpolationCall& c) { c.stride = 1; }, QY_PARAMETER_INVALID},
    {"negative stride", [](InterpolationCall& c) { c.stride = -8; }, QY_PARAMETER_INVALID},
    kSource,
};
const InterpolationRefusals kMethod = {
    {"method", [](InterpolationCall& c) { c.method = 3; }, QY_NOT_SUPPORTED},
    {"negative method", [](InterpolationCall& c) { c.method = -1; }, QY_NOT_SUPPORTED},
};
const InterpolationRefusals kSizes = {
    {"odd width", [](InterpolationCall& c) { c.width = 7; }, QY_PARAMETER_OUT_OF_BOUND},
    {"odd height", [](InterpolationCall& c) { c.height = 7; }, QY_PARAMETER_OUT_OF_BOUND},
    {"narrow", [](InterpolationCall& c) { c.width = 2; }, QY_PARAMETER_OUT_OF_BOUND},
    {"low", [](InterpolationCall& c) { c.height = 2; }, QY_PARAMETER_OUT_OF_BOUND},
};
const InterpolationRefusals kNothing = {
    {"no width", [](InterpolationCall& c) { c.width = 0; }, QY_PARAMETER_OUT_OF_BOUND},
    {"no height", [](InterpolationCall& c) { c.height = 0; }, QY_PARAMETER_OUT_OF_BOUND},
};

InterpolationRefusals Join(const std::vector<InterpolationRefusals>& parts) {
    InterpolationRefusals all;
    for (const InterpolationRefusals& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

const InterpolationRefusals kDense = Join({{kSource, kDestination}, kMethod, kSizes, kNothing});

struct Interpolation {
    const char* name;
    QY_STATUS (*run)(const InterpolationCall& call);
    InterpolationRefusals refusals;
};

const Interpolation kInterpolations[] = {
    {"QyRaw8toRGB24",
     [](const InterpolationCall& c) {
         return QyRaw8toRGB24(c.src, c.dst, c.width, c.height, c.method, c.filter, 0);
     },
     kDense},
    {"QyRaw8toRGB24Ex",
     [](const InterpolationCall& c) {
         return QyRaw8toRGB24Ex(c.src, c.dst, c.width, c.height, c.method, c.filter, 0, c.order);
     },
     Join({kOrder, kDense})},
    {"QyRaw8toARGB32",
     [](const InterpolationCall& c) {
         return QyRaw8toARGB32(c.src, c.dst, c.width, c.height, c.stride, c.method, c.filter, 0, 0);
     },
     Join({kStride, kMethod, kSizes})},
    {"QyRaw16toRGB48",
     [](const InterpolationCall& c) {
         return QyRaw16toRGB48(c.src, c.dst, c.width, c.height, 12, c.method, c.filter, 0);
     },
     kDense},
};

class CheckOrder : public testing::TestWithParam<Interpolation> {};

TEST_P(CheckOrder, TheFirstOfTwoBadArgumentsDecides) {
    ExpectFirstRefusalDecides(GetParam().refusals, GetParam().run);
}

TEST_P(CheckOrder, ALayoutThatIsUnknownOrAbsentSparesNoCheck) {
    for (const int filter : {-1, 0, 5}) {
        for (const Refusal<InterpolationCall>& refusal : GetParam().refusals) {
            InterpolationCall call;
            call.filter = filter;
            refusal.spoil(call);
            EXPECT_EQ(GetParam().run(call), refusal.status) << refusal.name << ", " << filter;
            EXPECT_TRUE(call.IsUntouched()) << refusal.name << ", " << filter;
        }
    }
}

TEST_P(CheckOrder, TheEdgeDirectedMethodNeedsSixRowsAndColumns) {
    for (const int filter : {0, 1, 5}) {
        for (const auto& [width, height, status] : {std::tuple{4U, 6U, QY_PARAMETER_OUT_OF_BOUND},
                                                    {6U, 4U, QY_PARAMETER_OUT_OF_BOUND},
                                                    {6U, 6U, QY_OK}}) {
            InterpolationCall call;
            call.method = QY_RAW2RGB_ADAPTIVE;
            call.filter = filter;
            call.width = width;
            call.height = height;
            EXPECT_EQ(GetParam().run(call), status) << width << " x " << height;
            EXPECT_TRUE(status == QY_OK || call.IsUntouched()) << width << " x " << height;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, CheckOrder, testing::ValuesIn(kInterpolations),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
