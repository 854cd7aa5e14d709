// Who is told of a node's changes.

#include "node_graph.h"

namespace EngineTest {

namespace {

/// Counts its end of life.
class MortalCallback : public CNodeCallback {
public:
    MortalCallback(INode* node, int& deaths) : CNodeCallback(node), m_Deaths(deaths) {}
    ~MortalCallback() override { ++m_Deaths; }
    void operator()(ECallbackType /*type*/) const override {}
    void Destroy() override { delete this; }

private:
    int& m_Deaths;
};

class Callbacks : public testing::Test {
protected:
    CallbackHandleType AddMortal(INode& node) {
        return node.RegisterCallback(new MortalCallback(&node, m_Deaths));
    }

    XmlNodeMap m_Nodes{IntegerXml("Node") + IntegerXml("Other", Element("pInvalidator", "Node"))};
    INode& m_Node = m_Nodes.Get("Node");
    INode& m_Other = m_Nodes.Get("Other");
    NotingCallback::Calls m_Calls;
    int m_Deaths = 0;
};

}  // namespace

TEST_F(Callbacks, AreHandledByTheirAddress) {
    auto* const callback = new NotingCallback(&m_Node, m_Calls);
    EXPECT_EQ(m_Node.RegisterCallback(callback), reinterpret_cast<CallbackHandleType>(callback));
}

TEST_F(Callbacks, AreDestroyedWhenDeregistered) {
    const CallbackHandleType handle = AddMortal(m_Node);
    EXPECT_TRUE(m_Node.DeregisterCallback(handle));
    EXPECT_EQ(m_Deaths, 1);
    EXPECT_FALSE(m_Node.DeregisterCallback(handle));
    EXPECT_EQ(m_Deaths, 1);
}

TEST_F(Callbacks, StayWithTheNodeThatTheyAreRegisteredWith) {
    const CallbackHandleType handle = AddMortal(m_Node);
    EXPECT_FALSE(m_Other.DeregisterCallback(handle));
    EXPECT_EQ(m_Deaths, 0);
}

TEST_F(Callbacks, AreDestroyedWithTheirNode) {
    {
        XmlNodeMap nodes(IntegerXml("Node"));
        AddMortal(nodes.Get("Node"));
        AddMortal(nodes.Get("Node"));
    }
    EXPECT_EQ(m_Deaths, 2);
}

TEST_F(Callbacks, AreDeregisteredByTheirHandleAlone) {
    const CallbackHandleType handle = AddMortal(m_Node);
    Deregister(handle);
    EXPECT_EQ(m_Deaths, 1);
    Deregister(0);
}

TEST_F(Callbacks, AreSilentOnceDeregistered) {
    const CallbackHandleType handle = NotingCallback::On(m_Node, m_Calls);
    m_Node.InvalidateNode();
    EXPECT_EQ(m_Calls.size(), 2U);
    Deregister(handle);
    m_Node.InvalidateNode();
    EXPECT_EQ(m_Calls.size(), 2U);
}

TEST_F(Callbacks, OfDependentsAreFiredToo) {
    NotingCallback::On(m_Other, m_Calls);
    m_Node.InvalidateNode();
    EXPECT_THAT(m_Calls, testing::ElementsAre("Other inside", "Other outside"));
}

TEST_F(Callbacks, AreCollectedInOrderOfRegistration) {
    CallbackList list;
    auto* const first = new NotingCallback(&m_Node, m_Calls);
    auto* const second = new NotingCallback(&m_Node, m_Calls);
    auto* const dependent = new NotingCallback(&m_Other, m_Calls);
    m_Node.RegisterCallback(second);
    m_Node.RegisterCallback(first);
    m_Other.RegisterCallback(dependent);
    auto& node = m_Nodes.Get<INodePrivate>("Node");
    node.CollectCallbacksToFire(list, false);
    EXPECT_THAT(list, testing::ElementsAre(second, first));
    node.CollectCallbacksToFire(list, true);
    EXPECT_THAT(list, testing::ElementsAre(second, first, second, first, dependent));
}

TEST_F(Callbacks, OfAMemberFunctionGetTheNodeAtTheirTime) {
    struct Client {
        void OnInside(INode* node) { seen.push_back("inside " + std::string(node->GetName())); }
        void OnOutside(INode* node) { seen.push_back("outside " + std::string(node->GetName())); }
        std::vector<std::string> seen;
    } client;
    Register(&m_Node, client, &Client::OnOutside, cbPostOutsideLock);
    Register(&m_Node, client, &Client::OnInside, cbPostInsideLock);
    m_Node.InvalidateNode();
    EXPECT_THAT(client.seen, testing::ElementsAre("inside Node", "outside Node"));
}

}  // namespace EngineTest
