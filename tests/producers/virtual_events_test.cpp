/// @file The events of the virtual cameras, byte for byte.
#include <map>
#include <optional>
#include <vector>

#include "RemoteMessage.h"
#include "VirtualCameraFixture.h"
#include "virtual/CameraEvents.h"

using OvVirtual::CameraEvent;

namespace {

class VirtualEvents : public VirtualCameraTest {
protected:
    explicit VirtualEvents(const char* frameRate = "0") : VirtualCameraTest(frameRate) {}

    void SetUp() override {
        camera.OpenStream();
        Shrink();
        Write(Reg::Exposure, 40);
        Write(Reg::FrameRateMode, 0);
        event.emplace(camera);
    }

    void Notify(CameraEvent which, bool on = true) const {
        Write(Reg::EventSelector, static_cast<std::uint32_t>(which));
        Write(Reg::EventNotification, on ? 1 : 0);
    }
    std::uint64_t Fired() const { return event->Fired(); }
    RemoteMessage Next() const { return event->Next(); }
    std::uint64_t Ticks() const {
        Write(Reg::Latch, 1);
        return camera.ReadRegister<std::uint64_t>(Reg::LatchValue);
    }

    std::optional<RemoteEvent> event;
};

TEST_F(VirtualEvents, ExposureEndComesWithEachFrame) {
    Notify(CameraEvent::ExposureEnd);
    std::uint64_t before = Ticks();
    Grab(3);
    for (std::uint64_t frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(FrameId(camera.NextFrame()), frame);
        const RemoteMessage message = Next();
        EXPECT_EQ(message.id, 0x9001U);
        ASSERT_EQ(message.item.size(), 24U);
        EXPECT_EQ(message.Field(0, 2), 24U);
        EXPECT_EQ(message.Field(2, 2), 0x9001U);
        EXPECT_EQ(message.Field(4, 2), 0U);
        EXPECT_EQ(message.Field(6, 2), frame);
        EXPECT_EQ(message.Frame(), frame);
        EXPECT_GT(message.Time(), before);
        before = message.Time();
    }
    EXPECT_LT(before, Ticks());
}

TEST_F(VirtualEvents, AreNotSentUnlessAskedFor) {
    Notify(CameraEvent::BlockDiscard);
    Notify(CameraEvent::ExposureEnd);
    Notify(CameraEvent::ExposureEnd, false);
    Grab(3);
    for (int frame = 0; frame < 3; ++frame) {
        camera.NextFrame();
    }
    EXPECT_EQ(Fired(), 0U);
}

TEST_F(VirtualEvents, MayBeAskedForWhileFramesFlow) {
    Grab(1);
    camera.NextFrame();
    Notify(CameraEvent::ExposureEnd);
    ASSERT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[0]), 0);
    EXPECT_EQ(Next().Frame(), 1U);
}

TEST_F(VirtualEvents, EachHasASwitchOfItsOwn) {
    EXPECT_EQ(Read(Reg::EventsEnabled), 0U);
    Notify(CameraEvent::FrameStartOvertrigger);
    EXPECT_EQ(Read(Reg::EventNotification), 1U);
    EXPECT_EQ(Read(Reg::EventsEnabled), 2U);
    Write(Reg::EventSelector, 2);
    EXPECT_EQ(Read(Reg::EventNotification), 0U);
    EXPECT_EQ(TryWrite(Reg::EventNotification, 2), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::EventSelector, 3), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(TryWrite(Reg::EventsEnabled, 8), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(VirtualEvents, BelongToTheUserSets) {
    Notify(CameraEvent::BlockDiscard);
    SaveSet(1);
    LoadSet(0);
    EXPECT_EQ(Read(Reg::EventsEnabled), 0U);
    LoadSet(1);
    EXPECT_EQ(Read(Reg::EventsEnabled), 4U);
}

TEST_F(VirtualEvents, TriggersAreKeptWhereFramesWaitForBuffersAlone) {
    Notify(CameraEvent::FrameStartOvertrigger);
    Write(Reg::TriggerMode, 1);
    Write(Reg::Start, 1);
    Write(Reg::Software, 1);
    Write(Reg::Software, 1);
    EXPECT_EQ(Fired(), 0U);
}

/// With a clock; what no buffer is free for is lost.
class VirtualPacedEvents : public VirtualEvents {
protected:
    VirtualPacedEvents() : VirtualEvents("1000000") {}
};

TEST_F(VirtualPacedEvents, TriggerIsMissedWhileAFrameIsExposed) {
    Notify(CameraEvent::FrameStartOvertrigger);
    Write(Reg::TriggerMode, 1);
    // Until the host takes it the frame stays in the sensor.
    Write(Reg::Start, 1);
    Write(Reg::Software, 1);
    EXPECT_EQ(Fired(), 0U);
    for (unsigned missed = 1; missed <= 2; ++missed) {
        Write(Reg::Software, 1);
        const RemoteMessage message = Next();
        EXPECT_EQ(message.id, 0x9002U);
        EXPECT_EQ(message.Frame(), 0U);
        EXPECT_EQ(Fired(), missed);
    }
    camera.Start(3, Read(Reg::Payload));
    EXPECT_EQ(FrameId(camera.NextFrame()), 0U);
    Write(Reg::Software, 1);
    EXPECT_EQ(FrameId(camera.NextFrame()), 1U);
    EXPECT_EQ(Fired(), 2U);
}

TEST_F(VirtualPacedEvents, MissedTriggersAreNotToldUnlessAskedFor) {
    Write(Reg::TriggerMode, 1);
    Write(Reg::Start, 1);
    Write(Reg::Software, 1);
    Write(Reg::Software, 1);
    EXPECT_EQ(Fired(), 0U);
}

TEST_F(VirtualPacedEvents, BlockDiscardTellsOfAFrameWithoutABuffer) {
    Notify(CameraEvent::BlockDiscard);
    Grab(1);
    EXPECT_EQ(FrameId(camera.NextFrame()), 0U);
    for (std::uint64_t frame = 1; frame < 4; ++frame) {
        const RemoteMessage message = Next();
        EXPECT_EQ(message.id, 0x9003U);
        EXPECT_EQ(message.Frame(), frame);
    }
}

TEST_F(VirtualPacedEvents, ADiscardedFrameWasExposedBefore) {
    Notify(CameraEvent::BlockDiscard);
    Notify(CameraEvent::ExposureEnd);
    Grab(1);
    std::map<std::uint64_t, std::vector<std::uint64_t>> frames;
    while (frames.size() < 4) {
        const RemoteMessage message = Next();
        frames[message.Frame()].push_back(message.id);
    }
    EXPECT_EQ(frames[0], std::vector<std::uint64_t>{0x9001});
    EXPECT_EQ(frames[1], (std::vector<std::uint64_t>{0x9001, 0x9003}));
    EXPECT_EQ(frames[2], (std::vector<std::uint64_t>{0x9001, 0x9003}));
}

}  // namespace
