// The checks of every call on a feature, and their order.

#include "support/ApiTest.h"
#include "support/FeatureCalls.h"
#include "support/FeatureRows.h"

namespace {

constexpr OV_FEATURE_ID kTypeBits = 0xF0000000;

class FeatureChecks : public OpenCameraTest, public testing::WithParamInterface<FeatureCall> {
protected:
    FeatureArguments Good() const { return {camera, GetParam().feature}; }
    bool ChecksType() const { return GetParam().order[1] == 'T'; }

    void Spoil(FeatureArguments& arguments, char check) const {
        const OV_FEATURE_ID known = GetParam().feature;
        switch (check) {
            case 'H':
                arguments.camera = nullptr;
                break;
            case 'T':
                arguments.feature = arguments.feature ^ 0x80000000;
                break;
            case 'N':
                arguments.feature =
                    (arguments.feature & kTypeBits) | (known & ~kTypeBits) | 0xFFFFFF;
                break;
            default:
                arguments.hasPointer = false;
        }
    }

    void ExpectRefused(FeatureArguments& arguments, char check) const {
        const OV_STATUS status = GetParam().run(arguments);
        switch (check) {
            case 'H':
                ExpectFailure(status, OV_STATUS_INVALID_HANDLE, "Invalid device handle");
                ExpectOwnName();
                break;
            case 'T':
                ExpectFailure(status, OV_STATUS_ERROR_TYPE, "FeatureID type error");
                break;
            case 'N':
                ExpectFailure(status, OV_STATUS_INVALID_PARAMETER, "Invalid feature ID");
                break;
            default:
                ExpectFailure(status, OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
                ExpectOwnName();
        }
        EXPECT_TRUE(arguments.IsUntouched());
    }

    bool IsImplemented(OV_FEATURE_ID id) const {
        bool isImplemented = true;
        EXPECT_OV_OK(OVIsImplemented(camera, id, &isImplemented));
        return isImplemented;
    }

    static void ExpectOwnName() {
        EXPECT_NE(LastError::Get().text.find("{" + std::string(GetParam().function) + ":line["),
                  std::string::npos)
            << LastError::Get().text;
    }
};

TEST_P(FeatureChecks, PassWhenAllIsRight) {
    FeatureArguments arguments = Good();
    EXPECT_OV_OK(GetParam().run(arguments));
}

TEST_P(FeatureChecks, TheFirstOfTwoBadArgumentsDecides) {
    const std::string order = GetParam().order;
    for (size_t first = 0; first < order.size(); ++first) {
        for (size_t second = first; second < order.size(); ++second) {
            SCOPED_TRACE(order.substr(first, 1) + order[second]);
            FeatureArguments arguments = Good();
            Spoil(arguments, order[first]);
            if (second != first) {
                Spoil(arguments, order[second]);
            }
            ExpectRefused(arguments, order[first]);
        }
    }
}

TEST_P(FeatureChecks, TheFirstDecidesWhenAllAreBad) {
    const std::string order = GetParam().order;
    FeatureArguments arguments = Good();
    for (const char check : order) {
        Spoil(arguments, check);
    }
    ExpectRefused(arguments, order.front());
}

TEST_P(FeatureChecks, EveryOtherTypeIsRefused) {
    for (OV_FEATURE_ID type = 0; type < 16; ++type) {
        FeatureArguments arguments = Good();
        arguments.feature = (arguments.feature & ~kTypeBits) | (type << 28);
        if (arguments.feature != GetParam().feature) {
            ExpectRefused(arguments, ChecksType() ? 'T' : 'N');
        }
    }
}

TEST_P(FeatureChecks, ANumberOfAnotherLevelIsNoFeature) {
    for (OV_FEATURE_LEVEL level = 1; level < 16; ++level) {
        FeatureArguments arguments = Good();
        arguments.feature |= level << 24;
        ExpectRefused(arguments, 'N');
    }
}

TEST_P(FeatureChecks, NothingIsCheckedBeforeTheLibraryIsOpen) {
    ASSERT_OV_OK(OVCloseLib());
    FeatureArguments arguments = Good();
    for (const char check : std::string(GetParam().order)) {
        Spoil(arguments, check);
    }
    ExpectFailure(GetParam().run(arguments), OV_STATUS_NOT_INIT_API, "Not init API");
    EXPECT_TRUE(arguments.IsUntouched());
}

TEST_P(FeatureChecks, AFeatureThatTheCameraLacksIsNotImplemented) {
    if (!ChecksType()) {
        return;
    }
    for (const FeatureRow& row : kFeatureRows) {
        if ((row.id & kTypeBits) != (GetParam().feature & kTypeBits) || IsImplemented(row.id)) {
            continue;
        }
        FeatureArguments arguments(camera, row.id);
        ExpectFailure(GetParam().run(arguments), OV_STATUS_NOT_IMPLEMENTED,
                      "The feature \"" + std::string(row.name) + "\" is not implemented");
        EXPECT_TRUE(arguments.IsUntouched());
    }
}

INSTANTIATE_TEST_SUITE_P(All, FeatureChecks, testing::ValuesIn(feature_calls::kAll),
                         [](const auto& test) { return NameOf(test.param); });

TEST_F(OpenCameraTest, ATypeErrorComesBeforeAFeatureThatTheCameraLacks) {
    int64_t value = 0;
    ExpectFailure(OVGetInt(camera, OV_FEATURE_MGCExposureTime, &value), OV_STATUS_ERROR_TYPE,
                  "FeatureID type error");
}

}  // namespace
