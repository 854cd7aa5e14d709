/// @file
/// What the virtual cameras tell on their own, byte for byte.
#include <map>
#include <span>
#include <vector>

#include "VirtualCameraFixture.h"
#include "virtual/CameraEvents.h"

using OvVirtual::CameraEvent;

namespace {

std::uint64_t Big(std::span<const std::byte> bytes) {
    std::uint64_t value = 0;
    for (const std::byte byte : bytes) {
        value = value << 8 | std::to_integer<std::uint64_t>(byte);
    }
    return value;
}

struct Message {
    std::uint64_t id = 0;
    std::vector<std::byte> item;

    std::uint64_t Field(std::size_t offset, std::size_t length) const {
        return Big(std::span(item).subspan(offset, length));
    }
    std::uint64_t Time() const { return Field(8, 8); }
    std::uint64_t Frame() const { return Field(16, 8); }
};

class VirtualEvents : public VirtualCameraTest {
protected:
    explicit VirtualEvents(const char* frameRate = "0") : VirtualCameraTest(frameRate) {}

    void SetUp() override {
        camera.OpenStream();
        Shrink();
        Write(Reg::Exposure, 40);
        Write(Reg::FrameRateMode, 0);
        event = Register(GenTL::EVENT_REMOTE_DEVICE);
    }

    void Notify(CameraEvent which, bool on = true) const {
        Write(Reg::EventSelector, static_cast<std::uint32_t>(which));
        Write(Reg::EventNotification, on ? 1 : 0);
    }
    template <typename T>
    T EventInfo(GenTL::EVENT_INFO_CMD command) const {
        return GenTLApi::Number<T>([&](auto* type, void* out, std::size_t* size) {
            return api.EventGetInfo(event, command, type, out, size);
        });
    }
    std::uint64_t Fired() const { return EventInfo<std::uint64_t>(GenTL::EVENT_NUM_FIRED); }

    /// The next message; throws when none comes.
    Message Next() const {
        std::vector<std::byte> entry(EventInfo<std::size_t>(GenTL::EVENT_SIZE_MAX));
        std::size_t size = entry.size();
        OpenCamera::Check(api.EventGetData(event, entry.data(), &size, 10000), "EventGetData");
        entry.resize(size);
        Message message;
        message.id = GenTLApi::Number<std::uint64_t>([&](auto* type, void* out, auto* length) {
            return api.EventGetDataInfo(event, entry.data(), entry.size(), GenTL::EVENT_DATA_NUMID,
                                        type, out, length);
        });
        message.item.resize(EventInfo<std::size_t>(GenTL::EVENT_INFO_DATA_SIZE_MAX));
        std::size_t length = message.item.size();
        GenTL::INFO_DATATYPE type = 0;
        OpenCamera::Check(
            api.EventGetDataInfo(event, entry.data(), entry.size(), GenTL::EVENT_DATA_VALUE, &type,
                                 message.item.data(), &length),
            "EventGetDataInfo");
        message.item.resize(length);
        return message;
    }
    std::uint64_t Ticks() const {
        Write(Reg::Latch, 1);
        return camera.ReadRegister<std::uint64_t>(Reg::LatchValue);
    }

    GenTL::EVENT_HANDLE event = nullptr;
};

TEST_F(VirtualEvents, ExposureEndComesWithEachFrame) {
    Notify(CameraEvent::ExposureEnd);
    std::uint64_t before = Ticks();
    Grab(3);
    for (std::uint64_t frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(FrameId(camera.NextFrame()), frame);
        const Message message = Next();
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
    Write(Reg::SetSelector, 1);
    Write(Reg::SetSave, 1);
    Write(Reg::SetSelector, 0);
    Write(Reg::SetLoad, 1);
    EXPECT_EQ(Read(Reg::EventsEnabled), 0U);
    Write(Reg::SetSelector, 1);
    Write(Reg::SetLoad, 1);
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
        const Message message = Next();
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
        const Message message = Next();
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
        const Message message = Next();
        frames[message.Frame()].push_back(message.id);
    }
    EXPECT_EQ(frames[0], std::vector<std::uint64_t>{0x9001});
    EXPECT_EQ(frames[1], (std::vector<std::uint64_t>{0x9001, 0x9003}));
    EXPECT_EQ(frames[2], (std::vector<std::uint64_t>{0x9001, 0x9003}));
}

}  // namespace
