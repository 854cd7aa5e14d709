// What a feature allows in the states of a camera.

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "support/AcquisitionTest.h"
#include "support/FeatureCalls.h"

namespace {

using FeatureState = AcquisitionTest;

TEST_F(FeatureState, TheImagesSizeIsLockedWhileFramesFlow) {
    Start();
    bool isWritable = true;
    EXPECT_OV_OK(OVIsWritable(camera, OV_FEATURE_Width, &isWritable));
    EXPECT_FALSE(isWritable);
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_Width, 16), OV_STATUS_INVALID_ACCESS);
    Stop();
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 16));
}

TEST_F(FeatureState, ACameraOpenedForReadingTakesNoValue) {
    ASSERT_OV_OK(OVCloseDevice(camera));
    const OV_OPEN_PARAM param{"1", OV_OPEN_INDEX, OV_ACCESS_READONLY};
    ASSERT_OV_OK(OVOpenDevice(&param, &camera));
    int64_t width = 0;
    EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &width));
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_Width, 16), OV_STATUS_INVALID_ACCESS);
    EXPECT_EQ(OVSendCommand(camera, OV_FEATURE_TriggerSoftware), OV_STATUS_INVALID_ACCESS);
}

TEST_F(FeatureState, AValueInTheCacheIsReadWithoutTheCamera) {
    int64_t before = 0;
    ASSERT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &before));
    producer.LoseDevice(0, 0);
    int64_t after = 0;
    EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &after));
    EXPECT_EQ(after, before);
    EXPECT_EQ(OVSetInt(camera, OV_FEATURE_Width, 16), OV_STATUS_OFFLINE);
}

TEST_F(FeatureState, ATextMustFitIntoItsRegisterWithItsZero) {
    size_t longest = 0;
    ASSERT_OV_OK(OVGetStringMaxLength(camera, OV_FEATURE_DeviceUserID, &longest));
    EXPECT_EQ(longest, 65U) << "a device may fill the register without a zero";
    EXPECT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, std::string(63, 'x').c_str()));
    ExpectFailure(OVSetString(camera, OV_FEATURE_DeviceUserID, std::string(64, 'x').c_str()),
                  OV_STATUS_OUT_OF_RANGE, "String exceeds maximum length. Max length is 64");
}

TEST_F(FeatureState, ANewUserIdOpensTheCameraWithoutASearch) {
    ASSERT_OV_OK(OVSetString(camera, OV_FEATURE_DeviceUserID, "new"));
    ASSERT_OV_OK(OVCloseDevice(camera));
    const uint64_t searches = producer.CallCount("IFUpdateDeviceList");
    const OV_OPEN_PARAM param{"new", OV_OPEN_USERID, OV_ACCESS_EXCLUSIVE};
    EXPECT_OV_OK(OVOpenDevice(&param, &camera));
    EXPECT_EQ(producer.CallCount("IFUpdateDeviceList"), searches);
}

TEST_F(FeatureState, AFeatureThatIsDescribedButMissingIsNeitherReadableNorWritable) {
    const std::string description = DescribeCamera(
        R"(<Integer Name="Never"><Value>0</Value></Integer>
           <Integer Name="Width"><pIsImplemented>Never</pIsImplemented><Value>1</Value></Integer>)");
    ASSERT_OV_OK(OVCloseDevice(camera));
    producer.SetDescription("Remote", "Missing.xml", description.data(), description.size());
    camera = Open();
    for (auto* const ask : {&OVIsImplemented, &OVIsReadable, &OVIsWritable}) {
        bool answer = true;
        EXPECT_OV_OK(ask(camera, OV_FEATURE_Width, &answer));
        EXPECT_FALSE(answer);
    }
    bool answer = true;
    EXPECT_OV_OK(OVIsImplemented(camera, OV_FEATURE_Height, &answer));
    EXPECT_FALSE(answer);
    for (auto* const ask : {&OVIsReadable, &OVIsWritable}) {
        ExpectFailure(ask(camera, OV_FEATURE_Height, &answer), OV_STATUS_NOT_IMPLEMENTED,
                      "The feature \"Height\" is not implemented");
    }
}

TEST_F(FeatureState, TheAcquisitionsCommandsAreItsStartAndStop) {
    ASSERT_OV_OK(OVSendCommand(camera, OV_FEATURE_AcquisitionStart));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 1);
    EXPECT_EQ(ParamsLocked(), 1U);
    ASSERT_OV_OK(OVSendCommand(camera, OV_FEATURE_AcquisitionStop));
    EXPECT_EQ(producer.OpenCount("Acquisition"), 0);
    EXPECT_EQ(ParamsLocked(), 0U);
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStart"), 1);
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStop"), 1);
}

TEST_F(FeatureState, ThreadsMayUseTheFeaturesOfOneCamera) {
    constexpr int kRounds = 100;
    std::atomic<int> failures{0};
    const auto run = [&](auto call) {
        return std::thread([&failures, call] {
            for (int round = 0; round < kRounds; ++round) {
                failures += call(round) == OV_STATUS_SUCCESS ? 0 : 1;
            }
        });
    };
    std::thread threads[] = {
        run([this](int round) { return OVSetInt(camera, OV_FEATURE_Width, 8 + round % 4 * 8); }),
        run([this](int) {
            OV_INT_RANGE range{};
            return OVGetIntRange(camera, OV_FEATURE_Width, &range);
        }),
        run([this](int round) {
            return OVSetString(camera, OV_FEATURE_DeviceUserID, std::to_string(round).c_str());
        }),
        run([this](int) {
            char text[65];
            size_t size = sizeof text;
            return OVGetString(camera, OV_FEATURE_DeviceUserID, text, &size);
        }),
        run([](int) {
            OV_DEVICE_BASE_INFO info{};
            size_t size = sizeof info;
            return OVGetAllDeviceBaseInfo(&info, &size);
        }),
    };
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}

/// A camera whose features a capture callback reads and sets.
struct Handed {
    OV_DEV_HANDLE camera;
    std::promise<std::array<OV_STATUS, 2>> statuses;
};

TEST_F(FeatureState, FeaturesMayBeUsedInACaptureCallback) {
    Handed handed{camera, {}};
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &handed, [](OV_FRAME_CALLBACK_PARAM* frame) {
        auto& self = *static_cast<Handed*>(frame->pUserParam);
        int64_t width = 0;
        const OV_STATUS read = OVGetInt(self.camera, OV_FEATURE_Width, &width);
        self.statuses.set_value(
            {read, OVSetFloat(self.camera, OV_FEATURE_ExposureTime, static_cast<double>(width))});
    }));
    Start();
    producer.Trigger(0, 0, 1);
    auto result = handed.statuses.get_future();
    ASSERT_EQ(result.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_EQ(result.get(), (std::array<OV_STATUS, 2>{}));
    Stop();
    double exposure = 0;
    EXPECT_OV_OK(OVGetFloat(camera, OV_FEATURE_ExposureTime, &exposure));
    EXPECT_DOUBLE_EQ(exposure, 64);
}

}  // namespace
