/// @file
/// Engines that hold several buffers, and what the framework does around them.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "framework/Acquisition.h"

using namespace OvProducer;

namespace {

/// Fills two buffers at once and delivers the second one first.
class PairEngine : public FrameEngine {
public:
    void Begin() override {
        calls.emplace_back("begin");
        if (failsToBegin) {
            throw Failure(GenTL::GC_ERR_IO, "No way to the camera");
        }
    }
    void Run(BufferPool& pool, const EngineRun& run) override {
        if (failsToRun) {
            throw Failure(GenTL::GC_ERR_IO, "The network is gone");
        }
        for (uint64_t frame = 0; frame + 1 < run.frames; frame += 2) {
            const auto first = pool.WaitInput(run.stop);
            const auto second = pool.WaitInput(run.stop);
            if (!first || !second) {
                break;
            }
            Deliver(pool, second, frame + 1);
            Deliver(pool, first, frame);
        }
    }
    void End() noexcept override { calls.emplace_back("end"); }

    std::vector<std::string> calls;
    bool failsToBegin = false;
    bool failsToRun = false;

private:
    static void Deliver(BufferPool& pool, const std::shared_ptr<Buffer>& buffer, uint64_t id) {
        FrameInfo frame;
        frame.frameId = id;
        pool.Deliver(buffer, frame);
    }
};

class Engines : public testing::Test {
protected:
    ~Engines() override { acquisition.Halt(true); }

    std::shared_ptr<Buffer> Announce() {
        auto buffer = pool.MakeBuffer(nullptr, 16, nullptr);
        handles.Add(buffer);
        pool.Announce(buffer, this);
        pool.Queue(buffer->Handle());
        return buffer;
    }
    uint64_t NextId() {
        GenTL::S_EVENT_NEW_BUFFER data{};
        size_t size = sizeof data;
        event->GetData(&data, &size, 10'000);
        return handles.Get<Buffer>(data.BufferHandle)->facts->FrameId();
    }

    HandleTable handles;
    BufferPool pool{GenTL::TLTYPE_CUSTOM};
    std::shared_ptr<Event> event = pool.MakeEvent();
    PairEngine engine;
    OvProducer::Acquisition acquisition{pool, engine};
};

TEST_F(Engines, MayHoldSeveralBuffersAndDeliverThemInAnyOrder) {
    Announce();
    Announce();
    acquisition.Start(2);
    EXPECT_EQ(NextId(), 1U);
    EXPECT_EQ(NextId(), 0U);
    acquisition.Stop(false);
    EXPECT_EQ(pool.Counters().delivered, 2U);
}

TEST_F(Engines, BeginAndEndOncePerRun) {
    acquisition.Start(0);
    while (acquisition.IsGrabbing()) {
    }
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"begin"}));
    acquisition.Start(0);
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"begin", "end", "begin"}));
    acquisition.Stop(true);
    acquisition.Halt(true);
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"begin", "end", "begin", "end"}));
}

TEST_F(Engines, DontRunIfTheyFailToBegin) {
    engine.failsToBegin = true;
    EXPECT_THROW(acquisition.Start(1), Failure);
    EXPECT_FALSE(acquisition.IsGrabbing());
    EXPECT_THROW(acquisition.Stop(true), Failure);
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"begin"}));
}

TEST_F(Engines, MayFailWhileTheyRun) {
    engine.failsToRun = true;
    acquisition.Start(2);
    while (acquisition.IsGrabbing()) {
    }
    acquisition.Stop(false);
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"begin", "end"}));
}

TEST_F(Engines, GiveABufferBackToThoseThatWait) {
    const auto buffer = Announce();
    EXPECT_EQ(pool.TakeInput(), buffer);
    EXPECT_EQ(buffer->facts->State(), BufferState::Filling);
    pool.GiveBack(buffer);
    EXPECT_EQ(buffer->facts->State(), BufferState::Input);
    EXPECT_EQ(pool.TakeInput(), buffer);
}

TEST_F(Engines, GiveBackNoBufferThatWasDiscardedMeanwhile) {
    const auto buffer = Announce();
    EXPECT_EQ(pool.TakeInput(), buffer);
    pool.Flush(GenTL::ACQ_QUEUE_ALL_DISCARD);
    pool.GiveBack(buffer);
    EXPECT_EQ(buffer->facts->State(), BufferState::Idle);
    EXPECT_EQ(pool.TakeInput(), nullptr);
}

TEST_F(Engines, NameTheFileThatAFrameIs) {
    const auto buffer = Announce();
    FrameInfo frame;
    frame.fileName = "a.b";
    pool.Deliver(pool.TakeInput(), frame);
    EXPECT_EQ(pool.Info(buffer->Handle(), GenTL::BUFFER_INFO_FILENAME).Data(),
              std::string("a.b") + '\0');
    size_t size = 0;
    event->GetData(nullptr, &size, 0);
    pool.Queue(buffer->Handle());
    pool.Deliver(pool.TakeInput(), {});
    EXPECT_THROW(pool.Info(buffer->Handle(), GenTL::BUFFER_INFO_FILENAME), Failure);
}

TEST_F(Engines, MaySayWhyNoFrameComes) {
    pool.CloseEvent();
    event = pool.MakeEvent([] { throw Failure(GenTL::GC_ERR_CUSTOM_ID, "The camera is gone"); });
    size_t size = 0;
    try {
        event->GetData(nullptr, &size, 1);
        FAIL() << "There is a frame";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), GenTL::GC_ERR_CUSTOM_ID);
    }
}

}  // namespace
