#include <algorithm>
#include <array>
#include <functional>
#include <numeric>
#include <thread>

#include "GigeProducerTest.h"
#include "gige/message/MessageFeatures.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/GvcpEvent.h"
#include "simulator/device/CameraDevice.h"

namespace {

using namespace OvGige;
using OvSimulator::Count;
using OvSimulator::Faults;
using OvSimulator::MessageKind;

/// An event as a consumer gets it.
struct RemoteEvent {
    uint64_t id = 0;
    std::string idText;
    Bytes bytes;
};

/// Events of simulated cameras through the producer's file.
class GigeEvents : public GigeProducerTest {
protected:
    /// Registers of the camera's own features.
    static constexpr uint64_t kStart = OvSimulator::kApplicationBase + 0x408;
    static constexpr uint64_t kStop = OvSimulator::kApplicationBase + 0x40C;
    static constexpr uint64_t kEventsEnabled = OvSimulator::kApplicationBase + 0xA08;
    static constexpr uint64_t kDropOff = OvSimulator::kApplicationBase + 0xA20;
    static constexpr uint64_t kDropOffTime = OvSimulator::kApplicationBase + 0xA24;

    /// A frame that nobody takes, since no stream is open.
    static constexpr uint64_t kBlockDiscard = 0x9003;
    static constexpr uint32_t kOnlyBlockDiscard = 1 << 2;

    GigeEvents() { setenv("OV_VIRTUAL_FRAME_RATE", "200", 1); }
    ~GigeEvents() override { unsetenv("OV_VIRTUAL_FRAME_RATE"); }

    void OpenWith(const Faults& faults, MessageKind kind = MessageKind::EventData) {
        AddCamera(0, faults, kind);
        FindAll();
        ASSERT_EQ(Open(IdOfCamera()), 0) << LastError();
        ASSERT_EQ(Write<uint32_t>(Way().port, kEventsEnabled, kOnlyBlockDiscard), 0) << LastError();
    }
    void Register() {
        ASSERT_EQ(Api().GCRegisterEvent(Way().device, GenTL::EVENT_REMOTE_DEVICE, &m_event), 0)
            << LastError();
    }
    /// Frames that no stream takes begin, each with an event.
    void StartFrames() { ASSERT_EQ(Write<uint32_t>(Way().port, kStart, 1), 0) << LastError(); }
    void StopFrames() { ASSERT_EQ(Write<uint32_t>(Way().port, kStop, 1), 0) << LastError(); }

    GenTL::GC_ERROR Fetch(RemoteEvent& event, uint64_t timeout) {
        Bytes entry(2048);
        size_t size = entry.size();
        const GenTL::GC_ERROR code = Api().EventGetData(m_event, entry.data(), &size, timeout);
        if (code != 0) {
            return code;
        }
        event.id = GenTLApi::Number<uint64_t>([&](auto* type, void* out, size_t* length) {
            return Api().EventGetDataInfo(m_event, entry.data(), size, GenTL::EVENT_DATA_NUMID,
                                          type, out, length);
        });
        event.idText = GenTLApi::Text([&](auto* type, void* out, size_t* length) {
            return Api().EventGetDataInfo(m_event, entry.data(), size, GenTL::EVENT_DATA_ID, type,
                                          out, length);
        });
        event.bytes.resize(1024);
        size_t length = event.bytes.size();
        GenTL::INFO_DATATYPE type = 0;
        EXPECT_EQ(Api().EventGetDataInfo(m_event, entry.data(), size, GenTL::EVENT_DATA_VALUE,
                                         &type, event.bytes.data(), &length),
                  0);
        EXPECT_EQ(type, GenTL::INFO_DATATYPE_BUFFER);
        event.bytes.resize(length);
        return 0;
    }
    RemoteEvent Next() {
        RemoteEvent event;
        EXPECT_EQ(Fetch(event, 60'000), 0) << LastError();
        return event;
    }
    /// The frame that an event of the simulated camera is about.
    static uint64_t FrameOf(const RemoteEvent& event) {
        return event.bytes.size() < 24 ? ~uint64_t{0}
                                       : ReadBig<uint64_t>(ByteView(event.bytes).subspan(16));
    }
    std::vector<uint64_t> NextFrames(size_t count) {
        std::vector<uint64_t> frames;
        for (size_t i = 0; i < count; ++i) {
            frames.push_back(FrameOf(Next()));
        }
        return frames;
    }
    static std::vector<uint64_t> Counting(size_t count) {
        std::vector<uint64_t> numbers(count);
        std::iota(numbers.begin(), numbers.end(), uint64_t{0});
        return numbers;
    }
    uint64_t Counter(const std::string& name) {
        const auto features = MessageFeatures();
        const auto found = std::find_if(features.begin(), features.end(),
                                        [&](const auto& feature) { return feature.name == name; });
        return Read<uint64_t>(Way().device, 0x1000 + 8 * (found - features.begin()));
    }
    /// Waits for what is still on its way. A frame that began before the camera was stopped may
    /// have its event later.
    void ExpectCounter(const std::string& name, const std::function<uint64_t()>& value) {
        const auto end = Clock::now() + std::chrono::minutes(1);
        while (Counter(name) != value() && Clock::now() < end) {
            std::this_thread::yield();
        }
        EXPECT_EQ(Counter(name), value()) << name;
    }
    void ExpectCounter(const std::string& name, Count count) {
        ExpectCounter(name, [this, count] { return Counted(count); });
    }
    uint64_t Counted(Count count) { return Simulated().Counts()[count]; }

    /// A message of whoever has the socket, as if it were the camera's.
    void SendMessage(UdpSocket& from, Command command, const Bytes& payload, uint8_t flags = 0) {
        const Endpoint host{kLoopback, static_cast<uint16_t>(ReadBigRegister(kRegMessagePort))};
        from.SendTo(host, BuildCommand({.flags = static_cast<uint8_t>(flags | kFlagAnswerRequired),
                                        .command = command,
                                        .requestId = ++m_requestId,
                                        .payload = payload}));
    }

    GenTL::EVENT_HANDLE m_event = nullptr;

private:
    uint16_t m_requestId = 0;
};

TEST_F(GigeEvents, AreDeliveredWithoutAnyStream) {
    OpenWith({});
    Register();
    StartFrames();
    const RemoteEvent event = Next();
    EXPECT_EQ(event.id, kBlockDiscard);
    EXPECT_EQ(event.idText, "9003");
    ASSERT_EQ(event.bytes.size(), 24U);
    const ByteView bytes(event.bytes);
    EXPECT_EQ(ReadBig<uint16_t>(bytes.subspan(2)), kBlockDiscard);
    EXPECT_EQ(ReadBig<uint16_t>(bytes.subspan(6)), 1U) << "the block of frame 0";
    EXPECT_GT(ReadBig<uint64_t>(bytes.subspan(8)), 0U) << "the time";
    EXPECT_EQ(FrameOf(event), 0U);
    EXPECT_EQ(NextFrames(9), (std::vector<uint64_t>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST_F(GigeEvents, AreAcknowledgedEvenIfNobodyWantsThem) {
    OpenWith({});
    ASSERT_EQ(WriteBigRegister(kRegMessageTimeout, 60'000), 0) << LastError();
    StartFrames();
    while (Counted(Count::Acknowledgements) < 5) {
        std::this_thread::yield();
    }
    EXPECT_EQ(Counted(Count::AbandonedMessages), 0U);
}

TEST_F(GigeEvents, SayTheSizesOfTheirEntriesBeforehand) {
    OpenWith({});
    Register();
    const auto info = [&](GenTL::EVENT_INFO_CMD command) {
        return GenTLApi::Number<size_t>([&](auto* type, void* out, size_t* size) {
            return Api().EventGetInfo(m_event, command, type, out, size);
        });
    };
    EXPECT_GE(info(GenTL::EVENT_SIZE_MAX), kMessagePayloadMax);
    EXPECT_GE(info(GenTL::EVENT_INFO_DATA_SIZE_MAX), kMessagePayloadMax);
}

TEST_F(GigeEvents, AreNotDeliveredTwiceOrOutOfOrderWhenTheNetworkIsBad) {
    Faults faults;
    faults.seed = 11;
    faults.message.lost = 0.1;
    faults.message.doubled = 0.3;
    faults.message.ignored = 0.3;
    faults.message.foreign = 0.3;
    OpenWith(faults);
    // So often that no message is given up.
    ASSERT_EQ(WriteBigRegister(kRegMessageTimeout, 5), 0) << LastError();
    ASSERT_EQ(WriteBigRegister(kRegMessageRetries, 1000), 0) << LastError();
    Register();
    StartFrames();
    EXPECT_EQ(NextFrames(60), Counting(60));
    EXPECT_EQ(Counted(Count::AbandonedMessages), 0U);
    for (const Count fault : {Count::LostMessages, Count::DoubledMessages,
                              Count::IgnoredAcknowledgements, Count::ForeignMessages}) {
        EXPECT_GT(Counted(fault), 0U) << NameOf(fault);
    }
    StopFrames();
    ExpectCounter("MessageEventCount", Count::Events);
    ExpectCounter("MessageCount", Count::Messages);
    ExpectCounter("MessageForeignCount", Count::ForeignMessages);
    ExpectCounter("MessageRepeatCount", [this] {
        return Counted(Count::RepeatedMessages) - Counted(Count::LostMessages) +
               Counted(Count::DoubledMessages);
    });
}

TEST_F(GigeEvents, AreMissingOnlyIfTheCameraGaveThemUp) {
    Faults faults;
    faults.seed = 12;
    faults.message.lost = 0.5;
    OpenWith(faults);
    ASSERT_EQ(WriteBigRegister(kRegMessageTimeout, 5), 0) << LastError();
    ASSERT_EQ(WriteBigRegister(kRegMessageRetries, 1), 0) << LastError();
    Register();
    StartFrames();
    const std::vector<uint64_t> frames = NextFrames(60);
    EXPECT_TRUE(std::is_sorted(frames.begin(), frames.end()));
    EXPECT_EQ(std::adjacent_find(frames.begin(), frames.end()), frames.end());
    EXPECT_GT(Counted(Count::AbandonedMessages), 0U);
    EXPECT_LE(frames.back() + 1 - frames.size(), Counted(Count::AbandonedMessages));
}

TEST_F(GigeEvents, ComeSeveralInAMessage) {
    OpenWith({}, MessageKind::Event);
    Register();
    UdpSocket camera = LoopbackSocket();
    Bytes payload = BuildEvent({.id = 1, .timestamp = 10}, false);
    Append(payload, BuildEvent({.id = 2, .timestamp = 11}, false));
    SendMessage(camera, Command::Event, payload);
    const RemoteEvent first = Next();
    EXPECT_EQ(first.id, 1U);
    EXPECT_EQ(first.bytes, BuildEvent({.id = 1, .timestamp = 10}, false));
    EXPECT_EQ(Next().id, 2U);
}

TEST_F(GigeEvents, ComeInTheFormWithLongNumbers) {
    OpenWith({});
    ASSERT_EQ(WriteBigRegister(kRegStreamConfig, kStreamConfigExtendedIds), 0) << LastError();
    ASSERT_EQ(WriteBigRegister(kRegMessageConfig, kMessageConfigSeveralEvents), 0) << LastError();
    Register();
    StartFrames();
    for (uint64_t frame = 0; frame < 20; ++frame) {
        const RemoteEvent event = Next();
        ASSERT_EQ(event.bytes.size(), 32U);
        const ByteView bytes(event.bytes);
        EXPECT_EQ(ReadBig<uint64_t>(bytes.subspan(8)), frame + 1) << "the block";
        EXPECT_EQ(ReadBig<uint64_t>(bytes.subspan(24)), frame);
    }
}

TEST_F(GigeEvents, AreNotTakenFromOthers) {
    OpenWith({});
    Register();
    UdpSocket stranger;
    stranger.Bind({{kLoopback.value + 1}, 0});
    SendMessage(stranger, Command::Event, BuildEvent({.id = 1}, false));
    UdpSocket camera = LoopbackSocket();
    SendMessage(camera, Command::Event, BuildEvent({.id = 2}, false));
    EXPECT_EQ(Next().id, 2U);
    ExpectCounter("MessageForeignCount", [] { return 1; });
    EXPECT_FALSE(stranger.Receive(Clock::now())) << "an acknowledgement";
    RemoteEvent event;
    EXPECT_EQ(Fetch(event, 0), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(GigeEvents, ArentOfferedByACameraWithoutAMessageChannel) {
    OpenWith({}, MessageKind::None);
    EXPECT_EQ(Api().GCRegisterEvent(Way().device, GenTL::EVENT_REMOTE_DEVICE, &m_event),
              GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(Read<uint32_t>(Way().port, kEventsEnabled), kOnlyBlockDiscard);
}

TEST_F(GigeEvents, GoToTheOwnerNotToAReader) {
    OpenOne(GenTL::DEVICE_ACCESS_READONLY);
    EXPECT_EQ(Api().GCRegisterEvent(Way().device, GenTL::EVENT_REMOTE_DEVICE, &m_event),
              GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(ReadBigRegister(kRegMessagePort), 0U);
}

TEST_F(GigeEvents, EndWithTheCamera) {
    OpenWith({});
    Register();
    EXPECT_NE(ReadBigRegister(kRegMessagePort), 0U);
    StartFrames();
    Next();
    ASSERT_EQ(Api().DevClose(Way().device), 0);
    ASSERT_EQ(Open(IdOfCamera(), GenTL::DEVICE_ACCESS_READONLY), 0) << LastError();
    EXPECT_EQ(ReadBigRegister(kRegMessagePort), 0U);
}

TEST_F(GigeEvents, ComeAgainAfterACameraWasLostAndOpenedAgain) {
    OpenWith({});
    Register();
    GenTL::EVENT_HANDLE offline = nullptr;
    ASSERT_EQ(Api().GCRegisterEvent(Way().device, GenTL::EVENT_DEVICE_OFFLINE, &offline), 0);
    ASSERT_EQ(WriteBigRegister(kRegHeartbeatTimeout, 500), 0) << LastError();
    ASSERT_EQ(Write<uint32_t>(Way().port, kDropOffTime, 0), 0) << LastError();
    StartFrames();
    Next();
    ASSERT_EQ(Write<uint32_t>(Way().port, kDropOff, 1), 0) << LastError();
    size_t size = 0;
    ASSERT_EQ(Api().EventGetData(offline, nullptr, &size, 60'000), 0);
    ASSERT_EQ(Api().DevClose(Way().device), 0);
    ASSERT_EQ(Open(IdOfCamera()), 0) << LastError();
    ASSERT_EQ(Write<uint32_t>(Way().port, kEventsEnabled, kOnlyBlockDiscard), 0) << LastError();
    Register();
    StartFrames();
    EXPECT_EQ(Next().id, kBlockDiscard);
}

}  // namespace
