// Who is told of a node's changes.

#include <malloc.h>

#include <array>
#include <functional>
#include <future>
#include <memory>
#include <thread>

#include "NodeGraph.h"

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

/// Does what a test gives it, and counts its end of life.
class ActingCallback : public CNodeCallback {
public:
    using Action = std::function<void(ECallbackType)>;

    ActingCallback(INode* node, Action action, int& deaths)
        : CNodeCallback(node), m_Action(std::move(action)), m_Deaths(deaths) {}
    ~ActingCallback() override { ++m_Deaths; }
    void operator()(ECallbackType type) const override { m_Action(type); }
    void Destroy() override { delete this; }

private:
    Action m_Action;
    int& m_Deaths;
};

class Callbacks : public testing::Test {
protected:
    CallbackHandleType AddMortal(INode& node) {
        return node.RegisterCallback(new MortalCallback(&node, m_Deaths));
    }

    CallbackHandleType AddActing(INode& node, ActingCallback::Action action) {
        return node.RegisterCallback(new ActingCallback(&node, std::move(action), m_Deaths));
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

TEST_F(Callbacks, AreNotCalledOnceAnotherOneTookThemAway) {
    // Whichever of the two is called first, the other one isn't called at all.
    std::vector<CallbackHandleType> handles(2);
    int calls = 0;
    for (const size_t mine : {0UL, 1UL}) {
        handles[mine] = AddActing(m_Node, [&, mine](ECallbackType type) {
            ++calls;
            if (type == cbPostInsideLock) {
                EXPECT_TRUE(m_Node.DeregisterCallback(handles[1 - mine]));
                EXPECT_EQ(m_Deaths, 1) << "it isn't running";
            }
        });
    }
    m_Node.InvalidateNode();
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(m_Deaths, 1);
}

TEST_F(Callbacks, HaveNoSecondCallOnceAnotherThreadTookThemAway) {
    constexpr int kCallbacks = 8;
    std::vector<CallbackHandleType> handles(kCallbacks);
    std::array<int, 3> calls{};
    for (CallbackHandleType& mine : handles) {
        mine = AddActing(m_Node, [&](ECallbackType type) {
            ++calls[type];
            if (type == cbPostOutsideLock) {
                std::thread([&] {
                    for (const CallbackHandleType handle : handles) {
                        EXPECT_TRUE(handle == mine || m_Node.DeregisterCallback(handle));
                    }
                }).join();
                EXPECT_EQ(m_Deaths, kCallbacks - 1);
            }
        });
    }
    m_Node.InvalidateNode();
    EXPECT_EQ(calls[cbPostInsideLock], kCallbacks);
    EXPECT_EQ(calls[cbPostOutsideLock], 1);
}

TEST_F(Callbacks, MayTakeThemselvesAway) {
    for (const ECallbackType when : {cbPostInsideLock, cbPostOutsideLock}) {
        m_Deaths = 0;
        std::vector<ECallbackType> calls;
        CallbackHandleType handle = 0;
        handle = AddActing(m_Node, [&](ECallbackType type) {
            calls.push_back(type);
            if (type == when) {
                Deregister(handle);
                EXPECT_EQ(m_Deaths, 0) << "while it runs";
            }
        });
        m_Node.InvalidateNode();
        EXPECT_EQ(calls.back(), when);
        EXPECT_EQ(m_Deaths, 1);
        m_Node.InvalidateNode();
        EXPECT_EQ(calls.size(), when == cbPostInsideLock ? 1U : 2U);
    }
}

TEST_F(Callbacks, ThatTakeThemselvesAwayInACallWithinACallGoWithTheOuterOne) {
    int depth = 0;
    CallbackHandleType handle = 0;
    handle = AddActing(m_Node, [&](ECallbackType type) {
        if (type != cbPostInsideLock) {
            return;
        }
        ++depth;
        if (depth == 1) {
            m_Node.InvalidateNode();
            EXPECT_EQ(m_Deaths, 0) << "the outer call is under way";
        } else {
            Deregister(handle);
        }
    });
    m_Node.InvalidateNode();
    EXPECT_EQ(depth, 2);
    EXPECT_EQ(m_Deaths, 1);
}

TEST_F(Callbacks, ThatRaiseGoAllTheSame) {
    CallbackHandleType handle = 0;
    handle = AddActing(m_Node, [&](ECallbackType /*type*/) {
        Deregister(handle);
        RUNTIME_EXCEPTION("no more");
    });
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Node.InvalidateNode(); }), "no more");
    EXPECT_EQ(m_Deaths, 1);
    m_Node.InvalidateNode();
}

TEST_F(Callbacks, AreNotWaitedForOutsideTheLock) {
    std::promise<void> isCalled;
    std::promise<void> mayReturn;
    const CallbackHandleType handle = AddActing(m_Node, [&](ECallbackType type) {
        if (type == cbPostOutsideLock) {
            isCalled.set_value();
            mayReturn.get_future().wait();
        }
    });
    std::thread invalidating([&] { m_Node.InvalidateNode(); });
    isCalled.get_future().wait();
    EXPECT_TRUE(m_Node.DeregisterCallback(handle));
    EXPECT_EQ(m_Deaths, 0) << "it is being called";
    m_Node.InvalidateNode();
    mayReturn.set_value();
    invalidating.join();
    EXPECT_EQ(m_Deaths, 1);
}

TEST_F(Callbacks, OutliveTheMapWhileTheyAreCalled) {
    auto nodes = std::make_unique<XmlNodeMap>(IntegerXml("Node"));
    INode& node = nodes->Get("Node");
    int later = 0;
    for (int i = 0; i < 2; ++i) {
        AddActing(node, [&](ECallbackType type) {
            if (type == cbPostOutsideLock) {
                ++later;
                nodes.reset();
            }
        });
    }
    node.InvalidateNode();
    EXPECT_EQ(later, 1) << "the other one went with the map";
    EXPECT_EQ(m_Deaths, 2);
}

TEST_F(Callbacks, MustBeThere) {
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { m_Node.RegisterCallback(nullptr); }),
              "Node 'Node' : there is no callback to register.");
}

TEST_F(Callbacks, LeaveNothingBehind) {
    Deregister(AddMortal(m_Node));
    const size_t before = mallinfo2().uordblks;  // stays 0 under a sanitizer
    constexpr int kPairs = 1000000;
    for (int i = 0; i < kPairs; ++i) {
        Deregister(AddMortal(m_Node));
    }
    EXPECT_LE(mallinfo2().uordblks, before + 1024);
    EXPECT_EQ(m_Deaths, kPairs + 1);
}

TEST_F(Callbacks, OfDependentsAreFiredToo) {
    NotingCallback::On(m_Other, m_Calls);
    m_Node.InvalidateNode();
    EXPECT_THAT(m_Calls, testing::ElementsAre("Other inside", "Other outside"));
}

TEST_F(Callbacks, AreCollectedInOrderOfRegistration) {
    const auto collected = [](const CallbackList& list) {
        std::vector<const CNodeCallback*> callbacks;
        for (const auto& registration : list) {
            callbacks.push_back(registration->GetCallback());
        }
        return callbacks;
    };
    CallbackList list;
    auto* const first = new NotingCallback(&m_Node, m_Calls);
    auto* const second = new NotingCallback(&m_Node, m_Calls);
    auto* const dependent = new NotingCallback(&m_Other, m_Calls);
    m_Node.RegisterCallback(second);
    m_Node.RegisterCallback(first);
    m_Other.RegisterCallback(dependent);
    auto& node = m_Nodes.Get<INodePrivate>("Node");
    node.CollectCallbacksToFire(list, false);
    EXPECT_THAT(collected(list), testing::ElementsAre(second, first));
    node.CollectCallbacksToFire(list, true);
    EXPECT_THAT(collected(list), testing::ElementsAre(second, first, second, first, dependent));
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
