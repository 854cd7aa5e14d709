/// @file
/// The facts on a buffer, which are read without the lock of its queues.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <thread>

#include "TestProducerFixture.h"
#include "framework/BufferFacts.h"
#include "framework/Handles.h"

using namespace OvProducer;

namespace {

void* HandleNo(std::uintptr_t number) {
    return reinterpret_cast<void*>(number * HandleTable::kStep);
}

std::uint64_t Number(const InfoValue& value) {
    std::uint64_t number = 0;
    EXPECT_EQ(value.Data().size(), sizeof number);
    std::memcpy(&number, value.Data().data(), sizeof number);
    return number;
}

FrameInfo FrameNo(std::uint64_t id) {
    FrameInfo frame;
    frame.frameId = id;
    frame.width = id + 1;
    return frame;
}

/// The facts on buffer 7 of stream 3.
class FactsOfABuffer : public testing::Test {
protected:
    FactsOfABuffer() {
        facts->SetBuffer(nullptr, 16, nullptr, "Custom");
        facts->Publish(stream, handle);
    }

    std::optional<InfoValue> FrameId() const {
        return facts->TryAnswer(stream, handle, GenTL::BUFFER_INFO_FRAMEID);
    }

    void* const stream = HandleNo(3);
    void* const handle = HandleNo(7);
    std::shared_ptr<BufferFacts> facts = BufferFacts::Make();
};

TEST_F(FactsOfABuffer, AnswerWhileThereIsAFrame) {
    EXPECT_FALSE(FrameId());
    facts->SetFrame(FrameNo(11));
    ASSERT_TRUE(FrameId());
    EXPECT_EQ(Number(*FrameId()), 11U);
    facts->ClearFrame();
    EXPECT_FALSE(FrameId());
}

TEST_F(FactsOfABuffer, AnswerForNoOtherBuffer) {
    facts->SetFrame(FrameNo(11));
    EXPECT_FALSE(facts->TryAnswer(HandleNo(4), handle, GenTL::BUFFER_INFO_FRAMEID));
    EXPECT_FALSE(facts->TryAnswer(stream, HandleNo(8), GenTL::BUFFER_INFO_FRAMEID));
}

TEST_F(FactsOfABuffer, AreFoundByTheHandle) {
    EXPECT_EQ(BufferFacts::Find(handle), facts.get());
    const std::shared_ptr<BufferFacts> other = BufferFacts::Make();
    other->Publish(stream, HandleNo(8));
    EXPECT_EQ(BufferFacts::Find(handle), facts.get());
    EXPECT_EQ(BufferFacts::Find(HandleNo(8)), other.get());
}

TEST_F(FactsOfABuffer, ServeALaterBufferUnderThatBuffersHandleAlone) {
    facts->SetFrame(FrameNo(11));
    const BufferFacts* const known = facts.get();
    facts = nullptr;
    facts = BufferFacts::Make();
    ASSERT_EQ(facts.get(), known);
    facts->SetBuffer(nullptr, 16, nullptr, "Custom");
    EXPECT_FALSE(FrameId());
    facts->Publish(stream, HandleNo(9));
    facts->SetFrame(FrameNo(12));
    EXPECT_FALSE(FrameId());
    EXPECT_TRUE(facts->TryAnswer(stream, HandleNo(9), GenTL::BUFFER_INFO_FRAMEID));
}

TEST_F(FactsOfABuffer, AnswerNothingOfAFrameThatIsBeingWritten) {
    std::jthread writer([this] {
        for (std::uint64_t id = 1; id <= 20000; ++id) {
            facts->SetFrame(FrameNo(id));
            facts->ClearFrame();
        }
    });
    std::uint64_t last = 0;
    const auto answered = [this](GenTL::BUFFER_INFO_CMD command) {
        // Without a frame in between the answer is that there is none.
        try {
            return facts->TryAnswer(stream, handle, command);
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), GenTL::GC_ERR_NOT_AVAILABLE);
            return std::optional<InfoValue>();
        }
    };
    for (int i = 0; i < 20000; ++i) {
        const auto id = answered(GenTL::BUFFER_INFO_FRAMEID);
        const auto width = answered(GenTL::BUFFER_INFO_WIDTH);
        if (id) {
            EXPECT_GE(Number(*id), last);
            last = Number(*id);
        }
        if (width) {
            EXPECT_GT(Number(*width), last);
        }
    }
}

// --- As a consumer sees it. ---

/// Asks about a buffer that holds a delivered frame.
class DeliveredFrame : public TestProducerTest {
protected:
    DeliveredFrame() {
        camera.OpenStream();
        camera.Start(1, kFrameSize);
        control.Trigger(0, 0, 1);
        buffer = camera.NextFrame();
        EXPECT_EQ(Ask(camera.stream), 0);
    }

    GenTL::GC_ERROR Ask(GenTL::DS_HANDLE stream) const {
        std::uint64_t id = 0;
        std::size_t size = sizeof id;
        return api.DSGetBufferInfo(stream, buffer, GenTL::BUFFER_INFO_FRAMEID, nullptr, &id, &size);
    }

    GenTL::BUFFER_HANDLE buffer = nullptr;
};

TEST_F(DeliveredFrame, IsUnknownToOtherModules) {
    EXPECT_EQ(Ask(camera.device), GenTL::GC_ERR_INVALID_HANDLE);
    EXPECT_EQ(Ask(nullptr), GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(DeliveredFrame, EndsWithTheQueueing) {
    ASSERT_EQ(api.DSQueueBuffer(camera.stream, buffer), 0);
    EXPECT_EQ(Ask(camera.stream), GenTL::GC_ERR_NOT_AVAILABLE);
}

TEST_F(DeliveredFrame, EndsWithTheRevocation) {
    ASSERT_EQ(api.DSStopAcquisition(camera.stream, 0), 0);
    EXPECT_EQ(Ask(camera.stream), 0);
    ASSERT_EQ(api.DSRevokeBuffer(camera.stream, buffer, nullptr, nullptr), 0);
    EXPECT_EQ(Ask(camera.stream), GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(DeliveredFrame, EndsWithTheStream) {
    ASSERT_EQ(api.DSClose(camera.stream), 0);
    EXPECT_EQ(Ask(camera.stream), GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(DeliveredFrame, EndsWithTheProducer) {
    ASSERT_EQ(api.GCCloseLib(), 0);
    camera.library = false;
    EXPECT_EQ(Ask(camera.stream), GenTL::GC_ERR_NOT_INITIALIZED);
}

TEST_F(DeliveredFrame, IsAskedForAsPlanned) {
    control.FailCommand("DSGetBufferInfo", GenTL::BUFFER_INFO_FRAMEID, GenTL::GC_ERR_IO);
    EXPECT_EQ(Ask(camera.stream), GenTL::GC_ERR_IO);
}

}  // namespace
