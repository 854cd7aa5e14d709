// What event adapters do with maps, and events whose identifiers the caller knows.

#include "EventSupport.h"
#include "GenApi/EventAdapterGeneric.h"

namespace EngineTest {

namespace {

class GenericEvents : public testing::Test {
protected:
    // The adapter runs callbacks when it goes.
    NotingCallback::Calls m_Calls;
    EventCamera m_Camera{{"9C40", "0000", "112233445566778899"}};
    CEventAdapterGeneric m_Adapter{&m_Camera.Map().Map()};
};

}  // namespace

TEST_F(GenericEvents, GoByNumber) {
    Deliver(m_Adapter, {1, 2, 3}, uint64_t{0x9C40});
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({1, 2, 3}));
    EXPECT_EQ(m_Camera.Event("0000"), Bytes());
    Deliver(m_Adapter, {4}, uint64_t{0});
    EXPECT_EQ(m_Camera.Event("0000"), Bytes({4}));
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({1, 2, 3}));
}

TEST_F(GenericEvents, GoByText) {
    Deliver(m_Adapter, {1, 2, 3}, gcstring("00009c40"));
    Deliver(m_Adapter, {4}, gcstring("00"));
    Deliver(m_Adapter, {5, 6}, gcstring("112233445566778899"));
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({1, 2, 3}));
    EXPECT_EQ(m_Camera.Event("0000"), Bytes({4}));
    EXPECT_EQ(m_Camera.Event("112233445566778899"), Bytes({5, 6}));
}

TEST_F(GenericEvents, GoByShorterTextsAfterLongerOnes) {
    Deliver(m_Adapter, {5, 6}, gcstring("112233445566778899"));
    Deliver(m_Adapter, {1}, gcstring("9C40"));
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({1}));
    EXPECT_EQ(m_Camera.Event("112233445566778899"), Bytes({5, 6}));
}

TEST_F(GenericEvents, WithoutDataRunTheCallbacks) {
    NotingCallback::On(m_Camera.Map().Get("Size9C40"), m_Calls);
    m_Adapter.DeliverMessage(nullptr, 0, uint64_t{0x9C40});
    EXPECT_EQ(m_Calls.size(), 2U);
}

TEST_F(GenericEvents, NeedALengthThatCanBe) {
    EXPECT_EQ(DescriptionOf<LogicalErrorException>(
                  [&] { m_Adapter.DeliverMessage(nullptr, -1, uint64_t{0x9C40}); }),
              "Negative 'Length' is not allowed here");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>(
                  [&] { m_Adapter.DeliverMessage(nullptr, 1, gcstring("9C40")); }),
              "If an event carries data ('Length' > 0) a valid pointer must be provided");
}

TEST_F(GenericEvents, WithoutAnIdentifierEndTheProcess) {
    CEventAdapter& adapter = m_Adapter;
    EXPECT_DEATH(adapter.DeliverMessage(nullptr, 0), "The generic event adapter knows no layout");
}

class GenericEventID : public GenericEvents, public testing::WithParamInterface<const char*> {};

TEST_P(GenericEventID, ThatIsNoneIsRefused) {
    const gcstring id(GetParam());
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { Deliver(m_Adapter, {1}, id); }),
              std::string("Invalid event ID delivered: ") + GetParam());
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes());
}

INSTANTIATE_TEST_SUITE_P(All, GenericEventID,
                         testing::Values("", "9", "9C4", "9C40 ", "0x9C40", "9C4G", "-1", "9C 40"));

TEST(EventAdapter, GivesOneEventToAllPortsThatWaitForIt) {
    XmlNodeMap map(
        "<Port Name=\"Short\"><EventID>01</EventID></Port>"
        "<Port Name=\"Long\"><EventID>00000001</EventID></Port>"
        "<Integer Name=\"Count\"><EventID>01</EventID><Value>5</Value></Integer>");
    NotingCallback::Calls calls;
    CEventAdapterGeneric adapter(&map.Map());
    for (const char* const name : {"Short", "Long", "Count"}) {
        NotingCallback::On(map.Get(name), calls);
    }
    Deliver(adapter, {1, 2}, uint64_t{1});
    EXPECT_EQ(calls, NotingCallback::Calls({"Short inside", "Short outside", "Long inside",
                                            "Long outside", "Count inside", "Count outside"}));
    EXPECT_EQ(map.Get<IInteger>("Count").GetValue(), 5);
    EXPECT_EQ(map.Get("Short").GetAccessMode(), RO);
    EXPECT_EQ(map.Get("Long").GetAccessMode(), RO);
}

TEST(EventAdapter, LeavesPortsOfTheDeviceAlone) {
    EventCamera camera({"9C40"});
    const CEventAdapterGeneric adapter(&camera.Map().Map());
    EXPECT_EQ(camera.Map().Get("Device").GetAccessMode(), RW);
    EXPECT_EQ(camera.Map().Get("E9C40").GetAccessMode(), NA);
}

TEST(EventAdapter, DeliversToNobodyWithoutAMap) {
    NotingCallback::Calls calls;
    EventCamera camera({"9C40"});
    CEventAdapterGeneric detached(&camera.Map().Map());
    detached.DetachNodeMap();
    NotingCallback::On(camera.Map().Get("Size9C40"), calls);
    EXPECT_NO_THROW(Deliver(detached, {1}, uint64_t{0x9C40}));
    EXPECT_EQ(calls, NotingCallback::Calls());
    EXPECT_EQ(camera.Map().Get("E9C40").GetAccessMode(), NI);

    CEventAdapterGeneric neverAttached;
    EXPECT_NO_THROW(Deliver(neverAttached, {1}, uint64_t{1}));
    EXPECT_NO_THROW(neverAttached.DetachNodeMap());
}

TEST(EventAdapter, LeavesAMapForTheNext) {
    EventCamera first({"9C40"});
    EventCamera second({"9C40"});
    CEventAdapterGeneric adapter(&first.Map().Map());
    adapter.AttachNodeMap(&second.Map().Map());
    Deliver(adapter, {1}, uint64_t{0x9C40});
    EXPECT_EQ(first.Map().Get("E9C40").GetAccessMode(), NI);
    EXPECT_EQ(second.Event("9C40"), Bytes({1}));
}

TEST(EventAdapter, TakesAMapAgain) {
    EventCamera camera({"9C40"});
    CEventAdapterGeneric adapter(&camera.Map().Map());
    Deliver(adapter, {1}, uint64_t{0x9C40});
    adapter.AttachNodeMap(&camera.Map().Map());
    EXPECT_EQ(camera.Map().Get("E9C40").GetAccessMode(), NA) << "the events of before are gone";
    Deliver(adapter, {2}, uint64_t{0x9C40});
    EXPECT_EQ(camera.Event("9C40"), Bytes({2}));
    adapter.DetachNodeMap();
    EXPECT_EQ(camera.Map().Get("E9C40").GetAccessMode(), NI);
}

TEST(EventAdapter, DetachesAllPortsEvenWhenACallbackFails) {
    struct Client {
        void Fail(INode* /*node*/) { RUNTIME_EXCEPTION("Callback failed"); }
    } client;
    EventCamera camera({"01", "02"});
    CEventAdapterGeneric adapter(&camera.Map().Map());
    const CallbackHandleType handle =
        Register(&camera.Map().Get("E01"), client, &Client::Fail, cbPostInsideLock);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { adapter.DetachNodeMap(); }), "Callback failed");
    EXPECT_EQ(camera.Map().Get("E01").GetAccessMode(), NI);
    EXPECT_EQ(camera.Map().Get("E02").GetAccessMode(), NI);
    Deregister(handle);
}

TEST(EventAdapter, EndsTheProcessWithoutAMapToAttach) {
    CEventAdapterGeneric adapter;
    EXPECT_DEATH(adapter.AttachNodeMap(nullptr), "map != nullptr");
}

TEST(EventAdapter, DeliversWhileAnotherThreadReads) {
    EventCamera camera({"9C40"});
    CEventAdapterGeneric adapter(&camera.Map().Map());
    Deliver(adapter, {0, 0}, uint64_t{0x9C40});
    auto& size = camera.Map().Get<IInteger>("Size9C40");
    const auto reader = std::async(std::launch::async, [&size] {
        for (int64_t last = 0; last < 0xFFFF;) {
            const int64_t value = size.GetValue();
            ASSERT_GE(value, last);
            last = value;
        }
    });
    for (uint8_t i = 0; i < 255; ++i) {
        Deliver(adapter, {i, i}, uint64_t{0x9C40});
    }
    Deliver(adapter, {0xFF, 0xFF}, uint64_t{0x9C40});
    reader.wait();
}

}  // namespace EngineTest
