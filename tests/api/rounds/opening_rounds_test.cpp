// One camera that two threads want, and the library that two threads start.

#include <array>

#include "Rounds.h"

namespace {

class OpeningRoundsTest : public RoundsTest {
protected:
    using Opening = std::function<OV_STATUS(OV_DEV_HANDLE*)>;

    static Opening ByIndex(uint32_t index) {
        return [index](OV_DEV_HANDLE* camera) { return OVOpenDeviceByIndex(index, camera); };
    }
    static Opening ByAddress(const char* address) {
        return [address](OV_DEV_HANDLE* camera) {
            const OV_OPEN_PARAM param{address, OV_OPEN_IP, OV_ACCESS_EXCLUSIVE};
            return OVOpenDevice(&param, camera);
        };
    }

    /// Both at once; the second begins when `between` is done, which happens while the
    /// first is in that call of the producer. One of them has the camera then.
    void ExpectOneHandle(TestProducer& producer, const char* call, const Opening& first,
                         const std::function<void()>& between, const Opening& second) {
        std::array<OV_DEV_HANDLE, 2> cameras{};
        HeldCall held(producer, call);
        Beside one([&] { return first(&cameras[0]); });
        held.WaitFor(1);
        between();
        Beside two([&] { return second(&cameras[1]); });
        held.Release();
        const std::array<OV_STATUS, 2> statuses = {one.Join(), two.Join()};
        const size_t winner = statuses[0] == OV_STATUS_SUCCESS ? 0 : 1;
        EXPECT_EQ(statuses[winner], OV_STATUS_SUCCESS) << one.GetText() << two.GetText();
        EXPECT_EQ(statuses[1 - winner], OV_STATUS_INVALID_ACCESS) << one.GetText() << two.GetText();
        EXPECT_EQ(cameras[1 - winner], nullptr);
        EXPECT_OV_OK(OVSetInt(cameras[winner], OV_FEATURE_Width, 32));
        EXPECT_OV_OK(OVCloseDevice(cameras[winner]));
        ExpectClosed({"Device", "Stream"});
    }
};

constexpr const char* kOpenCalls[] = {"IFOpenDevice", "DevGetPort", "DevOpenDataStream"};

TEST_F(OpeningRoundsTest, OneOfTwoThreadsHasTheCameraWithAListUpdateInBetween) {
    Run([&](unsigned round) {
        TestProducer& producer = round % 2 == 0 ? gev : custom;
        const Opening open = ByIndex(IndexOf((round % 2 == 0 ? "Gev" : "") + IdOf(0, 0)));
        ExpectOneHandle(
            producer, kOpenCalls[round / 2 % std::size(kOpenCalls)], open,
            [] { EXPECT_EQ(Update(), kCameras); }, open);
    });
    // Nothing is left that would spoil the end.
    EXPECT_OV_OK(OVCloseLib());
    ASSERT_OV_OK(OVInitLib());
}

TEST_F(OpeningRoundsTest, OneOfTwoThreadsHasTheCameraByIndexOrAddress) {
    constexpr const char* kAddress = "192.168.77.1";
    gev.SetDeviceNumber(0, 0, "IP", 0xC0A84D01);
    // A list that changed is read anew, with the address.
    gev.LoseDevice(0, 1);
    ASSERT_EQ(Update(), kCameras - 1);
    gev.ReturnDevice(0, 1);
    ASSERT_EQ(Update(), kCameras);
    Run([&](unsigned round) {
        const Opening byIndex = ByIndex(IndexOf("Gev" + IdOf(0, 0)));
        const Opening byAddress = ByAddress(kAddress);
        const bool isIndexFirst = round % 2 == 0;
        ExpectOneHandle(
            gev, kOpenCalls[round / 2 % std::size(kOpenCalls)], isIndexFirst ? byIndex : byAddress,
            [] { EXPECT_EQ(Update(), kCameras); }, isIndexFirst ? byAddress : byIndex);
    });
}

TEST_F(OpeningRoundsTest, OneOfTwoThreadsHasAnUnlistedAddress) {
    constexpr const char* kAddress = "10.1.2.3";
    gev.SetDeviceNumber(0, 0, "IP", 0x0A010203);
    gev.SetForeign(0, 0, 1);
    ASSERT_EQ(Update(), kCameras - 1);
    Run([&](unsigned round) {
        // Two ways to write it.
        ExpectOneHandle(
            gev, kOpenCalls[round % std::size(kOpenCalls)], ByAddress(kAddress), [] {},
            ByAddress(round % 2 == 0 ? kAddress : "010.01.2.3"));
    });
}

TEST_F(OpeningRoundsTest, TwoThreadsStartAndTwoThreadsEndTheLibrary) {
    Run([&](unsigned /*round*/) {
        for (OV_STATUS (*const call)() : {&OVCloseLib, &OVInitLib}) {
            Beside first(call);
            Beside second(call);
            EXPECT_EQ(first.Join(), OV_STATUS_SUCCESS) << first.GetText();
            EXPECT_EQ(second.Join(), OV_STATUS_SUCCESS) << second.GetText();
        }
        EXPECT_EQ(gev.OpenCount("Library"), 1);
    });
}

}  // namespace
