// Every allocation beneath a call is refused in turn, alone and with all that follow.

#include <array>
#include <thread>

#include "MemoryTest.h"
#include "support/CallbackCounter.h"

namespace {

TEST_F(MemoryTest, AStartIsMadeOrUndone) {
    Run({.action = [this] { return OVStreamOn(camera); },
         .check =
             [this](OV_STATUS status) {
                 if (status == OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(OVStreamOff(camera));
                 }
                 ExpectClosed({"Buffer", "Event", "Acquisition"});
                 ExpectRoundOfFrames();
             }});
}

TEST_F(MemoryTest, AStartWithACallbackIsMadeOrUndone) {
    RegisterCallback();
    Run({.action = [this] { return OVStreamOn(camera); },
         .check =
             [this](OV_STATUS status) {
                 if (status == OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(OVStreamOff(camera));
                 }
                 ExpectClosed({"Buffer", "Event", "Acquisition"});
                 EXPECT_OV_OK(OVStreamOn(camera));
                 EXPECT_OV_OK(OVStreamOff(camera));
             }});
}

TEST_F(MemoryTest, AStopGoesToItsEnd) {
    Run({.prepare =
             [this] {
                 Start();
                 BorrowNew(2);
             },
         .action = [this] { return OVStreamOff(camera); },
         .check =
             [this](OV_STATUS) {
                 ExpectClosed({"Buffer", "Event", "Acquisition"});
                 ExpectRoundOfFrames();
             }});
}

TEST_F(MemoryTest, ACallbackForAnEventIsRegisteredOrNothingIs) {
    CallbackCounter counter;
    void* handle = nullptr;
    constexpr OV_FEATURE_ID kEvent = OV_FEATURE_EventExposureEndFrameID;
    const auto registerCallback = [&] {
        return OVRegisterFeatureCallback(camera, &counter, &CallbackCounter::OnEvent, kEvent,
                                         &handle);
    };
    Run({.prepare = [&] { handle = nullptr; },
         .action = registerCallback,
         .check =
             [&](OV_STATUS status) {
                 EXPECT_EQ(handle != nullptr, status == OV_STATUS_SUCCESS);
                 if (status != OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(registerCallback());
                 }
                 EXPECT_EQ(producer.OpenCount("Event"), 1);
                 const unsigned before = counter.events;
                 producer.FireExposureEnd(0, 0, 1);
                 CallbackCounter::Await(counter.events, before + 1);
                 EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, kEvent, handle));
                 CloseAndOpenAgain();
             }});
}

TEST_F(MemoryTest, ACallbackForAFeatureIsRegisteredOrNotAtAll) {
    static unsigned called = 0;
    void* handle = nullptr;
    const auto registerCallback = [&] {
        return OVRegisterFeatureCallback(
            camera, nullptr, [](OV_FEATURE_ID, void*) { ++called; }, OV_FEATURE_Width, &handle);
    };
    Run({.prepare = [&] { handle = nullptr; },
         .action = registerCallback,
         .check =
             [&](OV_STATUS status) {
                 called = 0;
                 EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 32));
                 EXPECT_EQ(called != 0, status == OV_STATUS_SUCCESS);
                 EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 64));
                 if (status != OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(registerCallback());
                 }
                 EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, OV_FEATURE_Width, handle));
             }});
}

TEST_F(MemoryTest, ACallbackForTheLossIsRegisteredOrNothingIs) {
    CallbackCounter counter;
    void* handle = nullptr;
    const auto registerCallback = [&] {
        return OVRegisterDeviceOfflineCallback(camera, &counter, &CallbackCounter::OnLoss, &handle);
    };
    Run({.prepare = [&] { handle = nullptr; },
         .action = registerCallback,
         .check =
             [&](OV_STATUS status) {
                 if (status != OV_STATUS_SUCCESS) {
                     EXPECT_EQ(producer.OpenCount("Event"), 0);
                     EXPECT_OV_OK(registerCallback());
                 }
                 EXPECT_EQ(producer.OpenCount("Event"), 1);
                 CloseAndOpenAgain();
             }});
}

/// After a close the handle is valid still, and the camera closes, or it is closed.
TEST_F(MemoryTest, ACloseOfAStreamingCameraIsMadeOrLeavesTheHandle) {
    CallbackCounter counter;
    void* handle = nullptr;
    Run({.prepare =
             [&] {
                 ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &counter,
                                                              &CallbackCounter::OnLoss, &handle));
                 ASSERT_OV_OK(OVRegisterFeatureCallback(camera, &counter, &CallbackCounter::OnEvent,
                                                        OV_FEATURE_EventExposureEndFrameID,
                                                        &handle));
                 Start();
                 BorrowNew(2);
             },
         .action = [this] { return OVCloseDevice(camera); },
         .check =
             [this](OV_STATUS status) {
                 if (status != OV_STATUS_SUCCESS && OVCloseDevice(camera) != OV_STATUS_SUCCESS) {
                     EXPECT_EQ(LastError::Get().status, OV_STATUS_INVALID_HANDLE);
                 }
                 ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
                 camera = Open();
                 ASSERT_NE(camera, nullptr);
             }});
}

TEST_F(MemoryTest, ACloseOfTheLibraryIsMadeOrCanBeRepeated) {
    Run({.prepare =
             [this] {
                 Start();
                 BorrowNew(1);
             },
         .action = [] { return OVCloseLib(); },
         .check =
             [this](OV_STATUS) {
                 EXPECT_OV_OK(OVCloseLib());
                 ExpectClosed({"Library", "System", "Interface", "Device", "Stream", "Buffer",
                               "Event", "Acquisition"});
                 OpenCameraTest::SetUp();
             }});
}

TEST_F(MemoryTest, AFailureIsToldWithoutMemory) {
    int64_t value = 0;
    int32_t told = 0;
    size_t size = 0;
    OV_STATUS asked = OV_STATUS_SUCCESS;
    Run({.action =
             [&] {
                 const OV_STATUS status = OVGetInt(camera, OV_FEATURE_PixelFormat, &value);
                 asked = OVGetLastError(&told, nullptr, &size);
                 return status == OV_STATUS_ERROR_TYPE ? OV_STATUS_SUCCESS : status;
             },
         .check =
             [&](OV_STATUS status) {
                 EXPECT_EQ(asked, OV_STATUS_SUCCESS);
                 EXPECT_TRUE(status == OV_STATUS_SUCCESS || status == OV_STATUS_ERROR) << status;
             }});
}

TEST_F(MemoryTest, AThreadWithoutMemoryHasNoFailureAtFirst) {
    std::array<char, 64> text{};
    int32_t status = -1;
    OV_STATUS asked = OV_STATUS_ERROR;
    std::thread([&] {
        const FailingMemory scarce(0, Shortage::Lasting);
        size_t size = text.size();
        asked = OVGetLastError(&status, text.data(), &size);
    }).join();
    EXPECT_EQ(asked, OV_STATUS_SUCCESS);
    EXPECT_EQ(status, OV_STATUS_SUCCESS);
    EXPECT_STREQ(text.data(), "{0}{No error occurred}");
}

}  // namespace
