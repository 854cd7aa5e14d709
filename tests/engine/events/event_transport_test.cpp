// Event messages of USB3 Vision and Camera Link cameras.

#include "EventSupport.h"
#include "GenApi/EventAdapterCL.h"
#include "GenApi/EventAdapterU3V.h"

namespace EngineTest {

namespace {

constexpr const char* kLarger = "Malformed message - reported length larger than message size";
constexpr const char* kShorter =
    "Malformed message - reported length shorter than minimal event size";

/// An event as its features see it.
Bytes ItemU3V(size_t id, size_t length) {
    return Join({Little16(0), Little16(id), Filler(length - 4)});
}
Bytes MessageU3V(const Bytes& item, size_t length) {
    return Join(
        {{0x55, 0x33, 0x56, 0x45, 0, 0}, Little16(0x0C00), Little16(length), Little16(7), item});
}
Bytes MessageU3V(const Bytes& item) {
    return MessageU3V(item, item.size());
}

Bytes ItemCL(size_t size, size_t id, size_t length) {
    return Join({Big16(size), Big16(id), Filler(length - 4)});
}
Bytes MessageCL(const Bytes& items, size_t length) {
    return Join({Big16(0x0100), Filler(8), Big16(0x0C00), Big16(length), Big16(7), items});
}
Bytes MessageCL(const Bytes& items) {
    return MessageCL(items, items.size());
}
Bytes With(Bytes message, size_t place, uint8_t value) {
    message[place] = value;
    return message;
}

template <class Adapter>
class Events : public testing::Test {
protected:
    // The adapter runs callbacks when it goes.
    NotingCallback::Calls m_Calls;
    EventCamera m_Camera{{"0001", "0002", "0000"}};
    Adapter m_Adapter{&m_Camera.Map().Map()};
};

using EventsU3V = Events<CEventAdapterU3V>;
using EventsCL = Events<CEventAdapterCL>;

template <class Adapter>
class EventFaults : public Events<Adapter>, public testing::WithParamInterface<EventFault> {
protected:
    void Check() {
        EXPECT_EQ(FaultOf(this->m_Adapter, GetParam().message), GetParam().text);
        EXPECT_EQ(this->m_Camera.Event("0002"), Bytes());
    }
    using testing::WithParamInterface<EventFault>::GetParam;
};

using FaultU3V = EventFaults<CEventAdapterU3V>;
using FaultCL = EventFaults<CEventAdapterCL>;

std::string NameOf(const testing::TestParamInfo<EventFault>& each) {
    return each.param.name;
}

}  // namespace

TEST_F(EventsU3V, GoToTheirPorts) {
    Deliver(m_Adapter, MessageU3V(ItemU3V(1, 20)));
    EXPECT_EQ(m_Camera.Event("0001"), ItemU3V(1, 20));
    EXPECT_EQ(m_Camera.Event("0002"), Bytes());
}

TEST_F(EventsU3V, OfTheIdentifierZeroAreEventsToo) {
    Deliver(m_Adapter, MessageU3V(ItemU3V(0, 12)));
    EXPECT_EQ(m_Camera.Event("0000"), ItemU3V(0, 12));
}

TEST_F(EventsU3V, EndWhereTheLengthSays) {
    Deliver(m_Adapter, MessageU3V(ItemU3V(1, 20), 13));
    EXPECT_EQ(m_Camera.Event("0001").size(), 13U);
}

TEST_F(EventsU3V, MayUseTheReservedBytes) {
    Deliver(m_Adapter, MessageU3V(With(ItemU3V(1, 12), 0, 0xFF)));
    EXPECT_EQ(m_Camera.Event("0001"), With(ItemU3V(1, 12), 0, 0xFF));
}

TEST_P(FaultU3V, IsTold) {
    Check();
}

INSTANTIATE_TEST_SUITE_P(
    All, FaultU3V,
    testing::Values(EventFault{"NoMessage", {}, kTooSmall},
                    EventFault{"OneByteLess", MessageU3V(ItemU3V(2, 11)), kTooSmall},
                    EventFault{"WrongPrefix", With(MessageU3V(ItemU3V(2, 12)), 0, 0x54),
                               "Malformed message - wrong prefix 45563354 (45563355 expected)"},
                    EventFault{"WrongCommand", With(MessageU3V(ItemU3V(2, 12)), 6, 0x01),
                               "Malformed message - wrong command ID c01 (c00 expected)"},
                    EventFault{"LengthByOneTooLong", MessageU3V(ItemU3V(2, 12), 13), kLarger},
                    EventFault{"LengthOf65535", MessageU3V(ItemU3V(2, 12), 65535), kLarger},
                    EventFault{"LengthByOneTooShort", MessageU3V(ItemU3V(2, 12), 11), kShorter},
                    EventFault{"LengthOfZero", MessageU3V(ItemU3V(2, 12), 0), kShorter}),
    NameOf);

TEST_F(EventsCL, WithoutASizeAreOneEvent) {
    Deliver(m_Adapter, MessageCL(ItemCL(0, 1, 40)));
    EXPECT_EQ(m_Camera.Event("0001"), ItemCL(0, 1, 40));
}

TEST_F(EventsCL, WithSizesGoOneByOne) {
    NotingCallback::On(m_Camera.Map().Get("Size0001"), m_Calls);
    NotingCallback::On(m_Camera.Map().Get("Size0002"), m_Calls);
    Deliver(m_Adapter, MessageCL(Join({ItemCL(16, 2, 16), ItemCL(12, 1, 12)})));
    EXPECT_EQ(m_Camera.Event("0001"), ItemCL(12, 1, 12));
    EXPECT_EQ(m_Camera.Event("0002"), ItemCL(16, 2, 16));
    EXPECT_EQ(m_Calls, NotingCallback::Calls({"Size0002 inside", "Size0002 outside",
                                              "Size0001 inside", "Size0001 outside"}));
}

TEST_F(EventsCL, WithoutASizeBehindOthersAreTheRest) {
    Deliver(m_Adapter, MessageCL(Join({ItemCL(12, 1, 12), ItemCL(0, 2, 30)})));
    EXPECT_EQ(m_Camera.Event("0002"), ItemCL(0, 2, 30));
}

TEST_F(EventsCL, MayBeNoMoreThanTheirIdentifier) {
    Deliver(m_Adapter, MessageCL(Join({ItemCL(4, 1, 4), ItemCL(8, 2, 8)})));
    EXPECT_EQ(m_Camera.Event("0001"), ItemCL(4, 1, 4));
    EXPECT_EQ(m_Camera.Event("0002"), ItemCL(8, 2, 8));
}

TEST_F(EventsCL, BeforeAFaultStayDelivered) {
    EXPECT_EQ(FaultOf(m_Adapter, MessageCL(Join({ItemCL(12, 1, 12), ItemCL(13, 2, 12)}))), kLarger);
    EXPECT_EQ(m_Camera.Event("0001"), ItemCL(12, 1, 12));
    EXPECT_EQ(m_Camera.Event("0002"), Bytes());
}

TEST_P(FaultCL, IsTold) {
    Check();
}

INSTANTIATE_TEST_SUITE_P(
    All, FaultCL,
    testing::Values(
        EventFault{"NoMessage", {}, kTooSmall},
        EventFault{"OneByteLess", MessageCL(ItemCL(0, 2, 11)), kTooSmall},
        EventFault{"WrongPreamble", With(MessageCL(ItemCL(0, 2, 12)), 1, 0x02),
                   "Malformed message - wrong preamble 102 (100 expected)"},
        EventFault{"WrongCommand", With(MessageCL(ItemCL(0, 2, 12)), 11, 0x02),
                   "Malformed message - wrong command ID c02 (c00 expected)"},
        EventFault{"LengthByOneTooLong", MessageCL(ItemCL(0, 2, 12), 13), kLarger},
        EventFault{"LengthOf65535", MessageCL(ItemCL(0, 2, 12), 65535), kLarger},
        EventFault{"LengthByOneTooShort", MessageCL(ItemCL(0, 2, 12), 11), kShorter},
        EventFault{"LengthOfZero", MessageCL(ItemCL(0, 2, 12), 0), kShorter},
        EventFault{"EventBeyondTheMessage", MessageCL(ItemCL(13, 2, 12)), kLarger},
        EventFault{"EventOf65535", MessageCL(ItemCL(65535, 2, 12)), kLarger},
        EventFault{"EventWithoutRoomForItsIdentifier", MessageCL(ItemCL(3, 2, 12)), kShorter},
        EventFault{"RestOfThreeBytes", MessageCL(Join({ItemCL(12, 1, 12), {0, 3, 0}})), kShorter}),
    NameOf);

}  // namespace EngineTest
