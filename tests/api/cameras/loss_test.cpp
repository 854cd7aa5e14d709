// A camera leaves the bus while it is used, and is found again.

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <functional>

#include "CameraTest.h"
#include "OvINodes.h"
#include "support/FrameCounter.h"
#include "support/RunRounds.h"

namespace {

constexpr uint32_t kNever = 3600000;

class CameraLoss : public CameraTest {
protected:
    /// What one use of the camera hears.
    struct CallbackCounter {
        FrameCounter frames;
        std::atomic<unsigned> losses{0};

        static void OnLoss(void* user) {
            auto* const counter = static_cast<CallbackCounter*>(user);
            ++counter->losses;
            counter->losses.notify_all();
        }
        void AwaitLoss() { losses.wait(0); }
    };

    void SetUp() override {
        CameraTest::SetUp();
        SpoilCameras();
        Supply().HastenLoss(camera);
    }

    void ListenForLoss(CallbackCounter& counter) const {
        OV_EVENT_CALLBACK_HANDLE handle = nullptr;
        ASSERT_OV_OK(
            OVRegisterDeviceOfflineCallback(camera, &counter, &CallbackCounter::OnLoss, &handle));
    }
    void Start(CallbackCounter& counter) const {
        ListenForLoss(counter);
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &counter.frames, &FrameCounter::OnFrame));
        ASSERT_OV_OK(OVStreamOn(camera));
    }
    void DropOff(uint32_t milliseconds) const {
        Write(camera, kDropOffTime, milliseconds);
        Write(camera, kDropOff, 1);
    }
    /// The camera is open again and delivers.
    void ExpectFrames() {
        CallbackCounter counter;
        camera = OpenQuick();
        Start(counter);
        counter.frames.WaitFor(3);
        EXPECT_OV_OK(OVCloseDevice(camera));
        EXPECT_EQ(counter.losses, 0U);
    }
    void LoseForEver() {
        ListenForLoss(m_first);
        DropOff(kNever);
        m_first.AwaitLoss();
    }

private:
    CallbackCounter m_first;
};

TEST_F(CameraLoss, IsToldWhileFramesFlowAndTheCameraComesBack) {
    CallbackCounter counter;
    Start(counter);
    counter.frames.WaitFor(3);
    DropOff(50);
    counter.AwaitLoss();
    int64_t ticks = 0;  // never from a cache
    EXPECT_EQ(OVGetInt(camera, OV_FEATURE_TimestampLatchValue, &ticks), OV_STATUS_OFFLINE);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(counter.losses, 1U);
    AwaitCameras(kCameras);
    ExpectFrames();
}

TEST_F(CameraLoss, TakesTheCameraOffTheList) {
    const std::string other = Records()[1].szSN;
    DropOff(kNever);
    AwaitCameras(kCameras - 1);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(Update(), kCameras - 1);
    EXPECT_EQ(Records()[0].szSN, other);
}

TEST_F(CameraLoss, NeedsACloseAlsoWhenTheCameraIsBackAtOnce) {
    CallbackCounter counter;
    Start(counter);
    DropOff(0);
    counter.AwaitLoss();
    AwaitCameras(kCameras);
    EXPECT_EQ(OVSetFloat(camera, OV_FEATURE_Gain, 1), OV_STATUS_OFFLINE);
    EXPECT_OV_OK(OVCloseDevice(camera));
    AwaitCameras(kCameras);
    ExpectFrames();
}

TEST_F(CameraLoss, ComesAfterTheFramesThatAreSet) {
    Write(camera, kDropOffTime, 0);
    Write(camera, kDropOffFrames, 4);
    CallbackCounter counter;
    Start(counter);
    counter.AwaitLoss();
    counter.frames.WaitFor(4);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(counter.frames.GetCount(), 4U);
    AwaitCameras(kCameras);
    ExpectFrames();
}

TEST_F(CameraLoss, IsToldWhoRegistersLate) {
    LoseForEver();
    CallbackCounter late;
    ListenForLoss(late);
    late.AwaitLoss();
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(late.losses, 1U);
}

/// From wherever the application is when it closes the camera.
TEST_F(CameraLoss, CanComeAtAnyMomentAgainAndAgain) {
    constexpr double kShare = 0.2;
    RunRounds(
        [this](unsigned round) {
            CallbackCounter counter;
            Start(counter);
            counter.frames.WaitFor(round % 3);
            DropOff(round % 5);
            if (round % 2 == 0) {
                counter.AwaitLoss();
            }
            EXPECT_OV_OK(OVCloseDevice(camera));
            EXPECT_LE(counter.losses, 1U);
            AwaitCameras(kCameras);
            camera = OpenQuick();
            Supply().HastenLoss(camera);
        },
        kShare);
    EXPECT_OV_OK(OVCloseDevice(camera));
    ExpectFrames();
}

// What calls come to afterwards.

/// A call on a lost camera.
struct LateCall {
    const char* name;
    std::function<OV_STATUS(OV_DEV_HANDLE)> run;
    OV_STATUS status = OV_STATUS_OFFLINE;
};

std::string SettingsFile() {
    return (std::filesystem::path(testing::TempDir()) / ("late_" + std::to_string(getpid())))
        .string();
}

/// With values that no cache has.
const LateCall kLateCalls[] = {
    {"OVGetInt",
     [](OV_DEV_HANDLE c) {
         int64_t ticks = 0;
         return OVGetInt(c, OV_FEATURE_TimestampLatchValue, &ticks);
     }},
    {"OVGetFloat",
     [](OV_DEV_HANDLE c) {
         double rate = 0;
         return OVGetFloat(c, OV_FEATURE_DeviceTemperature, &rate);
     }},
    {"OVGetEnum",
     [](OV_DEV_HANDLE c) {
         int64_t value = 0;
         return OVGetEnum(c, OV_FEATURE_TestPattern, &value);
     }},
    {"OVGetBool",
     [](OV_DEV_HANDLE c) {
         bool value = false;
         return OVGetBool(c, OV_FEATURE_AcquisitionStatus, &value);
     }},
    {"OVGetString",
     [](OV_DEV_HANDLE c) {
         size_t size = 0;
         return OVGetString(c, OV_FEATURE_DeviceFirmwareVersion, nullptr, &size);
     }},
    {"OVGetBuffer",
     [](OV_DEV_HANDLE c) {
         std::vector<uint8_t> table(1 << 16);
         size_t size = table.size();
         return OVGetBuffer(c, OV_FEATURE_LUTValueAll, table.data(), &size);
     }},
    {"OVSetInt", [](OV_DEV_HANDLE c) { return OVSetInt(c, OV_FEATURE_Width, 128); }},
    {"OVSetFloat", [](OV_DEV_HANDLE c) { return OVSetFloat(c, OV_FEATURE_ExposureTime, 200); }},
    {"OVSetEnum", [](OV_DEV_HANDLE c) { return OVSetEnum(c, OV_FEATURE_TriggerMode, 1); }},
    {"OVSetBool", [](OV_DEV_HANDLE c) { return OVSetBool(c, OV_FEATURE_ReverseX, true); }},
    {"OVSetString", [](OV_DEV_HANDLE c) { return OVSetString(c, OV_FEATURE_DeviceUserID, "x"); }},
    {"OVSetBuffer",
     [](OV_DEV_HANDLE c) {
         const uint8_t bytes[2] = {1, 2};
         return OVSetBuffer(c, OV_FEATURE_LUTValueAll, bytes, sizeof bytes);
     }},
    {"OVSendCommand", [](OV_DEV_HANDLE c) { return OVSendCommand(c, OV_FEATURE_TimestampLatch); }},
    {"OVSendCommandStart",
     [](OV_DEV_HANDLE c) { return OVSendCommand(c, OV_FEATURE_AcquisitionStart); }},
    {"OVSendCommandStop",
     [](OV_DEV_HANDLE c) { return OVSendCommand(c, OV_FEATURE_AcquisitionStop); }},
    {"OVStreamOn", &OVStreamOn},
    {"OVStreamOff", &OVStreamOff},
    {"OVReadRemoteDevicePort",
     [](OV_DEV_HANDLE c) {
         uint32_t value = 0;
         size_t size = sizeof value;
         return OVReadRemoteDevicePort(c, 0, &value, &size);
     }},
    {"OVWriteRemoteDevicePort",
     [](OV_DEV_HANDLE c) {
         const uint32_t value = 0;
         size_t size = sizeof value;
         return OVWriteRemoteDevicePort(c, 0, &value, &size);
     }},
    {"OVExportConfigFile",
     [](OV_DEV_HANDLE c) { return OVExportConfigFile(c, SettingsFile().c_str()); }},
    {"OvNodeReadFile",
     [](OV_DEV_HANDLE c) {
         uint8_t byte = 0;
         size_t size = 1;
         return OvNodeReadFile(c, "FactoryCalibration", 0, &byte, &size);
     }},
    {"OvNodeWriteFile",
     [](OV_DEV_HANDLE c) {
         const uint8_t byte = 0;
         return OvNodeWriteFile(c, "UserFile", &byte, 1);
     }},
    {"OvNodeDeleteFile", [](OV_DEV_HANDLE c) { return OvNodeDeleteFile(c, "UserFile"); }},
    {"OVGetFeatureName",
     [](OV_DEV_HANDLE c) {
         size_t size = 0;
         return OVGetFeatureName(c, OV_FEATURE_Width, nullptr, &size);
     },
     OV_STATUS_SUCCESS},
    {"OVGetAcqusitionBufferNumber",
     [](OV_DEV_HANDLE c) {
         uint64_t number = 0;
         return OVGetAcqusitionBufferNumber(c, &number);
     },
     OV_STATUS_SUCCESS},
    {"OVFlushQueue", &OVFlushQueue, OV_STATUS_SUCCESS},
    {"OVGetImage",
     [](OV_DEV_HANDLE c) {
         uint8_t byte = 0;
         OV_FRAME_DATA data{};
         data.pImgBuf = &byte;
         return OVGetImage(c, &data, 0);
     },
     OV_STATUS_INVALID_CALL},
    {"OVDQBuf",
     [](OV_DEV_HANDLE c) {
         OV_FRAME_BUFFER* frame = nullptr;
         return OVDQBuf(c, &frame, 0);
     },
     OV_STATUS_INVALID_CALL},
};

TEST_F(CameraLoss, IsWhatEveryCallThatReachesTheCameraFailsWith) {
    LoseForEver();
    for (const LateCall& call : kLateCalls) {
        EXPECT_EQ(call.run(camera), call.status) << call.name << " " << LastError::Get().text;
    }
    EXPECT_FALSE(std::filesystem::exists(SettingsFile()));
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_F(CameraLoss, EndsFetchesOfARunningStream) {
    CallbackCounter counter;
    ListenForLoss(counter);
    ASSERT_OV_OK(OVStreamOn(camera));
    OV_FRAME_BUFFER* frame = nullptr;
    ASSERT_OV_OK(OVDQBuf(camera, &frame, kFrameTimeOut));
    ASSERT_OV_OK(OVQBuf(camera, frame));
    DropOff(kNever);
    OV_STATUS status = OV_STATUS_SUCCESS;
    while (status == OV_STATUS_SUCCESS || status == OV_STATUS_TIMEOUT) {
        status = OVDQBuf(camera, &frame, 10);
        if (status == OV_STATUS_SUCCESS) {
            EXPECT_OV_OK(OVQBuf(camera, frame));
        }
    }
    EXPECT_EQ(status, OV_STATUS_OFFLINE) << LastError::Get().text;
    counter.AwaitLoss();
    EXPECT_EQ(OVStreamOff(camera), OV_STATUS_OFFLINE);
    EXPECT_OV_OK(OVCloseDevice(camera));
}

}  // namespace
