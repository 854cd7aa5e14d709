// What stands between a port node and the latest event.

#include "EventSupport.h"

namespace EngineTest {

namespace {

class EventPort : public testing::Test {
protected:
    void Attach(const Bytes& event) {
        m_Port.AttachEvent(event.data(), static_cast<int64_t>(event.size()));
    }
    static std::string ReadFault(CEventPort& port, int64_t address, int64_t length) {
        Bytes buffer(64);
        return DescriptionOf<RuntimeException>([&] { port.Read(buffer.data(), address, length); });
    }

    // The port runs callbacks when it goes.
    NotingCallback::Calls m_Calls;
    EventCamera m_Camera{{"9C40"}};
    INode& m_Node = m_Camera.Map().Get("E9C40");
    INode& m_Size = m_Camera.Map().Get("Size9C40");
    CEventPort m_Port{&m_Node};
};

constexpr const char* kNoRead = "Can't read from Register 0000000000000010. Access mode is NA";
constexpr const char* kNoWrite = "Can't write to Register 0000000000000010. Access mode is ";

struct Range {
    int64_t address;
    int64_t length;
    const char* text;
};

struct MessageIdentifier {
    const char* text;
    Bytes bytes;
    uint64_t number;
    bool isNumber;
};

}  // namespace

TEST_F(EventPort, IsNotAvailableWithoutAnEvent) {
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
    EXPECT_EQ(m_Node.GetAccessMode(), NA);
    EXPECT_EQ(m_Size.GetAccessMode(), NA);
    EXPECT_EQ(ReadFault(m_Port, 0x10, 2), kNoRead);
}

TEST_F(EventPort, LetsFeaturesReadTheEvent) {
    Attach({0x12, 0x34, 0x56});
    EXPECT_EQ(m_Port.GetAccessMode(), RO);
    EXPECT_EQ(m_Size.GetAccessMode(), RO);
    EXPECT_EQ(m_Camera.Size("9C40"), 0x1234);
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({0x12, 0x34, 0x56}));
}

TEST_F(EventPort, KeepsACopy) {
    Bytes event{1, 2};
    Attach(event);
    event.assign(2, 0xFF);
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({1, 2}));
}

TEST_F(EventPort, ForgetsTheEndOfALongerEventAtAShorterOne) {
    Attach({1, 2, 3, 4});
    EXPECT_EQ(m_Camera.Size("9C40"), 0x0102);
    Attach({5, 6});
    EXPECT_EQ(m_Camera.Size("9C40"), 0x0506);
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({5, 6}));
    Attach({7, 8, 9});
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({7, 8, 9}));
}

TEST_F(EventPort, TakesALongerEventThanTheOneBefore) {
    Attach({1, 2});
    Attach(Filler(1000));
    EXPECT_EQ(ReadFault(m_Port, 936, 64), "");
    EXPECT_NE(ReadFault(m_Port, 937, 64), "");
}

TEST_F(EventPort, IsNotAvailableAfterAnEventWithoutData) {
    Attach({1, 2});
    m_Port.AttachEvent(nullptr, 0);
    EXPECT_EQ(m_Size.GetAccessMode(), NA);
    EXPECT_EQ(ReadFault(m_Port, 0x10, 0), kNoRead);
}

TEST_F(EventPort, RefusesALengthBelowZero) {
    Attach({1, 2});
    const uint8_t byte = 0;
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { m_Port.AttachEvent(&byte, -1); }),
              "Negative 'Length' is not allowed here");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { m_Port.AttachEvent(nullptr, kLowest); }),
              "Negative 'Length' is not allowed here");
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({1, 2}));
}

TEST_F(EventPort, RefusesALengthWithoutBytes) {
    Attach({1, 2});
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { m_Port.AttachEvent(nullptr, 1); }),
              "If an event carries data ('Length' > 0) a valid pointer must be provided");
    EXPECT_EQ(m_Camera.Event("9C40"), Bytes({1, 2}));
}

TEST_F(EventPort, IsNeverWritten) {
    const auto write = [&] { m_Port.Write("ab", 0x10, 2); };
    EXPECT_EQ(DescriptionOf<RuntimeException>(write), std::string(kNoWrite) + "NA");
    Attach(Filler(32));
    EXPECT_EQ(DescriptionOf<RuntimeException>(write), std::string(kNoWrite) + "RO");
    EXPECT_EQ(m_Camera.Event("9C40"), Filler(32));
}

TEST_F(EventPort, IsNotAvailableAfterTheEventWasTakenAway) {
    Attach({1, 2});
    m_Port.DetachEvent();
    EXPECT_EQ(m_Size.GetAccessMode(), NA);
    EXPECT_EQ(ReadFault(m_Port, 0x10, 2), kNoRead);
}

TEST_F(EventPort, RunsTheCallbacksAtEachEvent) {
    NotingCallback::On(m_Size, m_Calls);
    const NotingCallback::Calls once{"Size9C40 inside", "Size9C40 outside"};
    Attach({1, 2});
    EXPECT_EQ(m_Calls, once);
    Attach({1, 2});
    EXPECT_EQ(m_Calls.size(), 4U);
    m_Calls.clear();
    m_Port.AttachEvent(nullptr, 0);
    EXPECT_EQ(m_Calls, once);
}

TEST_F(EventPort, RunsTheCallbacksWhenAnEventIsTakenAwayButNotForNone) {
    m_Port.DetachEvent();
    NotingCallback::On(m_Size, m_Calls);
    m_Port.DetachEvent();
    EXPECT_THAT(m_Calls, testing::IsEmpty());
    Attach({1, 2});
    m_Calls.clear();
    m_Port.DetachEvent();
    EXPECT_EQ(m_Calls, NotingCallback::Calls({"Size9C40 inside", "Size9C40 outside"}));
}

TEST_F(EventPort, RunsTheCallbacksThatTakeLocksWithoutTheMapsLock) {
    struct Client {
        void Note(INode* node) { isFree.push_back(IsFreeForOthers(node->GetNodeMap()->GetLock())); }
        std::vector<bool> isFree;
    } client;
    const CallbackHandleType handle = Register(&m_Size, client, &Client::Note, cbPostOutsideLock);
    Attach({1, 2});
    m_Port.DetachEvent();
    EXPECT_EQ(client.isFree, std::vector<bool>({true, true}));
    Deregister(handle);
}

TEST_F(EventPort, LetsCallbacksReadTheNewEvent) {
    struct Client {
        void Note(INode* node) { value = dynamic_cast<IInteger&>(*node).GetValue(); }
        int64_t value = 0;
    } client;
    Attach({1, 2});
    EXPECT_EQ(m_Camera.Size("9C40"), 0x0102);
    const CallbackHandleType handle = Register(&m_Size, client, &Client::Note, cbPostInsideLock);
    Attach({3, 4});
    EXPECT_EQ(client.value, 0x0304);
    Deregister(handle);
}

TEST_F(EventPort, LeavesTheNodeWithoutATransportWhenDetached) {
    Attach({1, 2});
    m_Port.DetachNode();
    EXPECT_EQ(m_Node.GetAccessMode(), NI);
    EXPECT_EQ(m_Port.GetAccessMode(), NA);
    EXPECT_EQ(ReadFault(m_Port, 0x10, 2), kNoRead);
}

TEST_F(EventPort, DropsEventsWithoutANode) {
    CEventPort port;
    port.AttachEvent(Filler(4).data(), 4);
    EXPECT_EQ(port.GetAccessMode(), NA);
    EXPECT_EQ(ReadFault(port, 0x10, 2), kNoRead);
    EXPECT_EQ(port.GetSwapEndianess(), No);
    port.DetachEvent();
    port.DetachNode();
}

TEST_F(EventPort, IsDetachedEvenWhenACallbackOfTheNodeFails) {
    struct Client {
        void Fail(INode* /*node*/) { RUNTIME_EXCEPTION("Callback failed"); }
    } client;
    const CallbackHandleType handle = Register(&m_Size, client, &Client::Fail, cbPostInsideLock);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Port.DetachNode(); }), "Callback failed");
    EXPECT_EQ(m_Node.GetAccessMode(), NI);
    Deregister(handle);
    m_Port.DetachNode();
}

TEST_F(EventPort, GoesQuietlyWhenACallbackOfTheNodeFails) {
    struct Client {
        void Fail(INode* /*node*/) { RUNTIME_EXCEPTION("Callback failed"); }
    } client;
    m_Port.DetachNode();
    auto port = std::make_unique<CEventPort>(&m_Node);
    const CallbackHandleType handle = Register(&m_Size, client, &Client::Fail, cbPostInsideLock);
    port.reset();
    EXPECT_EQ(m_Node.GetAccessMode(), NI);
    Deregister(handle);
}

TEST_F(EventPort, EndsTheProcessWithoutANode) {
    EXPECT_DEATH(m_Port.AttachNode(nullptr), "m_ptrNode.IsValid\\(\\) && \"every port is a node\"");
}

TEST(EventPortByteOrder, IsThatOfTheNode) {
    XmlNodeMap map(
        "<Port Name=\"Swapped\"><EventID>01</EventID><SwapEndianess>Yes</SwapEndianess></Port>"
        "<Integer Name=\"Value\"><EventID>02</EventID><Value>1</Value></Integer>");
    EXPECT_EQ(CEventPort(&map.Get("Swapped")).GetSwapEndianess(), Yes);
    EXPECT_EQ(CEventPort(&map.Get("Value")).GetSwapEndianess(), No);
}

class EventPortRange : public EventPort, public testing::WithParamInterface<Range> {};

TEST_P(EventPortRange, OutsideTheEventIsRefused) {
    Attach(Filler(8));
    EXPECT_EQ(ReadFault(m_Port, GetParam().address, GetParam().length),
              std::string("CEventPort : Attempt to read address range ") + GetParam().text +
                  " which is outside the buffers address range [0,8]");
}

INSTANTIATE_TEST_SUITE_P(
    All, EventPortRange,
    testing::Values(Range{0, 9, "[0,9]"}, Range{8, 1, "[8,9]"}, Range{7, 2, "[7,9]"},
                    Range{9, 0, "[9,9]"}, Range{-1, 1, "[-1,0]"}, Range{-4, 4, "[-4,0]"},
                    Range{4, -2, "[4,2]"}, Range{0, kHighest, "[0,9223372036854775807]"},
                    Range{kHighest, 1, "[9223372036854775807,-9223372036854775808]"},
                    Range{kLowest, kLowest, "[-9223372036854775808,0]"}));

TEST_F(EventPort, GivesRangesUpToItsEnd) {
    Attach(Filler(8));
    EXPECT_EQ(ReadFault(m_Port, 0, 8), "");
    EXPECT_EQ(ReadFault(m_Port, 7, 1), "");
    EXPECT_EQ(ReadFault(m_Port, 8, 0), "");
}

class EventIdentifier : public testing::TestWithParam<MessageIdentifier> {
protected:
    static bool Matches(const CEventPort& port, const Bytes& bytes) {
        return port.CheckEventID(bytes.data(), static_cast<int64_t>(bytes.size()));
    }
};

TEST_P(EventIdentifier, IsThatOfTheMessageUpToLeadingZeros) {
    EventCamera camera({GetParam().text});
    const CEventPort port(&camera.Map().Get((std::string("E") + GetParam().text).c_str()));
    const Bytes& bytes = GetParam().bytes;
    EXPECT_TRUE(Matches(port, bytes));
    EXPECT_TRUE(Matches(port, Join({{0}, bytes})));
    EXPECT_FALSE(Matches(port, Join({bytes, {1}})));
    EXPECT_FALSE(Matches(port, Join({{1}, bytes})));
    EXPECT_EQ(port.CheckEventID(GetParam().number), GetParam().isNumber);
    EXPECT_FALSE(port.CheckEventID(GetParam().number + 1));
    EXPECT_EQ(port.GetEventIDLength(), static_cast<int64_t>(bytes.size()));
}

INSTANTIATE_TEST_SUITE_P(
    All, EventIdentifier,
    testing::Values(MessageIdentifier{"9C40", {0x9C, 0x40}, 0x9C40, true},
                    MessageIdentifier{"9c40", {0x9C, 0x40}, 0x9C40, true},
                    MessageIdentifier{"00009C40", {0x9C, 0x40}, 0x9C40, true},
                    MessageIdentifier{"9C00", {0x9C, 0x00}, 0x9C00, true},
                    MessageIdentifier{"0000", {}, 0, true},
                    MessageIdentifier{"0123456789ABCDEF",
                                      {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF},
                                      0x0123456789ABCDEF,
                                      true},
                    MessageIdentifier{"110123456789ABCDEF",
                                      {0x11, 0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF},
                                      0x0123456789ABCDEF,
                                      false}));

TEST(EventIdentifierText, HasAnEvenNumberOfDigits) {
    EventCamera camera({"9C4"});
    INode* const node = &camera.Map().Get("E9C4");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { CEventPort port(node); }),
              "EventID.length() % 2 == 0 && \"a hex string must be composed of an even number of "
              "characters\"");
}

}  // namespace EngineTest
