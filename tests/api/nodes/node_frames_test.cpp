// The chunk features of frames that were delivered.

#include <condition_variable>
#include <functional>
#include <mutex>

#include "ChunkCamera.h"
#include "GenTL/GenTL.h"

namespace {

class AttachedFrame : public ChunkNodeTest {};

TEST_F(AttachedFrame, AloneShowsItsChunks) {
    Start();
    ExpectNothingAttached();
    OV_FRAME_BUFFER* const frame = Borrow();
    ExpectNothingAttached();
    EXPECT_OV_OK(OvNodeAttachFrame(camera, frame));
    ExpectValues("5", "20");
    int64_t value = 0;
    EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_LUTIndex, &value));
    EXPECT_EQ(value, 5);
}

TEST_F(AttachedFrame, TakesThePlaceOfTheOneBefore) {
    Start();
    OV_FRAME_BUFFER* const first = Attach();
    OV_FRAME_BUFFER* const second = Attach();
    ExpectValues("6", "21");
    EXPECT_OV_OK(OVQBuf(camera, first));
    ExpectValues("6", "21");
    EXPECT_OV_OK(OvNodeAttachFrame(camera, second));
    ExpectValues("6", "21");
}

TEST_F(AttachedFrame, FollowsChunksThatChange) {
    Start();
    Attach();
    producer.ClearChunks(0, 0);
    AddChunk(kFirst, 30, 4);
    Attach();
    EXPECT_EQ(Value(Node("LUTIndex")), "31");
    ExpectNotAvailable("Second");
    producer.ClearChunks(0, 0);
    Attach();
    ExpectNothingAttached();
}

TEST_F(AttachedFrame, IsDetachedWhenItIsGivenBack) {
    Start();
    OV_FRAME_BUFFER* const frame = Attach();
    EXPECT_OV_OK(OVQBuf(camera, frame));
    ExpectNothingAttached();
    ExpectFailure(OvNodeAttachFrame(camera, frame), OV_STATUS_INVALID_PARAMETER,
                  "Invalid OV_FRAME_BUFFER* parameter");
    Attach();
    ExpectValues("6", "21");
    EXPECT_OV_OK(OVQAllBufs(camera));
    ExpectNothingAttached();
}

TEST_F(AttachedFrame, IsDetachedOnRequest) {
    EXPECT_OV_OK(OvNodeDetachFrame(camera));
    Start();
    Attach();
    EXPECT_OV_OK(OvNodeDetachFrame(camera));
    ExpectNothingAttached();
    EXPECT_OV_OK(OvNodeDetachFrame(camera));
}

TEST_F(AttachedFrame, IsDetachedByAStop) {
    Start();
    OV_FRAME_BUFFER* const frame = Attach();
    EXPECT_OV_OK(OVStreamOff(camera));
    ExpectNothingAttached();
    EXPECT_EQ(OvNodeAttachFrame(camera, frame), OV_STATUS_INVALID_PARAMETER);
    Start();
    ExpectNothingAttached();
    Attach();
    ExpectValues("6", "21");
}

TEST_F(AttachedFrame, IsDetachedByAStartThatTakesLoansBack) {
    Start();
    Attach();
    EXPECT_OV_OK(OVStreamOn(camera));
    ExpectNothingAttached();
}

TEST_F(AttachedFrame, IsDetachedByAClose) {
    Start();
    Attach();
    EXPECT_OV_OK(OVCloseDevice(camera));
    camera = Open();
    ExpectNothingAttached();
    Start();
    Attach();
    ExpectValues("6", "21");
}

TEST_F(AttachedFrame, StaysWhenAnotherIsNotOnLoan) {
    Start();
    Attach();
    const OV_FRAME_BUFFER stranger{};
    ExpectFailure(OvNodeAttachFrame(camera, &stranger), OV_STATUS_INVALID_PARAMETER,
                  "Invalid OV_FRAME_BUFFER* parameter");
    const OV_FRAME_CALLBACK_PARAM other{};
    ExpectFailure(OvNodeAttachCallbackFrame(camera, &other), OV_STATUS_INVALID_PARAMETER,
                  "Invalid OV_FRAME_CALLBACK_PARAM* parameter");
    ExpectFailure(OvNodeAttachFrame(camera, nullptr), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
    ExpectFailure(OvNodeAttachCallbackFrame(camera, nullptr), OV_STATUS_INVALID_PARAMETER,
                  "NULL Pointer");
    ExpectValues("5", "20");
}

TEST_F(AttachedFrame, NeedsAnOpenCamera) {
    ExpectFailure(OvNodeAttachFrame(nullptr, nullptr), OV_STATUS_INVALID_HANDLE,
                  "Invalid device handle");
    ExpectFailure(OvNodeAttachCallbackFrame(nullptr, nullptr), OV_STATUS_INVALID_HANDLE,
                  "Invalid device handle");
    ExpectFailure(OvNodeDetachFrame(nullptr), OV_STATUS_INVALID_HANDLE, "Invalid device handle");
    ASSERT_OV_OK(OVCloseLib());
    EXPECT_EQ(OvNodeAttachFrame(nullptr, nullptr), OV_STATUS_NOT_INIT_API);
    EXPECT_EQ(OvNodeAttachCallbackFrame(nullptr, nullptr), OV_STATUS_NOT_INIT_API);
    EXPECT_EQ(OvNodeDetachFrame(nullptr), OV_STATUS_NOT_INIT_API);
}

TEST_F(AttachedFrame, IsNoneWhoseChunksLieBeyondIt) {
    Start();
    Attach();
    AddChunk(kSecond, kTestFrameSize - 3, 4);
    OV_FRAME_BUFFER* const frame = Borrow();
    ExpectFailure(OvNodeAttachFrame(camera, frame), OV_STATUS_ERROR,
                  "Invalid chunk data information");
    ExpectNothingAttached();
    EXPECT_OV_OK(OVQBuf(camera, frame));
}

TEST_F(AttachedFrame, IsNoneThatTheProducerRefuses) {
    Start();
    Attach();
    OV_FRAME_BUFFER* const frame = Borrow();
    producer.FailCall("DSGetBufferChunkData", 1, GenTL::GC_ERR_PARSING_CHUNK_DATA);
    ExpectFailure(OvNodeAttachFrame(camera, frame), GenTL::GC_ERR_PARSING_CHUNK_DATA,
                  "Planned failure of DSGetBufferChunkData");
    ExpectNothingAttached();
    EXPECT_OV_OK(OvNodeAttachFrame(camera, frame));
    ExpectValues("6", "21");
}

TEST_F(AttachedFrame, IsReadWhenTheCameraIsGone) {
    Start();
    OV_FRAME_BUFFER* const frame = Borrow();
    producer.LoseDevice(0, 0);
    EXPECT_OV_OK(OvNodeAttachFrame(camera, frame));
    ExpectValues("5", "20");
}

/// What a callback of a chunk feature saw.
struct ChunkCalls {
    ChunkCalls(OV_DEV_HANDLE ofCamera, OV_FRAME_BUFFER* itsFrame)
        : camera(ofCamera), frame(itsFrame) {}

    OV_DEV_HANDLE camera = nullptr;
    OV_FRAME_BUFFER* frame = nullptr;
    unsigned calls = 0;
    unsigned readable = 0;
    std::vector<OV_STATUS> refused;

    static void OnChange(OV_NODE_HANDLE node, void* self) {
        auto& heard = *static_cast<ChunkCalls*>(self);
        int64_t value = 0;
        ++heard.calls;
        heard.readable += OvNodeGetInteger(node, &value) == OV_STATUS_SUCCESS ? 1 : 0;
        heard.refused = {OvNodeAttachFrame(heard.camera, heard.frame),
                         OvNodeDetachFrame(heard.camera), OVQBuf(heard.camera, heard.frame)};
    }
};

TEST_F(AttachedFrame, RunsCallbacksThatMayReadButNotChangeIt) {
    Start();
    ChunkCalls heard(camera, Borrow());
    OV_NODE_CALLBACK_HANDLE callback = nullptr;
    ASSERT_OV_OK(
        OvNodeRegisterCallback(Node("LUTIndex"), &heard, &ChunkCalls::OnChange, &callback));
    EXPECT_OV_OK(OvNodeAttachFrame(camera, heard.frame));
    EXPECT_EQ(heard.calls, 1U);
    EXPECT_EQ(heard.readable, 1U);
    EXPECT_EQ(heard.refused, std::vector<OV_STATUS>(3, OV_STATUS_INVALID_CALL));
    ExpectValues("5", "20");
    EXPECT_OV_OK(OVQBuf(camera, heard.frame));
    EXPECT_EQ(heard.calls, 2U);
    EXPECT_EQ(heard.readable, 1U);
    ExpectNothingAttached();
    EXPECT_OV_OK(OvNodeUnregisterCallback(Node("LUTIndex"), callback));
}

TEST_F(AttachedFrame, MayBeChangedInOtherCallbacks) {
    Start();
    ChunkCalls heard(camera, Borrow());
    OV_NODE_CALLBACK_HANDLE callback = nullptr;
    const auto onChange = [](OV_NODE_HANDLE, void* self) {
        auto& calls = *static_cast<ChunkCalls*>(self);
        calls.refused = {
            OvNodeAttachFrame(calls.camera, calls.frame), OvNodeDetachFrame(calls.camera),
            OvNodeAttachFrame(calls.camera, calls.frame), OVQBuf(calls.camera, calls.frame)};
    };
    ASSERT_OV_OK(OvNodeRegisterCallback(Node("Width"), &heard, onChange, &callback));
    EXPECT_OV_OK(OvNodeInvalidate(Node("Width")));
    EXPECT_EQ(heard.refused, std::vector<OV_STATUS>(4, OV_STATUS_SUCCESS));
    ExpectNothingAttached();
    EXPECT_OV_OK(OvNodeUnregisterCallback(Node("Width"), callback));
}

/// Runs a function in each capture callback.
class CallbackFrame : public ChunkNodeTest {
protected:
    using OnFrame = std::function<void(OV_FRAME_CALLBACK_PARAM*)>;

    void StartWith(OnFrame onFrame) {
        m_onFrame = std::move(onFrame);
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, this, [](OV_FRAME_CALLBACK_PARAM* frame) {
            auto& test = *static_cast<CallbackFrame*>(frame->pUserParam);
            test.m_onFrame(frame);
            const std::lock_guard lock(test.m_mutex);
            ++test.m_frames;
            test.m_came.notify_all();
        }));
        Start();
    }
    /// One after the other, so that each finds a free buffer.
    void TakeFrames(unsigned number) {
        for (unsigned frame = 1; frame <= number; ++frame) {
            producer.Trigger(0, 0, 1);
            std::unique_lock lock(m_mutex);
            m_came.wait(lock, [&] { return m_frames == frame; });
        }
    }

private:
    OnFrame m_onFrame;
    std::mutex m_mutex;
    std::condition_variable m_came;
    unsigned m_frames = 0;
};

TEST_F(CallbackFrame, IsAttachedUntilItsCallbackReturns) {
    unsigned number = 0;
    StartWith([&](OV_FRAME_CALLBACK_PARAM* frame) {
        ExpectNothingAttached();
        EXPECT_OV_OK(OvNodeAttachCallbackFrame(camera, frame));
        ExpectValues(std::to_string(5 + number), std::to_string(20 + number));
        ++number;
    });
    TakeFrames(7);
    EXPECT_OV_OK(OVStreamOff(camera));
    ExpectNothingAttached();
}

TEST_F(CallbackFrame, CanBeDetachedBefore) {
    StartWith([&](OV_FRAME_CALLBACK_PARAM* frame) {
        EXPECT_OV_OK(OvNodeAttachCallbackFrame(camera, frame));
        EXPECT_OV_OK(OvNodeDetachFrame(camera));
        ExpectNothingAttached();
        EXPECT_OV_OK(OvNodeAttachCallbackFrame(camera, frame));
        EXPECT_OV_OK(OvNodeAttachCallbackFrame(camera, frame));
        EXPECT_EQ(Value(Node("LUTIndex")), "5");
    });
    TakeFrames(1);
}

TEST_F(CallbackFrame, IsOnlyTheOneAtHand) {
    StartWith([&](OV_FRAME_CALLBACK_PARAM* frame) {
        EXPECT_OV_OK(OvNodeAttachCallbackFrame(camera, frame));
        OV_FRAME_CALLBACK_PARAM copy = *frame;
        ExpectFailure(OvNodeAttachCallbackFrame(camera, &copy), OV_STATUS_INVALID_PARAMETER,
                      "Invalid OV_FRAME_CALLBACK_PARAM* parameter");
        EXPECT_EQ(Value(Node("LUTIndex")), "5");
    });
    TakeFrames(1);
}

TEST_F(CallbackFrame, IsNoneWhoseChunksLieBeyondIt) {
    AddChunk(0x77, kTestFrameSize, 1);
    StartWith([&](OV_FRAME_CALLBACK_PARAM* frame) {
        ExpectFailure(OvNodeAttachCallbackFrame(camera, frame), OV_STATUS_ERROR,
                      "Invalid chunk data information");
        ExpectNothingAttached();
    });
    TakeFrames(2);
}

/// A producer that doesn't list chunks.
class ChunkLayout : public ChunkNodeTest {
protected:
    void OpenAs(const std::string& transport) {
        ASSERT_OV_OK(OVCloseLib());
        producer.SetProducerText("TLType", transport.c_str());
        producer.FailCall("DSGetBufferChunkData", 0, GenTL::GC_ERR_NOT_IMPLEMENTED);
        NodeTest::SetUp();
        Start();
    }
    /// The size of the next frame, which is made of two chunks.
    void SetSizeFilled(int64_t size) const { producer.SetFrame(0, 0, "SizeFilled", size); }
};

/// One chunk: its data, its identifier and its length.
std::string ChunkOf(const std::string& data, uint8_t id, bool isBigEndian) {
    const auto word = [&](uint8_t low) {
        std::string bytes(4, '\0');
        bytes[isBigEndian ? 3 : 0] = static_cast<char>(low);
        return bytes;
    };
    return data + word(id) + word(static_cast<uint8_t>(data.size()));
}

struct Transport {
    const char* type;
    bool isBigEndian;
};

class KnownLayout : public ChunkLayout, public testing::WithParamInterface<Transport> {
protected:
    std::string Content() const {
        return ChunkOf("M image data", 0x01, GetParam().isBigEndian) +
               ChunkOf("N", 0xA1, GetParam().isBigEndian) +
               ChunkOf("Other", 0xA2, GetParam().isBigEndian);
    }
    OV_FRAME_BUFFER* BorrowWith(const std::string& content) {
        SetSizeFilled(static_cast<int64_t>(content.size()));
        OV_FRAME_BUFFER* const frame = Borrow();
        content.copy(static_cast<char*>(frame->pImgBuf), content.size());
        return frame;
    }
};

TEST_P(KnownLayout, ShowsChunksThatNobodyLists) {
    OpenAs(GetParam().type);
    for (int times = 0; times < 2; ++times) {
        OV_FRAME_BUFFER* const frame = BorrowWith(Content());
        EXPECT_OV_OK(OvNodeAttachFrame(camera, frame));
        ExpectValues(std::to_string('N'), std::to_string('O'));
        EXPECT_OV_OK(OVQBuf(camera, frame));
        ExpectNothingAttached();
    }
    EXPECT_EQ(producer.CallCount("DSGetBufferChunkData"), 1U) << "it is asked again";
    EXPECT_OV_OK(OvNodeAttachFrame(camera, BorrowWith(Content())));
    EXPECT_OV_OK(OVCloseDevice(camera));
    camera = Open();
    ExpectNothingAttached();
}

TEST_P(KnownLayout, IsHeldAgainstTheWholeFrame) {
    OpenAs(GetParam().type);
    for (const std::string& wrong :
         {Content() + "x", std::string("no chunks in this frame"), std::string("short")}) {
        OV_FRAME_BUFFER* const frame = BorrowWith(wrong);
        ExpectFailure(OvNodeAttachFrame(camera, frame), OV_STATUS_ERROR,
                      "Invalid layout of buffer attached to chunk parser!");
        ExpectNothingAttached();
    }
}

TEST_P(KnownLayout, IsNotLookedForInAnIncompleteFrame) {
    OpenAs(GetParam().type);
    producer.SetFrame(0, 0, "Incomplete", 1);
    ExpectFailure(OvNodeAttachFrame(camera, BorrowWith(Content())), OV_STATUS_ERROR,
                  "The chunks of an incomplete frame can't be found");
    ExpectNothingAttached();
}

INSTANTIATE_TEST_SUITE_P(Of, KnownLayout,
                         testing::Values(Transport{"GEV", true}, Transport{"U3V", false}),
                         [](const auto& test) { return std::string(test.param.type); });

TEST_F(ChunkLayout, OfOtherTransportsIsUnknown) {
    OpenAs("CXP");
    ExpectFailure(OvNodeAttachFrame(camera, Borrow()), OV_STATUS_NOT_IMPLEMENTED,
                  "The producer doesn't list the chunks of its frames");
    ExpectNothingAttached();
}

}  // namespace
