// The text that settings give.

#include "PersistenceTest.h"
#include "TransportTest.h"

namespace OVTLClass {

namespace {

using namespace remote_camera;

const std::string kInfo =
    "# GenApi persistence file (version 3.0.2)\n"
    "# Vendor.Model::A camera = Device version = 4.5.6"
    " -- Product GUID = 11111111-2222-3333-4444-555555555555"
    " -- Product version GUID = 66666666-7777-8888-9999-AAAAAAAAAAAA\n";

TEST_F(PersistenceTest, NamesOfTheHeadersKeysAreKnown) {
    EXPECT_EQ(CFeaturePersistance::FILE_VERSION_KEY, "FileVersion");
    EXPECT_EQ(CFeaturePersistance::DEVICE_MODEL_KEY, "DeviceModelName");
}

TEST_F(PersistenceTest, TheTextHasAHeaderAndThreeParts) {
    remote.port.Put<int32_t>(kOffset, -7);
    remote.port.Put<int32_t>(kBank, 1);
    remote.port.Put<int32_t>(kGainRaw, 25);
    remote.port.Put<int32_t>(kLevel, 100);
    remote.port.Put<int32_t>(kLevel + 4, 200);
    local.port.Put<int32_t>(0x10, 11);
    stream.port.Put<int32_t>(0x10, 12);
    EXPECT_EQ(Export(), "FileVersion: 1.0\nDeviceModelName: Camera One\n" + kRemoteBanner + kMark +
                            kInfo +
                            "Offset\t-7\n"
                            "Bank\t0\nLevel\t100\nBank\t1\nLevel\t200\nBank\t1\n"
                            "Gain\t2.5\n" +
                            kLocalBanner + kMark + kInfo + "Delay\t11\n" + kStreamBanner + kMark +
                            kInfo + "Depth\t12\n");
}

TEST_F(PersistenceTest, BannersHaveFiftyOneHyphensOnEachSide) {
    EXPECT_THAT(Export(), testing::HasSubstr(
                              "\n\n</---------------------------------------------------Local "
                              "device features are as follows:---------------------------------"
                              "------------------>\n# {"));
}

TEST_F(PersistenceTest, SelectorsAreLeftAsFound) {
    remote.port.Put<int32_t>(kBank, 1);
    Export();
    EXPECT_EQ(remote.At(kBank), 1);
}

TEST_F(PersistenceTest, AFailureOfACameraIsTold) {
    remote.port.FailAccess(1);
    EXPECT_UNEXPECTED(-1, "Access failed", Export());
}

TEST_F(PersistenceTest, NeedsANodeMapInEachReference) {
    GenApi_3_0_ORVANE::CNodeMapRef empty;
    const auto make = [&](auto& first, auto& second, auto& third) {
        EXPECT_THROW(
            try {
                CFeaturePersistance(first, second, third);
            } catch (const std::runtime_error& error) {
                EXPECT_STREQ(error.what(), "Invalid feature node map");
                throw;
            },
            std::runtime_error);
    };
    make(empty, local.nodes, stream.nodes);
    make(remote.nodes, empty, stream.nodes);
    make(remote.nodes, local.nodes, empty);
}

/// A remote device without a model, and the failure of an export.
struct ModelCase {
    const char* name;
    const char* node;
};

const ModelCase kNoModels[] = {
    {"None", ""},
    {"APort", "<Port Name=\"DeviceModelName\"/>"},
};

class NoModelTest : public PersistenceTest, public testing::WithParamInterface<ModelCase> {
protected:
    NoModelTest() : PersistenceTest(GetParam().node + kSettings) {}
};

TEST_P(NoModelTest, HasNoTextAndTakesNone) {
    try {
        Export();
        ADD_FAILURE() << "nothing was raised";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Failed to get device model");
    }
    EXPECT_EQ(RefusalOf(TextWith("")), "Failed to get device model");
}

INSTANTIATE_TEST_SUITE_P(All, NoModelTest, testing::ValuesIn(kNoModels),
                         [](const auto& test) { return std::string(test.param.name); });

class UnreadableModelTest : public PersistenceTest {
protected:
    UnreadableModelTest()
        : PersistenceTest(
              "<StringReg Name=\"DeviceModelName\"><Address>0x100</Address>"
              "<Length>16</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>"
              "</StringReg>" +
              kSettings) {}
};

TEST_F(UnreadableModelTest, IsTheEnginesFailure) {
    remote.port.FailAccess(1);
    EXPECT_UNEXPECTED(-1, "Access failed", Export());
    remote.port.FailAccess(1);
    EXPECT_UNEXPECTED(-1, "Access failed", Import(TextWith("")));
}

}  // namespace

}  // namespace OVTLClass
