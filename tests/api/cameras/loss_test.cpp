// A camera leaves the bus while it is used, and is found again.

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <functional>

#include "CameraTest.h"
#include "FrameChunks.h"
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

/// What a call returned.
struct ReadResult {
    OV_STATUS status = OV_STATUS_ERROR;
    std::vector<uint8_t> bytes;

    bool operator==(const ReadResult&) const = default;
};

/// A call that reads what a cache has.
struct CachedRead {
    const char* name;
    std::function<ReadResult(OV_DEV_HANDLE)> run;
};

template <class Value, class Call>
ReadResult ReadValue(const Call& call) {
    ReadResult result{.bytes = std::vector<uint8_t>(sizeof(Value))};
    result.status = call(reinterpret_cast<Value*>(result.bytes.data()));
    return result;
}

template <class Value>
CachedRead Cached(const char* name, OV_STATUS (*get)(OV_DEV_HANDLE, OV_FEATURE_ID, Value*),
                  OV_FEATURE_ID feature) {
    return {name, [get, feature](OV_DEV_HANDLE c) {
                return ReadValue<Value>([&](Value* value) { return get(c, feature, value); });
            }};
}

/// Of a call that says how much room it needs.
template <class Element, class Call>
ReadResult ReadRow(const Call& call) {
    size_t size = 0;
    ReadResult result{call(nullptr, &size), {}};
    if (result.status == OV_STATUS_SUCCESS) {
        result.bytes.resize(size);
        result.status = call(reinterpret_cast<Element*>(result.bytes.data()), &size);
    }
    return result;
}

template <class Element>
CachedRead CachedRow(const char* name,
                     OV_STATUS (*get)(OV_DEV_HANDLE, OV_FEATURE_ID, Element*, size_t*),
                     OV_FEATURE_ID feature) {
    return {name, [get, feature](OV_DEV_HANDLE c) {
                return ReadRow<Element>(
                    [&](Element* first, size_t* size) { return get(c, feature, first, size); });
            }};
}

OV_NODE_HANDLE FindNode(OV_DEV_HANDLE camera, const char* feature) {
    OV_NODE_HANDLE node = 0;
    EXPECT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, feature, &node));
    return node;
}

template <class Value>
CachedRead CachedNode(const char* name, OV_STATUS (*get)(OV_NODE_HANDLE, Value*),
                      const char* feature) {
    return {
        name, [get, feature](OV_DEV_HANDLE c) {
            return ReadValue<Value>([&](Value* value) { return get(FindNode(c, feature), value); });
        }};
}

CachedRead CachedNodeText(const char* name, OV_STATUS (*get)(OV_NODE_HANDLE, char*, size_t*),
                          const char* feature) {
    return {name, [get, feature](OV_DEV_HANDLE c) {
                return ReadRow<char>([&](char* text, size_t* size) {
                    return get(FindNode(c, feature), text, size);
                });
            }};
}

/// Features whose access doesn't depend on whether frames flow: that is asked of the camera.
const CachedRead kCachedReads[] = {
    Cached("OVIsImplemented", &OVIsImplemented, OV_FEATURE_OffsetX),
    Cached("OVIsReadable", &OVIsReadable, OV_FEATURE_OffsetX),
    Cached("OVIsWritable", &OVIsWritable, OV_FEATURE_OffsetX),
    Cached("OVGetInt", &OVGetInt, OV_FEATURE_OffsetX),
    Cached("OVGetIntRange", &OVGetIntRange, OV_FEATURE_OffsetX),
    Cached("OVGetFloat", &OVGetFloat, OV_FEATURE_ExposureTime),
    Cached("OVGetFloatRange", &OVGetFloatRange, OV_FEATURE_ExposureTime),
    Cached("OVGetEnum", &OVGetEnum, OV_FEATURE_TriggerSource),
    Cached("OVGetEnumEntryNums", &OVGetEnumEntryNums, OV_FEATURE_TriggerSource),
    CachedRow("OVGetEnumDescription", &OVGetEnumDescription, OV_FEATURE_TriggerSource),
    Cached("OVGetBool", &OVGetBool, OV_FEATURE_ReverseX),
    Cached("OVGetStringLength", &OVGetStringLength, OV_FEATURE_DeviceModelName),
    Cached("OVGetStringMaxLength", &OVGetStringMaxLength, OV_FEATURE_DeviceModelName),
    CachedRow("OVGetString", &OVGetString, OV_FEATURE_DeviceModelName),
    Cached("OVGetBufferLength", &OVGetBufferLength, OV_FEATURE_LUTValueAll),
    CachedNode("OvNodeGetAccess", &OvNodeGetAccess, "OffsetX"),
    CachedNode("OvNodeGetInfo", &OvNodeGetInfo, "OffsetX"),
    CachedNode("OvNodeGetInteger", &OvNodeGetInteger, "OffsetX"),
    CachedNode("OvNodeGetIntegerRange", &OvNodeGetIntegerRange, "OffsetX"),
    CachedNode("OvNodeGetFloat", &OvNodeGetFloat, "ExposureTime"),
    CachedNode("OvNodeGetFloatRange", &OvNodeGetFloatRange, "ExposureTime"),
    CachedNode("OvNodeGetBoolean", &OvNodeGetBoolean, "ReverseX"),
    CachedNode("OvNodeGetNumber", &OvNodeGetNumber, "TriggerSource"),
    CachedNodeText("OvNodeGetAsText", &OvNodeGetAsText, "ExposureTime"),
    CachedNodeText("OvNodeGetSymbolic", &OvNodeGetSymbolic, "TriggerSource"),
    CachedNodeText("OvNodeGetString", &OvNodeGetString, "DeviceModelName"),
};

TEST_F(CameraLoss, LeavesWhatWasReadBefore) {
    std::vector<ReadResult> before;
    for (const CachedRead& read : kCachedReads) {
        before.push_back(read.run(camera));
        EXPECT_OV_OK(before.back().status) << read.name;
    }
    LoseForEver();
    for (size_t i = 0; i < before.size(); ++i) {
        EXPECT_TRUE(kCachedReads[i].run(camera) == before[i])
            << kCachedReads[i].name << " " << LastError::Get().text;
    }
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_F(CameraLoss, LeavesTheChunksOfAFrameOnLoan) {
    SwitchChunksOn(camera);
    ASSERT_OV_OK(OVStreamOn(camera));
    OV_FRAME_BUFFER* frame = nullptr;
    ASSERT_OV_OK(OVDQBuf(camera, &frame, kFrameTimeOut));
    LoseForEver();
    EXPECT_OV_OK(OvNodeAttachFrame(camera, frame));
    EXPECT_EQ(ReadChunks(camera),
              ChunksOf(KeepFrame(frame->nStatus, *frame), Supply().FirstFrame()));
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
