// Faults of the closing: it goes to its end, and whatever fails there is the
// producer's affair.

#include "FaultMatrix.h"

namespace {

constexpr const char* kDown = "the way down goes to its end";

Steps Passed(std::initializer_list<std::pair<const char*, unsigned>> calls) {
    Steps steps;
    for (const auto& [call, count] : calls) {
        steps.push_back({call, count, Fate::Swallowed, kDown});
    }
    return steps;
}

/// AcquisitionStop is the first write, the stream's lock the second.
Steps StopSteps(bool hasLoan) {
    return Passed({{"GCWritePort", 1}}) + (hasLoan ? Passed({{"DSQueueBuffer", 1}}) : Steps{}) +
           Passed({{"EventKill", 1},
                   {"GCUnregisterEvent", 1},
                   {"DSStopAcquisition", 1},
                   {"DSFlushQueue", 1},
                   {"DSRevokeBuffer", 5},
                   {"GCWritePort", 1}});
}

Steps CloseDeviceSteps() {
    return Passed({{"DSClose", 1}, {"DevClose", 1}});
}

Steps CloseLibSteps() {
    return Passed({{"IFClose", 1}, {"TLClose", 1}, {"GCCloseLib", 1}});
}

class CloseFaultTest : public FaultMatrix {
protected:
    void OpenCamera() {
        Init();
        ASSERT_EQ(Update(), 1U);
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }

    void StartWithLoan() {
        OpenCamera();
        ASSERT_OV_OK(OVStreamOn(camera));
        Faulty().Trigger(0, 0, 1);
        OV_FRAME_BUFFER* frame = nullptr;
        ASSERT_OV_OK(OVDQBuf(camera, &frame, 1000));
    }

    void StartWithCallback() {
        OpenCamera();
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, nullptr, [](OV_FRAME_CALLBACK_PARAM*) {}));
        ASSERT_OV_OK(OVStreamOn(camera));
        Faulty().Trigger(0, 0, 2);
    }

    /// A new session finds the camera, opens it and gets frames.
    void ExpectNewSession() {
        CloseLib();
        OpenCamera();
        EXPECT_OV_OK(OVStreamOn(camera));
        EXPECT_OV_OK(OVStreamOff(camera));
        EXPECT_OV_OK(OVCloseDevice(camera));
    }

    void RunClose(const Steps& steps, const std::function<void()>& prepare,
                  const std::function<OV_STATUS()>& close,
                  const std::set<std::string>& elsewhere = {}) {
        Run({.steps = steps,
             .prepare = prepare,
             .action = close,
             .again = [this] { ExpectNewSession(); },
             .elsewhere = elsewhere,
             .failsAfterWork = true});
    }

    OV_STATUS CloseDevice() { return OVCloseDevice(camera); }

    OV_DEV_HANDLE camera = nullptr;
};

TEST_P(CloseFaultTest, AnIdleDeviceCloses) {
    RunClose(
        CloseDeviceSteps(), [this] { OpenCamera(); }, [this] { return CloseDevice(); });
}

TEST_P(CloseFaultTest, ADeviceThatStreamsCloses) {
    RunClose(
        StopSteps(true) + CloseDeviceSteps(), [this] { StartWithLoan(); },
        [this] { return CloseDevice(); });
}

TEST_P(CloseFaultTest, ADeviceThatStreamsToACallbackCloses) {
    RunClose(
        StopSteps(false) + CloseDeviceSteps(), [this] { StartWithCallback(); },
        [this] { return CloseDevice(); },
        {"EventGetData", "DSGetBufferInfo", "DSQueueBuffer", "GCGetLastError"});
}

TEST_P(CloseFaultTest, ALibraryWithoutCamerasCloses) {
    RunClose(
        Passed({{"TLClose", 1}, {"GCCloseLib", 1}}), [this] { Init(); }, &OVCloseLib);
}

TEST_P(CloseFaultTest, ALibraryWithAnOpenDeviceCloses) {
    RunClose(
        CloseDeviceSteps() + CloseLibSteps(), [this] { OpenCamera(); }, &OVCloseLib);
}

TEST_P(CloseFaultTest, ALibraryWithADeviceThatStreamsCloses) {
    RunClose(
        StopSteps(true) + CloseDeviceSteps() + CloseLibSteps(), [this] { StartWithLoan(); },
        &OVCloseLib);
}

INSTANTIATE_TEST_SUITE_P(Producers, CloseFaultTest, testing::ValuesIn(kDifferentKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
