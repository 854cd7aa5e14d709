// Threads that open cameras of one model at once.

#include <array>
#include <atomic>
#include <memory>
#include <thread>

#include "FactorySupport.h"
#include "factory/SharedDescriptions.h"

namespace EngineTest {

TEST(SharedDescriptionOfThreads, ServesThoseThatOpenAndCloseAtOnce) {
    constexpr int kThreads = 4;
    constexpr int kTimes = 50;
    const gcstring text = Description(
        IntegerXml("Length", "", Element("Value", "4")) +
        "<Category Name=\"Root\"><pFeature>Length</pFeature><pFeature>Double</pFeature></Category>"
        "<IntSwissKnife Name=\"Double\"><pVariable Name=\"X\">Length</pVariable>"
        "<Formula>X * 2</Formula></IntSwissKnife>");
    std::atomic<int> waiting = kThreads;
    const auto open = [&](int thread) {
        --waiting;
        while (waiting != 0) {
            std::this_thread::yield();
        }
        for (int i = 0; i < kTimes; ++i) {
            const MapOwner map(CNodeMapFactory(text).CreateNodeMap());
            EXPECT_EQ(map.ValueOf("Double"), 8);
            dynamic_cast<IInteger&>(*map->GetNode("Length")).SetValue(thread);
            EXPECT_EQ(map.ValueOf("Double"), 2 * thread);
        }
    };
    std::array<std::thread, kThreads> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.at(static_cast<size_t>(i)) = std::thread(open, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(CSharedDescriptions::Get().Find(text.c_str(), false), nullptr);
}

TEST(SharedDescriptionOfThreads, FailsForEachOfThem) {
    const gcstring text = Description(IntegerXml("A", Element("pIsLocked", "A")));
    std::array<std::string, 4> failures;
    std::array<std::thread, 4> threads;
    for (size_t i = 0; i < threads.size(); ++i) {
        threads.at(i) = std::thread([&text, &failure = failures.at(i)] {
            failure =
                DescriptionOf<RuntimeException>([&text] { CNodeMapFactory(text).CreateNodeMap(); });
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& failure : failures) {
        EXPECT_EQ(failure, "ERROR : read cycle detected : A -> A");
    }
}

}  // namespace EngineTest
