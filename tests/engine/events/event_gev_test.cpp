// Event messages of GigE Vision cameras.

#include <algorithm>

#include "EventSupport.h"
#include "GenApi/EventAdapterGEV.h"

namespace EngineTest {

namespace {

constexpr uint8_t kExtended = 0x10;
constexpr size_t kEvent = 0xC0;
constexpr size_t kEventData = 0xC2;

constexpr const char* kTooLarge = "Malformed message - too large";
constexpr const char* kUnequal =
    "totalSize == curentPosition && \"the buffer must hold a number of equzally sized event "
    "items\"";

/// A request with the length that its events have.
Bytes Request(size_t command, uint8_t flags, const Bytes& events) {
    return Join({{0x42, flags}, Big16(command), Big16(events.size()), Big16(7), events});
}
/// The same with a length of the test's choice.
Bytes Lying(size_t length, Bytes request) {
    std::copy_n(Big16(length).begin(), 2, request.begin() + 4);
    return request;
}
/// An event with the size that its field tells, 0 for none, and `length` bytes.
Bytes Item(size_t size, size_t id, size_t length) {
    return Join({Big16(size), Big16(id), Filler(length - 4, static_cast<uint8_t>(id))});
}

class EventsGEV : public testing::Test {
protected:
    // The adapter runs callbacks when it goes.
    NotingCallback::Calls m_Calls;
    EventCamera m_Camera{{"0001", "0002"}};
    CEventAdapterGEV m_Adapter{&m_Camera.Map().Map()};
};

struct Record {
    size_t command;
    uint8_t flags;
    size_t size;
};

}  // namespace

TEST_F(EventsGEV, GoToTheirPorts) {
    Deliver(m_Adapter, Request(kEvent, 0, Item(16, 1, 16)));
    EXPECT_EQ(m_Camera.Event("0001"), Item(16, 1, 16));
    EXPECT_EQ(m_Camera.Event("0002"), Bytes());
    Deliver(m_Adapter, Request(kEvent, 0, Item(16, 2, 16)));
    EXPECT_EQ(m_Camera.Event("0001"), Item(16, 1, 16)) << "kept until the next one";
    EXPECT_EQ(m_Camera.Event("0002"), Item(16, 2, 16));
}

TEST_F(EventsGEV, SeveralInOneRequestGoOneByOne) {
    NotingCallback::On(m_Camera.Map().Get("Size0001"), m_Calls);
    NotingCallback::On(m_Camera.Map().Get("Size0002"), m_Calls);
    Deliver(m_Adapter, Request(kEvent, 0, Join({Item(16, 2, 16), Item(20, 1, 20)})));
    EXPECT_EQ(m_Camera.Event("0001"), Item(20, 1, 20));
    EXPECT_EQ(m_Camera.Event("0002"), Item(16, 2, 16));
    EXPECT_EQ(m_Calls, NotingCallback::Calls({"Size0002 inside", "Size0002 outside",
                                              "Size0001 inside", "Size0001 outside"}));
}

TEST_F(EventsGEV, WithoutASizeGetItPatchedInToACopy) {
    const Bytes request = Request(kEvent, 0, Item(0, 1, 16));
    Bytes sent = request;
    m_Adapter.DeliverMessage(sent.data(), static_cast<int64_t>(sent.size()));
    EXPECT_EQ(sent, request);
    EXPECT_EQ(m_Camera.Size("0001"), 16);
    EXPECT_EQ(m_Camera.Event("0001"), Item(16, 1, 16));
}

TEST_F(EventsGEV, WithoutASizeHaveThatOfTheOneBefore) {
    Deliver(m_Adapter, Request(kEvent, 0, Join({Item(24, 1, 24), Item(0, 2, 24)})));
    EXPECT_EQ(m_Camera.Event("0002"), Item(24, 2, 24));
}

TEST_F(EventsGEV, NobodyWaitsForAreLeftOut) {
    Deliver(m_Adapter, Request(kEvent, 0, Item(16, 3, 16)));
    EXPECT_EQ(m_Camera.Event("0001"), Bytes());
    EXPECT_EQ(m_Camera.Event("0002"), Bytes());
}

TEST_F(EventsGEV, WithDataButNoSizeAreOneEvent) {
    Deliver(m_Adapter, Request(kEventData, 0, Item(0, 1, 100)));
    EXPECT_EQ(m_Camera.Size("0001"), 100);
    EXPECT_EQ(m_Camera.Event("0001"), Item(100, 1, 100));
}

TEST_F(EventsGEV, WithDataMayFillTheLongestRequest) {
    Deliver(m_Adapter, Request(kEventData, 0, Item(0, 1, 576)));
    EXPECT_EQ(m_Camera.Size("0001"), 576);
}

TEST_F(EventsGEV, WithDataAndSizesGoOneByOne) {
    Deliver(m_Adapter, Request(kEventData, 0, Join({Item(40, 1, 40), Item(16, 2, 16)})));
    EXPECT_EQ(m_Camera.Event("0001"), Item(40, 1, 40));
    EXPECT_EQ(m_Camera.Event("0002"), Item(16, 2, 16));
}

TEST_F(EventsGEV, MayBeFollowedByBytesOfNoRequest) {
    Deliver(m_Adapter, Lying(16, Request(kEvent, 0, Item(16, 1, 30))));
    EXPECT_EQ(m_Camera.Event("0001").size(), 16U);
}

TEST_F(EventsGEV, BeforeAFaultStayDelivered) {
    EXPECT_EQ(FaultOf(m_Adapter, Request(kEvent, 0, Join({Item(16, 1, 16), Item(99, 2, 16)}))),
              kUnequal);
    EXPECT_EQ(m_Camera.Event("0001"), Item(16, 1, 16));
    EXPECT_EQ(m_Camera.Event("0002"), Bytes());
}

TEST_F(EventsGEV, OfAFaultyRequestLeaveThePortsAsTheyWere) {
    Deliver(m_Adapter, Request(kEvent, 0, Item(16, 1, 16)));
    EXPECT_NE(FaultOf(m_Adapter, Request(0xC4, 0, Item(20, 1, 20))), "");
    EXPECT_EQ(m_Camera.Event("0001"), Item(16, 1, 16));
}

TEST_F(EventsGEV, MayNotBeWithoutBytes) {
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Adapter.DeliverMessage(nullptr, 0); }),
              kTooSmall);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Adapter.DeliverMessage(nullptr, -1); }),
              kTooSmall);
    EXPECT_DEATH(m_Adapter.DeliverMessage(nullptr, 24), "bytes != nullptr");
}

class RecordGEV : public EventsGEV, public testing::WithParamInterface<Record> {};

TEST_P(RecordGEV, IsTheSizeOfAnEventThatTellsNone) {
    const Record& record = GetParam();
    Deliver(m_Adapter, Request(record.command, record.flags, Item(0, 1, record.size)));
    EXPECT_EQ(m_Camera.Event("0001"), Item(record.size, 1, record.size));
}

TEST_P(RecordGEV, IsTheLeastThatARequestHolds) {
    const Record& record = GetParam();
    const Bytes request = Request(record.command, record.flags, Item(0, 1, record.size - 1));
    EXPECT_EQ(FaultOf(m_Adapter, request), kTooSmall);
    EXPECT_EQ(m_Camera.Event("0001"), Bytes());
}

INSTANTIATE_TEST_SUITE_P(All, RecordGEV,
                         testing::Values(Record{kEvent, 0, 16}, Record{kEvent, kExtended, 24},
                                         Record{kEventData, 0, 20},
                                         Record{kEventData, kExtended, 28},
                                         Record{kEventData, 0xEF, 20}));

class FaultGEV : public EventsGEV, public testing::WithParamInterface<EventFault> {};

TEST_P(FaultGEV, IsTold) {
    EXPECT_EQ(FaultOf(m_Adapter, GetParam().message), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    All, FaultGEV,
    testing::Values(
        EventFault{"NoMessage", {}, kTooSmall},
        EventFault{"SevenBytes", {0x42, 0, 0, 0xC0, 0, 0, 0}, kTooSmall},
        EventFault{"HeadAlone", Request(kEvent, 0, {}), kTooSmall},
        EventFault{"WrongMagic",
                   {0x43, 0, 0, 0xC0, 0, 0, 0, 0},
                   "Malformed message - wrong magic 43 (42 expected)"},
        EventFault{"UnknownCommand", Request(0xC1, 0, Item(16, 1, 16)),
                   "Malformed message - unknown tag c1"},
        EventFault{"MoreThanARequestMayHold", Request(kEvent, 0, Item(0, 1, 577)), kTooLarge},
        EventFault{"LengthOf65535", Lying(65535, Request(kEvent, 0, Item(16, 1, 16))), kTooLarge},
        EventFault{"LengthBeyondTheMessage", Lying(25, Request(kEvent, 0, Item(16, 1, 16))),
                   kTooLarge},
        EventFault{"LengthThatCountsTheHead", Lying(24, Request(kEvent, 0, Item(16, 1, 16))),
                   kTooLarge},
        EventFault{"LengthByOneTooLong", Lying(17, Request(kEvent, 0, Item(16, 1, 16))), kTooLarge},
        EventFault{"EventBelowTheLeast", Request(kEvent, 0, Item(15, 1, 16)), kUnequal},
        EventFault{"EventBeyondTheRequest", Request(kEvent, 0, Item(17, 1, 16)), kUnequal},
        EventFault{"EventOf65535", Request(kEvent, 0, Item(65535, 1, 16)), kUnequal},
        EventFault{"RestOfOneByte", Request(kEvent, 0, Join({Item(16, 1, 16), {0}})), kUnequal},
        EventFault{"RestOfFourBytes", Request(kEvent, 0, Item(0, 1, 20)), kUnequal},
        EventFault{"DataByOneTooShortForTheirSize", Request(kEventData, 0, Item(21, 1, 20)),
                   kUnequal}),
    [](const auto& each) { return each.param.name; });

}  // namespace EngineTest
