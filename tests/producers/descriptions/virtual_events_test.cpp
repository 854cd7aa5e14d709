/// @file
/// The event features of the virtual cameras, read from what they send.
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "GenApi/EventAdapterGeneric.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IInteger.h"
#include "LiveDescription.h"
#include "RemoteMessage.h"

namespace {

class VirtualEventFeatures : public testing::Test {
protected:
    VirtualEventFeatures() {
        setenv("OV_VIRTUAL_FRAME_RATE", "1000000", 1);
        camera.OpenStream();
        live.emplace(api, camera.port);
        adapter.emplace(&live->Map());
        event.emplace(camera);
    }
    ~VirtualEventFeatures() override { unsetenv("OV_VIRTUAL_FRAME_RATE"); }

    int64_t Integer(const std::string& name) { return live->As<GenApi::IInteger>(name).GetValue(); }
    bool Readable(const std::string& name) {
        return GenApi::IsReadable(live->As<GenApi::INode>(name).GetAccessMode());
    }
    GenApi::IEnumeration& Enum(const char* name) { return live->As<GenApi::IEnumeration>(name); }
    void Execute(const char* name) { live->As<GenApi::ICommand>(name).Execute(); }
    void Notify(const char* name) {
        Enum("EventSelector").FromString(name);
        Enum("EventNotification").FromString("On");
    }

    /// The camera's next message goes to the nodes, and they tell it.
    void ExpectNext(const std::string& name, uint64_t id, uint64_t frame) {
        const RemoteMessage message = event->Next();
        EXPECT_EQ(message.id, id);
        adapter->DeliverMessage(reinterpret_cast<const uint8_t*>(message.item.data()),
                                static_cast<int64_t>(message.item.size()), message.id);
        EXPECT_EQ(Integer(name), static_cast<int64_t>(id));
        EXPECT_EQ(Integer(name + "FrameID"), static_cast<int64_t>(frame));
        EXPECT_EQ(Integer(name + "Timestamp"), static_cast<int64_t>(message.Time()));
    }

    GenTLApi api{OV_TEST_VIRTUAL_PRODUCER};
    OpenCamera camera{api};
    std::optional<LiveDescription> live;
    std::optional<GenApi::CEventAdapterGeneric> adapter;
    std::optional<RemoteEvent> event;
};

TEST_F(VirtualEventFeatures, EachReadsTheLatestOfItsMessages) {
    for (const char* name : {"ExposureEnd", "FrameStartOvertrigger", "BlockDiscard"}) {
        Notify(name);
        EXPECT_FALSE(Readable(std::string("Event") + name));
    }
    Enum("TriggerMode").FromString("On");
    Execute("AcquisitionStart");
    Execute("TriggerSoftware");
    Execute("TriggerSoftware");
    ExpectNext("EventFrameStartOvertrigger", 0x9002, 0);
    EXPECT_FALSE(Readable("EventExposureEndFrameID"));
    camera.Start(1, static_cast<std::size_t>(Integer("PayloadSize")));
    ExpectNext("EventExposureEnd", 0x9001, 0);
    camera.NextFrame();
    Execute("TriggerSoftware");
    ExpectNext("EventExposureEnd", 0x9001, 1);
    ExpectNext("EventBlockDiscard", 0x9003, 1);
    EXPECT_EQ(Integer("EventFrameStartOvertriggerFrameID"), 0);
}

TEST_F(VirtualEventFeatures, SelectorChoosesWhatNotificationMeans) {
    Notify("BlockDiscard");
    Enum("EventSelector").FromString("ExposureEnd");
    EXPECT_EQ(Enum("EventNotification").ToString(), "Off");
    Enum("EventSelector").FromString("BlockDiscard");
    EXPECT_EQ(Enum("EventNotification").ToString(), "On");
    Execute("DeviceReset");
    EXPECT_EQ(Enum("EventNotification").ToString(), "Off");
}

TEST_F(VirtualEventFeatures, DropOffHasFeaturesToo) {
    auto& time = live->As<GenApi::IInteger>("VirtualDropOffTime");
    EXPECT_EQ(time.GetMax(), 3600000);
    EXPECT_EQ(time.GetUnit(), "ms");
    time.SetValue(0);
    live->As<GenApi::IInteger>("VirtualDropOffFrames").SetValue(100);
    EXPECT_EQ(camera.ReadRegister<std::uint32_t>(0xA28), 100U);
    Execute("VirtualDropOff");
    EXPECT_ANY_THROW(Integer("Width"));
}

}  // namespace
