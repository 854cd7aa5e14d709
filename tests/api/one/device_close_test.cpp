// Closing a camera, and the library with cameras open.

#include <algorithm>
#include <atomic>
#include <functional>
#include <future>

#include "support/ApiTest.h"

namespace {

class CloseTest : public OpenCameraTest {
protected:
    /// Runs `call` on the delivering thread of a frame.
    LastError RunInCallback(std::function<OV_STATUS()> call) {
        struct Inside {
            std::function<OV_STATUS()> call;
            std::promise<LastError> done;
        } inside{std::move(call), {}};
        const auto onFrame = [](OV_FRAME_CALLBACK_PARAM* frame) {
            auto* const self = static_cast<Inside*>(frame->pUserParam);
            EXPECT_EQ(self->call(), OV_STATUS_INVALID_CALL);
            self->done.set_value(LastError::Get());
        };
        EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &inside, onFrame));
        EXPECT_OV_OK(OVStreamOn(camera));
        producer.Trigger(0, 0, 1);
        LastError error = inside.done.get_future().get();
        EXPECT_OV_OK(OVStreamOff(camera));
        return error;
    }
    void ExpectUsable() {
        int64_t width = 0;
        EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_Width, &width));
    }
};

TEST_F(CloseTest, InACaptureCallbackIsRefusedAndTheCameraStaysOpen) {
    const LastError error = RunInCallback([this] { return OVCloseDevice(camera); });
    EXPECT_EQ(error.status, OV_STATUS_INVALID_CALL);
    EXPECT_EQ(error.message, "Can't close device in capture callback");
    ExpectUsable();
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_F(CloseTest, OfTheLibraryInACaptureCallbackIsRefusedAndItStaysInitialised) {
    const LastError error = RunInCallback([] { return OVCloseLib(); });
    EXPECT_EQ(error.status, OV_STATUS_INVALID_CALL);
    EXPECT_EQ(error.message, "Can't close lib in capture callback");
    ExpectUsable();
    EXPECT_OV_OK(OVCloseLib());
}

TEST_F(CloseTest, StopsTheCameraThenTheStream) {
    ASSERT_OV_OK(OVStreamOn(camera));
    producer.ClearLog();
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStop"), 1);
    const std::vector<std::string> log = producer.Log();
    const auto at = [&log](const char* call) { return std::find(log.begin(), log.end(), call); };
    EXPECT_LT(at("GCWritePort"), at("DSStopAcquisition")) << "the camera's own stop comes first";
    EXPECT_LT(at("DSStopAcquisition"), at("DSRevokeBuffer"));
    EXPECT_LT(at("DSRevokeBuffer"), at("DSClose"));
    EXPECT_LT(at("DSClose"), at("DevClose"));
    EXPECT_EQ(producer.OpenCount("Buffer"), 0);
}

TEST_F(CloseTest, GoesOnThoughTheCameraDoesNotStop) {
    ASSERT_OV_OK(OVStreamOn(camera));
    producer.FailCall("GCWritePort", 1, -1010);
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStop"), 0);
    EXPECT_EQ(producer.OpenCount("Device"), 0);
}

TEST_F(CloseTest, OfAnIdleCameraSendsNoStop) {
    EXPECT_OV_OK(OVCloseDevice(camera));
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStop"), 0);
}

TEST_F(CloseTest, OfALostCameraSucceeds) {
    ASSERT_OV_OK(OVStreamOn(camera));
    producer.LoseDevice(0, 0);
    EXPECT_OV_OK(OVCloseDevice(camera));
    for (const char* const kind : {"Device", "Stream", "Buffer", "Event", "Acquisition"}) {
        EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
    }
}

TEST_F(CloseTest, LetsTheCameraBeOpenedAgain) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_OV_OK(OVCloseDevice(camera));
        ASSERT_OV_OK(OVOpenDeviceByIndex(1, &camera));
    }
    EXPECT_EQ(producer.OpenCount("Device"), 1);
}

TEST_F(CloseTest, WhileFramesFlowEndsTheirDelivery) {
    std::atomic<uint64_t> frames{0};
    const auto onFrame = [](OV_FRAME_CALLBACK_PARAM* frame) {
        ++*static_cast<std::atomic<uint64_t>*>(frame->pUserParam);
    };
    ASSERT_OV_OK(OVRegisterCaptureCallback(camera, &frames, onFrame));
    ASSERT_OV_OK(OVStreamOn(camera));
    producer.SetFreeRunning(0, 0, 1);
    ASSERT_EQ(producer.WaitForCalls("EventGetData", 10, 60000), 0);
    EXPECT_OV_OK(OVCloseDevice(camera));
    const uint64_t atClose = frames;
    EXPECT_EQ(producer.OpenCount("Event"), 0);
    EXPECT_EQ(frames, atClose) << "no frame after the close";
}

TEST_F(CloseTest, OfTheLibraryClosesTheLastOpenedFirstAndLeavesTheRestAfterARefusal) {
    producer.SetInterfaceCount(2);
    ASSERT_EQ(Update(), 2U);
    Open(2);
    const LastError error = RunInCallback([] { return OVCloseLib(); });
    EXPECT_EQ(error.message, "Can't close lib in capture callback");
    EXPECT_EQ(producer.OpenCount("Device"), 1) << "the second is closed, the first refused";
    ExpectUsable();
    EXPECT_NE(Open(2), nullptr);
}

TEST_F(CloseTest, OfTheLibraryIsRefusedByTheLastOpenedBeforeAnyIsClosed) {
    producer.SetInterfaceCount(2);
    ASSERT_EQ(Update(), 2U);
    OV_DEV_HANDLE const last = Open(2);
    EXPECT_OV_OK(OVCloseDevice(camera));
    camera = Open(1);
    RunInCallback([] { return OVCloseLib(); });
    EXPECT_EQ(producer.OpenCount("Device"), 2);
    EXPECT_OV_OK(OVCloseDevice(last));
}

TEST_F(CloseTest, OfTheLibraryStopsRunningCameras) {
    ASSERT_OV_OK(OVStreamOn(camera));
    EXPECT_OV_OK(OVCloseLib());
    EXPECT_EQ(producer.CommandCount(0, 0, "AcquisitionStop"), 1);
    EXPECT_EQ(producer.OpenCount("Acquisition"), 0);
}

}  // namespace
