// A producer of GigE Vision cameras that exports none of the calls beyond the
// standard.

#include "support/ApiTest.h"

namespace {

constexpr const char* kMac = "00-AA-BB-CC-00-64";

class MissingCallTest : public ApiTest {
protected:
    MissingCallTest() : ApiTest("OvGVTL.cti") {}
};

TEST_F(MissingCallTest, LoadsAndOpensAsAnyOther) {
    Init();
    ASSERT_EQ(Update(), 1U);
    EXPECT_NE(Open(), nullptr);
}

TEST_F(MissingCallTest, TheConfigurationCallsSayThatTheProducerIsNotComplete) {
    const char* const text = "The TL library is not complete";
    Init();
    ExpectFailure(OVGigEForceIp(kMac, "10.0.0.5", "255.0.0.0", "10.0.0.1"), OV_STATUS_ERROR, text);
    ExpectFailure(OVGigEIpConfiguration(kMac, 6, nullptr, nullptr, nullptr, nullptr),
                  OV_STATUS_ERROR, text);
    ExpectFailure(OVGigEResetDevice(kMac, 1), OV_STATUS_ERROR, text);
}

}  // namespace
