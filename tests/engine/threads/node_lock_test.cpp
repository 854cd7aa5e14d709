// One lock for the whole graph: clients of many threads at once.

#include <atomic>
#include <memory>
#include <thread>

#include "NodeGraph.h"

namespace EngineTest {

namespace {

/// Runs an action so many times in each of some threads.
template <class... Actions>
void RunAtOnce(int times, const Actions&... actions) {
    const auto repeat = [times](const auto& action) {
        return std::thread([times, &action] {
            for (int i = 0; i < times; ++i) {
                action(i);
            }
        });
    };
    std::thread threads[] = {repeat(actions)...};
    for (std::thread& thread : threads) {
        thread.join();
    }
}

std::string Graph() {
    return RegXml{.name = "Reg", .address = 0, .polling = "<PollingTime>1</PollingTime>"}() +
           RegXml{.name = "Lock", .address = 4, .caching = "NoCache"}() +
           IntegerXml("Node", Element("pIsLocked", "Lock"), Element("pValue", "Reg")) +
           IntegerXml("Other", "", Element("pValue", "Reg"));
}

}  // namespace

TEST(ManyThreads, ReadWritePollAndInvalidateOneGraph) {
    XmlNodeMap nodes(Graph());
    std::atomic<int> calls = 0;
    struct Client {
        std::atomic<int>& calls;
        void OnChange(INode* node) {
            ++calls;
            dynamic_cast<IInteger&>(*node).GetValue();
        }
    } client{calls};
    INode& other = nodes.Get("Other");
    Register(&other, client, &Client::OnChange, cbPostInsideLock);
    Register(&other, client, &Client::OnChange, cbPostOutsideLock);
    auto& node = nodes.Get<IInteger>("Node");
    constexpr int kTimes = 200;
    RunAtOnce(
        kTimes, [&](int i) { node.SetValue(i); },
        [&](int i) { dynamic_cast<IInteger&>(other).GetValue(i % 2 == 0, i % 3 == 0); },
        [&](int /*i*/) { nodes->Poll(1); }, [&](int /*i*/) { nodes->InvalidateNodes(); },
        [&](int i) { nodes.Get("Node").ImposeVisibility(i % 2 == 0 ? Guru : Beginner); });
    EXPECT_GE(calls, 2 * kTimes);
    EXPECT_EQ(nodes.Port().Peek<int32_t>(0), kTimes - 1);
    auto& map = dynamic_cast<INodeMapPrivate&>(nodes.Map());
    EXPECT_TRUE(map.GetBathometer().IsZero());
    EXPECT_EQ(map.GetEntryPoint(), "");
}

/// Knows whether it may still be called.
class WatchedCallback : public CNodeCallback {
public:
    using Flag = std::shared_ptr<std::atomic<bool>>;

    WatchedCallback(INode* node, Flag isOver, std::atomic<int>& alive)
        : CNodeCallback(node), m_IsOver(std::move(isOver)), m_Alive(alive) {
        ++m_Alive;
    }
    ~WatchedCallback() override { --m_Alive; }
    void operator()(ECallbackType type) const override {
        // One outside the lock may have begun before it was over.
        EXPECT_FALSE(type == cbPostInsideLock && *m_IsOver);
    }
    void Destroy() override { delete this; }

private:
    Flag m_IsOver;
    std::atomic<int>& m_Alive;
};

TEST(ManyThreads, RegisterAndDeregisterWhileOthersWrite) {
    std::atomic<int> alive = 0;
    XmlNodeMap nodes(Graph());
    INode& watched = nodes.Get("Other");
    const auto comeAndGo = [&](int /*i*/) {
        const auto isOver = std::make_shared<std::atomic<bool>>(false);
        const CallbackHandleType handle =
            watched.RegisterCallback(new WatchedCallback(&watched, isOver, alive));
        nodes.Get<IInteger>("Other").GetValue();
        EXPECT_TRUE(watched.DeregisterCallback(handle));
        *isOver = true;
    };
    const auto write = [&](int i) { nodes.Get<IInteger>("Node").SetValue(i); };
    RunAtOnce(1000, write, comeAndGo, comeAndGo, write);
    EXPECT_EQ(alive, 0);
}

TEST(SharedLock, GuardsSeveralMaps) {
    CLock lock;
    XmlNodeMap one(Graph(), {.lock = &lock});
    XmlNodeMap other(Graph(), {.lock = &lock});
    EXPECT_EQ(&one->GetLock(), &lock);
    EXPECT_EQ(&other->GetLock(), &lock);
    int unguarded = 0;
    struct Client {
        int& count;
        void OnChange(INode* /*node*/) { ++count; }
    } client{unguarded};
    Register(&one.Get("Node"), client, &Client::OnChange, cbPostInsideLock);
    Register(&other.Get("Node"), client, &Client::OnChange, cbPostInsideLock);
    RunAtOnce(
        100, [&](int i) { one.Get<IInteger>("Node").SetValue(i); },
        [&](int i) { other.Get<IInteger>("Node").SetValue(i); });
    EXPECT_EQ(unguarded, 200);
}

TEST(OwnLock, IsEachMapsOwn) {
    XmlNodeMap one(Graph());
    XmlNodeMap other(Graph());
    EXPECT_NE(&one->GetLock(), &other->GetLock());
}

/// A sweep belongs to one thread: nobody else gets in between two nodes.
TEST(Poll, HoldsTheLockForTheWholeSweep) {
    XmlNodeMap nodes(Graph());
    struct Client {
        void OnInside(INode* node) { inside.push_back(IsFree(node)); }
        void OnOutside(INode* node) { outside.push_back(IsFree(node)); }
        static bool IsFree(INode* node) { return IsFreeForOthers(node->GetNodeMap()->GetLock()); }
        std::vector<bool> inside;
        std::vector<bool> outside;
    } client;
    for (const char* const name : {"Reg", "Node", "Other"}) {
        Register(&nodes.Get(name), client, &Client::OnInside, cbPostInsideLock);
        Register(&nodes.Get(name), client, &Client::OnOutside, cbPostOutsideLock);
    }
    nodes->Poll(1);
    EXPECT_THAT(client.inside, testing::ElementsAre(false, false, false));
    EXPECT_THAT(client.outside, testing::ElementsAre(true, true, true));
}

}  // namespace EngineTest
