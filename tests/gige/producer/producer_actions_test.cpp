// Actions by the features of an interface, for simulated cameras on loopback.

#include <gtest/gtest.h>

#include "GigeStreamTest.h"
#include "framework/Descriptions.h"
#include "gige/producer/ActionFeatures.h"
#include "gige/protocol/Bootstrap.h"

namespace {

using OvGige::Status;
using OvSimulator::Count;

constexpr uint64_t kTriggerMode = OvSimulator::kApplicationBase + 0x420;
constexpr uint64_t kTriggerSource = OvSimulator::kApplicationBase + 0x424;
constexpr uint32_t kAction1 = 2;

class GigeActions : public GigeStream {
protected:
    static constexpr int64_t kDeviceKey = 0x12345678;
    static constexpr int64_t kGroupKey = 0xABCD;

    /// A big-endian register of the camera.
    void SetRegister(uint64_t address, uint32_t value) {
        ASSERT_EQ(Write<uint32_t>(Way().port, address, __builtin_bswap32(value)), 0) << LastError();
    }
    void SetKeys() {
        SetRegister(OvGige::kRegActionDeviceKey, kDeviceKey);
        SetRegister(OvGige::kRegActionGroupKey, kGroupKey);
        SetRegister(OvGige::kRegActionGroupMask, 1);
    }
    static uint64_t ActionAddress(const std::string& name) {
        const std::string xml = OvGige::WithActionFeatures(
            OvProducer::OwnDescription(OvProducer::ModuleKind::Interface).xml);
        size_t at = xml.find("Name=\"" + name + "Reg\"");
        at = at == std::string::npos ? xml.find("Reg Name=\"" + name + "\"") : at;
        const std::string mark = "<Address>";
        return std::stoull(xml.substr(xml.find(mark, at) + mark.size(), 6), nullptr, 16);
    }
    GenTL::GC_ERROR SetFeature(const std::string& name, int64_t value) {
        return Write(Way().iface, ActionAddress(name), value);
    }
    int64_t Feature(const std::string& name) {
        return Read<int64_t>(Way().iface, ActionAddress(name));
    }
    std::string TextFeature(const std::string& name) {
        return ReadText(Way().iface, ActionAddress(name), 64);
    }
    void Choose(int64_t mask = 1) {
        ASSERT_EQ(SetFeature("ActionDeviceKey", kDeviceKey), 0);
        ASSERT_EQ(SetFeature("ActionGroupKey", kGroupKey), 0);
        ASSERT_EQ(SetFeature("ActionGroupMask", mask), 0);
    }
    GenTL::GC_ERROR Act() {
        return Write<uint32_t>(Way().iface, ActionAddress("ActionCommand"), 1);
    }
    /// Acts until so many answer: a busy machine may take longer than is waited for.
    void ActUntilAnswered(int64_t count) {
        const auto end = Clock::now() + std::chrono::minutes(1);
        do {
            ASSERT_EQ(Act(), 0) << LastError();
        } while (Feature("ActionAnswerCount") < count && Clock::now() < end);
        ASSERT_EQ(Feature("ActionAnswerCount"), count);
    }
};

TEST_F(GigeActions, StartAFrame) {
    OpenStream();
    SetKeys();
    ASSERT_EQ(Write<uint32_t>(Way().port, kTriggerSource, kAction1), 0) << LastError();
    ASSERT_EQ(Write<uint32_t>(Way().port, kTriggerMode, 1), 0) << LastError();
    Start(4);
    Choose();
    for (uint64_t frame = 1; frame <= 3; ++frame) {
        ASSERT_EQ(Act(), 0) << LastError();
        const GenTL::BUFFER_HANDLE buffer = Way().NextFrame();
        EXPECT_EQ(Way().BufferInfo<uint64_t>(buffer, GenTL::BUFFER_INFO_FRAMEID), frame);
        ASSERT_EQ(Api().DSQueueBuffer(Way().stream, buffer), 0);
    }
    EXPECT_EQ(Simulated().Counts()[Count::Actions], 3U);
}

TEST_F(GigeActions, CountTheCamerasThatAnswer) {
    AddCamera(0);
    AddCamera(1);
    FindAll();
    for (size_t camera = 0; camera < 2; ++camera) {
        ASSERT_EQ(Open(IdOfCamera(camera)), 0) << LastError();
        SetKeys();
    }
    Choose();
    ActUntilAnswered(2);
    std::vector<std::string> ids;
    for (int64_t answer = 0; answer < 2; ++answer) {
        ASSERT_EQ(SetFeature("ActionAnswerSelector", answer), 0) << LastError();
        EXPECT_EQ(Feature("ActionAnswerIPAddress"), 0x7F000001);
        EXPECT_EQ(Feature("ActionAnswerStatus"), 0);
        EXPECT_EQ(TextFeature("ActionAnswerStatusText"), "success");
        ids.push_back(TextFeature("ActionAnswerDeviceID"));
    }
    EXPECT_THAT(ids, testing::UnorderedElementsAre(IdOfCamera(0), IdOfCamera(1)));
    EXPECT_EQ(SetFeature("ActionAnswerSelector", 2), GenTL::GC_ERR_INVALID_VALUE);
}

TEST_F(GigeActions, AreAnsweredByNobodyWhoIsNotMeant) {
    OpenOne();
    SetKeys();
    Choose();
    ActUntilAnswered(1);
    Choose(2);
    ASSERT_EQ(Act(), 0) << LastError();
    EXPECT_EQ(Feature("ActionAnswerCount"), 0) << "the answer to the last one counts no more";
    int64_t value = 0;
    size_t size = sizeof value;
    EXPECT_EQ(Api().GCReadPort(Way().iface, ActionAddress("ActionAnswerStatus"), &value, &size),
              GenTL::GC_ERR_NOT_AVAILABLE);
}

TEST_F(GigeActions, MayHaveATime) {
    OpenOne();
    SetKeys();
    Choose();
    ASSERT_EQ(SetFeature("ActionScheduledTimeEnable", 1), 0);
    ASSERT_EQ(SetFeature("ActionScheduledTime", 1), 0);
    ActUntilAnswered(1);
    EXPECT_EQ(Feature("ActionAnswerStatus"), static_cast<int64_t>(Status::NoReferenceTime));
    EXPECT_EQ(TextFeature("ActionAnswerStatusText"), "no reference time");
    EXPECT_EQ(Simulated().Counts()[Count::Actions], 0U);
}

TEST_F(GigeActions, GoToOneAddressIfThatIsChosen) {
    OpenOne();
    SetKeys();
    Choose();
    constexpr int64_t kNobody = 0x7F000063;
    ASSERT_EQ(SetFeature("GevActionDestinationIPAddress", kNobody), 0);
    ASSERT_EQ(Act(), 0) << LastError();
    EXPECT_EQ(Feature("ActionAnswerCount"), 0);
    ASSERT_EQ(SetFeature("GevActionDestinationIPAddress", 0x7F000001), 0);
    ActUntilAnswered(1);
}

TEST_F(GigeActions, NeedNoAnswer) {
    OpenOne();
    SetKeys();
    Choose();
    ASSERT_EQ(SetFeature("ActionAnswerTime", 0), 0);
    ASSERT_EQ(Act(), 0) << LastError();
    EXPECT_EQ(Feature("ActionAnswerCount"), 0);
    const auto end = Clock::now() + std::chrono::seconds(20);
    while (Simulated().Counts()[Count::Actions] == 0 && Clock::now() < end) {
        std::this_thread::yield();
    }
    EXPECT_EQ(Simulated().Counts()[Count::Actions], 1U);
}

TEST_F(GigeActions, FailIfThereIsNobodyToSendThemTo) {
    Way().OpenInterface();
    EXPECT_EQ(Act(), GenTL::GC_ERR_IO);
    EXPECT_EQ(LastError(), "No camera can be reached by lo");
}

TEST_F(GigeActions, KeepTheirNumbersInRange) {
    Way().OpenInterface();
    EXPECT_EQ(SetFeature("ActionDeviceKey", 0x1'0000'0000), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(SetFeature("ActionScheduledTime", -1), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(SetFeature("GevActionDestinationIPAddress", 0), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(SetFeature("ActionAnswerTime", 10'001), GenTL::GC_ERR_INVALID_VALUE);
    EXPECT_EQ(Feature("ActionDeviceKey"), 0);
    EXPECT_EQ(Feature("GevActionDestinationIPAddress"), 0xFFFFFFFF);
}

}  // namespace
