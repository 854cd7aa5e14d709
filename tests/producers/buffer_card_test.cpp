/// @file
/// What is told of a buffer without the lock of its queues.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "TestProducerFixture.h"
#include "framework/BufferCard.h"
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

/// The card of buffer 7 of stream 3.
class Card : public testing::Test {
protected:
    Card() {
        card->SetBuffer(nullptr, 16, nullptr, "Custom");
        card->Publish(stream, handle);
    }

    std::optional<InfoValue> FrameId() const {
        return card->TryAnswer(stream, handle, GenTL::BUFFER_INFO_FRAMEID);
    }

    void* const stream = HandleNo(3);
    void* const handle = HandleNo(7);
    std::shared_ptr<BufferCard> card = BufferCard::Make();
};

TEST_F(Card, TellsOfAFrameWhileItShowsOne) {
    EXPECT_FALSE(FrameId());
    card->Show(FrameNo(11));
    ASSERT_TRUE(FrameId());
    EXPECT_EQ(Number(*FrameId()), 11U);
    card->Hide();
    EXPECT_FALSE(FrameId());
}

TEST_F(Card, IsNoOthersCard) {
    card->Show(FrameNo(11));
    EXPECT_FALSE(card->TryAnswer(HandleNo(4), handle, GenTL::BUFFER_INFO_FRAMEID));
    EXPECT_FALSE(card->TryAnswer(stream, HandleNo(8), GenTL::BUFFER_INFO_FRAMEID));
}

TEST_F(Card, IsFoundByItsHandle) {
    EXPECT_EQ(BufferCard::Find(handle), card.get());
    const std::shared_ptr<BufferCard> other = BufferCard::Make();
    other->Publish(stream, HandleNo(8));
    EXPECT_EQ(BufferCard::Find(handle), card.get());
    EXPECT_EQ(BufferCard::Find(HandleNo(8)), other.get());
}

TEST_F(Card, ServesALaterBufferUnderThatBuffersHandleAlone) {
    card->Show(FrameNo(11));
    const BufferCard* const known = card.get();
    card = nullptr;
    card = BufferCard::Make();
    ASSERT_EQ(card.get(), known);
    card->SetBuffer(nullptr, 16, nullptr, "Custom");
    EXPECT_FALSE(FrameId());
    card->Publish(stream, HandleNo(9));
    card->Show(FrameNo(12));
    EXPECT_FALSE(FrameId());
    EXPECT_TRUE(card->TryAnswer(stream, HandleNo(9), GenTL::BUFFER_INFO_FRAMEID));
}

TEST_F(Card, TellsNothingOfAFrameThatIsBeingWritten) {
    std::jthread writer([this] {
        for (std::uint64_t id = 1; id <= 20000; ++id) {
            card->Show(FrameNo(id));
            card->Hide();
        }
    });
    std::uint64_t last = 0;
    const auto answered = [this](GenTL::BUFFER_INFO_CMD command) {
        // Without a frame in between the answer is that there is none.
        try {
            return card->TryAnswer(stream, handle, command);
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
