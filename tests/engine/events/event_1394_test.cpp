// Event messages of IEEE 1394 cameras.

#include "EventSupport.h"
#include "GenApi/EventAdapter1394.h"

namespace EngineTest {

namespace {

constexpr const char* kCorrupted = "Corrupted event data";

Bytes Message(size_t count, const Bytes& items) {
    return Join({Big16(count), Big16(9), items});
}
/// An event with so many bytes behind its identifier.
Bytes Item(size_t length, size_t id) {
    return Join({Big16(length), Big16(id), Filler(length)});
}

class Events1394 : public testing::Test {
protected:
    EventCamera m_Camera{{"0001", "0002"}};
    CEventAdapter1394 m_Adapter{&m_Camera.Map().Map()};
};

struct CorruptedMessage {
    const char* name;
    Bytes message;
};

}  // namespace

TEST_F(Events1394, GoToTheirPorts) {
    Deliver(m_Adapter, Message(3, Join({Item(5, 2), Item(0, 7), Item(0, 1)})));
    EXPECT_EQ(m_Camera.Event("0001"), Item(0, 1));
    EXPECT_EQ(m_Camera.Event("0002"), Item(5, 2));
}

TEST_F(Events1394, MayLieAnywhere) {
    const Bytes shifted = Join({{0xFF}, Message(1, Item(4, 1))});
    m_Adapter.DeliverMessage(shifted.data() + 1, static_cast<int64_t>(shifted.size()) - 1);
    EXPECT_EQ(m_Camera.Event("0001"), Item(4, 1));
}

TEST_F(Events1394, ComeFromAMessageInItsForm) {
    struct {
        EventData1394 head = {{0, 1}, {0, 9}};
        uint8_t item[4] = {0, 0, 0, 2};
    } message;
    m_Adapter.DeliverEventMessage(message.head, sizeof(message));
    EXPECT_EQ(m_Camera.Event("0002"), Item(0, 2));
}

TEST_F(Events1394, EndAtTheirCount) {
    Deliver(m_Adapter, Message(1, Join({Item(4, 1), Item(4, 2), {1}})));
    EXPECT_EQ(m_Camera.Event("0001"), Item(4, 1));
    EXPECT_EQ(m_Camera.Event("0002"), Bytes());
    Deliver(m_Adapter, Message(0, {}));
}

TEST_F(Events1394, BeforeAFaultStayDelivered) {
    EXPECT_EQ(FaultOf(m_Adapter, Message(2, Item(4, 1))), kCorrupted);
    EXPECT_EQ(m_Camera.Event("0001"), Item(4, 1));
}

TEST(Events1394Log, TellsRequestAndEvents) {
    EngineLog log;
    EventCamera camera({"0001"});
    CEventAdapter1394 adapter(&camera.Map().Map());
    Deliver(adapter, Message(2, Join({Item(4, 0x9C40), Item(0, 1)})));
    EXPECT_THAT(
        log.Texts("EventAdapter1394.Device.Misc.CEventAdapter1394"),
        testing::ElementsAre("Received request 9 with 2 events: \n", "Event 40000\n", "Event 1\n"));
}

class Fault1394 : public Events1394, public testing::WithParamInterface<CorruptedMessage> {};

TEST_P(Fault1394, IsTold) {
    EXPECT_EQ(FaultOf(m_Adapter, GetParam().message), kCorrupted);
    EXPECT_EQ(m_Camera.Event("0002"), Bytes());
}

INSTANTIATE_TEST_SUITE_P(
    All, Fault1394,
    testing::Values(
        CorruptedMessage{"NoMessage", {}}, CorruptedMessage{"ThreeBytes", {0, 0, 0}},
        CorruptedMessage{"CountWithoutEvents", Message(1, {})},
        CorruptedMessage{"CountOf65535", Message(65535, Item(4, 1))},
        CorruptedMessage{"HalfAHead", Message(1, {0, 0, 0})},
        CorruptedMessage{"EventByOneTooLong", Message(1, Join({Big16(5), Big16(2), Filler(4)}))},
        CorruptedMessage{"EventOf65535", Message(1, Join({Big16(65535), Big16(2), Filler(4)}))}),
    [](const auto& each) { return each.param.name; });

}  // namespace EngineTest
