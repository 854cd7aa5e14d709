// From a key or a place in the list to an open camera.

#include <future>

#include "support/ApiTest.h"

namespace {

class OpenTest : public ApiTest {
protected:
    void SetUp() override { Init(); }

    static OV_STATUS OpenBy(const char* key, OV_OPEN_MODE mode, OV_DEV_HANDLE* handle,
                            OV_ACCESS_MODE access = OV_ACCESS_EXCLUSIVE) {
        const OV_OPEN_PARAM param{key, mode, access};
        return OVOpenDevice(&param, handle);
    }
    static std::string IdOf(OV_DEV_HANDLE handle) {
        char text[64] = {};
        size_t size = sizeof(text);
        EXPECT_OV_OK(OVGetString(handle, OV_FEATURE_DeviceUserID, text, &size));
        return text;
    }
    void ExpectNothingOpen() const {
        for (const char* const kind : {"Device", "Stream", "Event"}) {
            EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
        }
    }
    uint64_t Searches() const { return producer.CallCount("IFUpdateDeviceList"); }

    OV_DEV_HANDLE handle = nullptr;
};

TEST_F(OpenTest, ByIndexWithNoSearchBeforeSearchesForTwoHundredMilliseconds) {
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &handle));
    EXPECT_EQ(producer.SearchTimeout(0), 200);
    EXPECT_EQ(Searches(), 1U);
}

TEST_F(OpenTest, OfAKnownCameraDoesNotSearch) {
    Update();
    const uint64_t before = Searches();
    EXPECT_OV_OK(OpenBy("SN0_0", OV_OPEN_SN, &handle));
    EXPECT_EQ(Searches(), before);
}

TEST_F(OpenTest, OfACameraThatCameLaterSearchesOnce) {
    Update();
    producer.SetDeviceCount(0, 2);
    const uint64_t before = Searches();
    EXPECT_OV_OK(OpenBy("SN0_1", OV_OPEN_SN, &handle));
    EXPECT_EQ(Searches(), before + 1);
    EXPECT_EQ(IdOf(handle), "User0_1");
}

TEST_F(OpenTest, OfAnUnknownKeySearchesOnceAndFails) {
    Update();
    const uint64_t before = Searches();
    ExpectFailure(OpenBy("nobody", OV_OPEN_USERID, &handle), OV_STATUS_NOT_FOUND_DEVICE,
                  "Not found device");
    EXPECT_EQ(Searches(), before + 1);
}

struct Place {
    const char* name;
    const char* key;
    /// Empty when it can't be opened.
    const char* camera;
    const char* message;
};

class OpenByPlace : public OpenTest, public testing::WithParamInterface<Place> {};

TEST_P(OpenByPlace, ReadsTheDigitsThatItBeginsWith) {
    producer.SetDeviceCount(0, 2);
    Update();
    const OV_STATUS status = OpenBy(GetParam().key, OV_OPEN_INDEX, &handle);
    if (*GetParam().camera != '\0') {
        ASSERT_OV_OK(status);
        EXPECT_EQ(IdOf(handle), GetParam().camera);
    } else {
        ExpectFailure(status, OV_STATUS_OUT_OF_RANGE, GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, OpenByPlace,
                         testing::Values(Place{"First", "1", "User0_0", ""},
                                         Place{"Second", "2", "User0_1", ""},
                                         Place{"LettersBehind", "2nd", "User0_1", ""},
                                         Place{"BlanksBefore", "  2", "User0_1", ""},
                                         Place{"ZerosBefore", "002", "User0_1", ""},
                                         Place{"NoDigit", "camera", "", "Index should not be 0"},
                                         Place{"Zero", "0", "", "Index should not be 0"},
                                         Place{"Blank", " ", "", "Index should not be 0"},
                                         Place{"Beyond", "3", "", "Index out of range"},
                                         Place{"Negative", "-1", "", "Index out of range"}),
                         [](const auto& of) { return std::string(of.param.name); });

TEST_F(OpenTest, ByKeyComparesEveryByte) {
    producer.SetDeviceText(0, 0, "UserID", "Left");
    for (const char* const key : {"left", "Lef", "Left ", " Left", "Leftx"}) {
        ExpectFailure(OpenBy(key, OV_OPEN_USERID, &handle), OV_STATUS_NOT_FOUND_DEVICE,
                      "Not found device");
    }
    EXPECT_OV_OK(OpenBy("Left", OV_OPEN_USERID, &handle));
}

TEST_F(OpenTest, ByAKeyOfSeveralCamerasTakesTheFirst) {
    producer.SetDeviceCount(0, 2);
    producer.SetDeviceText(0, 0, "SerialNumber", "twin");
    producer.SetDeviceText(0, 1, "SerialNumber", "twin");
    EXPECT_OV_OK(OpenBy("twin", OV_OPEN_SN, &handle));
    EXPECT_EQ(IdOf(handle), "User0_0");
    OV_DEV_HANDLE other = nullptr;
    ExpectFailure(OpenBy("twin", OV_OPEN_SN, &other), OV_STATUS_INVALID_ACCESS,
                  "The device has already been opened");
}

TEST_F(OpenTest, ByTheKeyOfOneModeIsNotFoundByAnother) {
    for (const OV_OPEN_MODE mode : {OV_OPEN_MAC, OV_OPEN_USERID}) {
        ExpectFailure(OpenBy("SN0_0", mode, &handle), OV_STATUS_NOT_FOUND_DEVICE,
                      "Not found device");
    }
}

TEST_F(OpenTest, ByIndexIsExclusive) {
    Update();
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &handle));
    EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Width, 32));
}

TEST_F(OpenTest, ForReadingOnlyRefusesWrites) {
    ASSERT_OV_OK(OpenBy("1", OV_OPEN_INDEX, &handle, OV_ACCESS_READONLY));
    int64_t width = 0;
    EXPECT_OV_OK(OVGetInt(handle, OV_FEATURE_Width, &width));
    EXPECT_EQ(OVSetInt(handle, OV_FEATURE_Width, 32), OV_STATUS_INVALID_ACCESS);
}

TEST_F(OpenTest, TwiceIsRefusedInEveryMode) {
    ASSERT_OV_OK(OpenBy("SN0_0", OV_OPEN_SN, &handle, OV_ACCESS_CONTROL));
    OV_DEV_HANDLE other = nullptr;
    for (const OV_ACCESS_MODE access :
         {OV_ACCESS_READONLY, OV_ACCESS_CONTROL, OV_ACCESS_EXCLUSIVE}) {
        ExpectFailure(OpenBy("User0_0", OV_OPEN_USERID, &other, access), OV_STATUS_INVALID_ACCESS,
                      "The device has already been opened");
    }
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(producer.CallCount("IFOpenDevice"), 1U);
}

TEST_F(OpenTest, OfACameraWithoutAStreamEndsClosed) {
    producer.SetStreamNumber(0, 0, "Count", 0);
    ExpectFailure(OVOpenDeviceByIndex(1, &handle), OV_STATUS_ERROR, "DataStream's number is 0");
    EXPECT_EQ(handle, nullptr);
    ExpectNothingOpen();
    producer.SetStreamNumber(0, 0, "Count", 1);
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &handle));
}

TEST_F(OpenTest, OpensTheFirstOfSeveralStreamsOnly) {
    producer.SetStreamNumber(0, 0, "Count", 3);
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &handle));
    EXPECT_EQ(producer.OpenCount("Stream"), 1);
}

TEST_F(OpenTest, OfAStreamThatFailsEndsClosed) {
    Update();
    producer.FailCall("DevOpenDataStream", 1, -1010);
    EXPECT_EQ(OVOpenDeviceByIndex(1, &handle), -1010);
    ExpectNothingOpen();
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &handle));
}

TEST_F(OpenTest, OfACameraThatVanishedFailsAndLeavesTheList) {
    Update();
    producer.LoseDevice(0, 0);
    EXPECT_NE(OVOpenDeviceByIndex(1, &handle), OV_STATUS_SUCCESS);
    ExpectNothingOpen();
    size_t size = 0;
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(nullptr, &size));
    EXPECT_EQ(size, sizeof(OV_DEVICE_BASE_INFO));
    producer.ReturnDevice(0, 0);
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &handle));
}

TEST_F(OpenTest, AHandleOutlivesTheListThatItCameFrom) {
    Update();
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &handle));
    producer.SetDeviceCount(0, 3);
    Update();
    EXPECT_EQ(IdOf(handle), "User0_0");
    OV_DEV_HANDLE other = nullptr;
    ExpectFailure(OVOpenDeviceByIndex(1, &other), OV_STATUS_INVALID_ACCESS,
                  "The device has already been opened");
    EXPECT_OV_OK(OVCloseDevice(handle));
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &other));
}

TEST_F(OpenTest, ACameraThatCameBackServesItsOldHandle) {
    Update();
    ASSERT_OV_OK(OVOpenDeviceByIndex(1, &handle));
    producer.LoseDevice(0, 0);
    EXPECT_EQ(Update(), 0U);
    EXPECT_EQ(OVSetInt(handle, OV_FEATURE_Width, 32), OV_STATUS_OFFLINE);
    producer.ReturnDevice(0, 0);
    EXPECT_EQ(Update(), 1U);
    EXPECT_OV_OK(OVSetInt(handle, OV_FEATURE_Width, 32));
    OV_DEV_HANDLE other = nullptr;
    ExpectFailure(OVOpenDeviceByIndex(1, &other), OV_STATUS_INVALID_ACCESS,
                  "The device has already been opened");
}

TEST_F(OpenTest, TwoThreadsGetOneHandle) {
    Update();
    producer.BlockCall("IFOpenDevice");
    const auto open = [] {
        OV_DEV_HANDLE opened = nullptr;
        return OVOpenDeviceByIndex(1, &opened);
    };
    auto first = std::async(std::launch::async, open);
    ASSERT_EQ(producer.WaitForCalls("IFOpenDevice", 1, 60000), 0);
    auto second = std::async(std::launch::async, open);
    producer.ReleaseCall("IFOpenDevice");
    EXPECT_EQ(first.get() + second.get(), OV_STATUS_INVALID_ACCESS);
    EXPECT_EQ(producer.OpenCount("Device"), 1);
    EXPECT_EQ(producer.CallCount("IFOpenDevice"), 1U);
}

TEST_F(OpenTest, OfTwoCamerasDoesNotWaitForEachOther) {
    producer.SetDeviceCount(0, 2);
    Update();
    producer.BlockCall("DevOpenDataStream");
    auto first = std::async(std::launch::async, [] {
        OV_DEV_HANDLE opened = nullptr;
        return OVOpenDeviceByIndex(1, &opened);
    });
    auto second = std::async(std::launch::async, [] {
        OV_DEV_HANDLE opened = nullptr;
        return OVOpenDeviceByIndex(2, &opened);
    });
    EXPECT_EQ(producer.WaitForCalls("DevOpenDataStream", 2, 60000), 0) << "both are opening";
    producer.ReleaseCall("DevOpenDataStream");
    EXPECT_EQ(first.get(), OV_STATUS_SUCCESS);
    EXPECT_EQ(second.get(), OV_STATUS_SUCCESS);
}

}  // namespace
