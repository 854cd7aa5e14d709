#include "FrameChunks.h"

#include <semaphore>

#include "OvINodes.h"
#include "support/LastError.h"

namespace {

constexpr const char* kFeatures[] = {"ChunkFrameID", "ChunkTimestamp", "ChunkExposureTime",
                                     "ChunkGain", "ChunkLineStatusAll"};

std::string ValueOf(OV_NODE_HANDLE node) {
    char text[64] = {};
    size_t size = sizeof text;
    return OvNodeGetAsText(node, text, &size) == OV_STATUS_SUCCESS ? text
                                                                   : LastError::Get().message;
}

template <class Record>
ChunkedFrame Look(OV_DEV_HANDLE camera, OV_STATUS attached, OV_FRAME_STATUS status,
                  const Record& record) {
    return {KeepFrame(status, record), attached,
            attached == OV_STATUS_SUCCESS ? "" : LastError::Get().message, ReadChunks(camera)};
}

/// @param next  appends the frame of the trigger
template <class Next>
std::vector<ChunkedFrame> TakeByTrigger(OV_DEV_HANDLE camera, size_t count, const Next& next) {
    std::vector<ChunkedFrame> frames;
    EXPECT_OV_OK(OVStreamOn(camera));
    while (frames.size() < count && !testing::Test::HasFailure()) {
        EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_TriggerSoftware));
        next(frames);
    }
    EXPECT_OV_OK(OVStreamOff(camera));
    return frames;
}

/// Attaches frames on the thread that delivers them.
class Listener {
public:
    explicit Listener(OV_DEV_HANDLE camera) : m_camera(camera) {}

    static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
        auto& self = *static_cast<Listener*>(frame->pUserParam);
        const OV_STATUS attached = OvNodeAttachCallbackFrame(self.m_camera, frame);
        self.m_frame.push_back(Look(self.m_camera, attached, frame->status, *frame));
        self.m_came.release();
    }
    void MoveNextTo(std::vector<ChunkedFrame>& frames) {
        m_came.acquire();
        frames.push_back(std::move(m_frame.back()));
        m_frame.clear();
    }

private:
    const OV_DEV_HANDLE m_camera;
    std::vector<ChunkedFrame> m_frame;
    std::counting_semaphore<> m_came{0};
};

std::vector<ChunkedFrame> LookInCallback(OV_DEV_HANDLE camera, size_t count) {
    Listener listener(camera);
    EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &listener, &Listener::OnFrame));
    std::vector<ChunkedFrame> taken = TakeByTrigger(
        camera, count, [&](std::vector<ChunkedFrame>& frames) { listener.MoveNextTo(frames); });
    EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
    return taken;
}

void AttachLoan(OV_DEV_HANDLE camera, const OV_FRAME_BUFFER& frame,
                std::vector<ChunkedFrame>& frames) {
    const OV_STATUS attached = OvNodeAttachFrame(camera, &frame);
    frames.push_back(Look(camera, attached, frame.nStatus, frame));
}

std::vector<ChunkedFrame> LookAtLoan(OV_DEV_HANDLE camera, size_t count) {
    return TakeByTrigger(camera, count, [&](std::vector<ChunkedFrame>& frames) {
        OV_FRAME_BUFFER* frame = nullptr;
        ASSERT_OV_OK(OVDQBuf(camera, &frame, kLongestFrame));
        AttachLoan(camera, *frame, frames);
        EXPECT_OV_OK(OVQBuf(camera, frame));
        EXPECT_EQ(ReadChunks(camera), ChunkValues());
    });
}

std::vector<ChunkedFrame> LookAtAllThatWait(OV_DEV_HANDLE camera, size_t count) {
    return TakeByTrigger(camera, count, [&](std::vector<ChunkedFrame>& frames) {
        OV_FRAME_BUFFER* waiting[16] = {};
        uint32_t number = 0;
        ASSERT_OV_OK(OVDQAllBufs(camera, waiting, 16, &number, kLongestFrame));
        ASSERT_EQ(number, 1U);
        AttachLoan(camera, *waiting[0], frames);
        EXPECT_OV_OK(OVQAllBufs(camera));
        EXPECT_EQ(ReadChunks(camera), ChunkValues());
    });
}

}  // namespace

ChunkValues ReadChunks(OV_DEV_HANDLE camera) {
    ChunkValues values;
    for (const char* const name : kFeatures) {
        OV_NODE_HANDLE node = 0;
        EXPECT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, name, &node));
        OV_NODE_ACCESS access = OV_NODE_ACCESS_NOT_IMPLEMENTED;
        EXPECT_OV_OK(OvNodeGetAccess(node, &access));
        if (access == OV_NODE_ACCESS_NOT_AVAILABLE) {
            size_t size = 0;
            EXPECT_EQ(OvNodeGetAsText(node, nullptr, &size), OV_STATUS_INVALID_ACCESS) << name;
        } else {
            values[name] = ValueOf(node);
        }
    }
    return values;
}

void SwitchChunksOn(OV_DEV_HANDLE camera) {
    EXPECT_OV_OK(OVSetBool(camera, OV_FEATURE_ChunkModeActive, true));
    EXPECT_OV_OK(OVSetFloat(camera, OV_FEATURE_ExposureTime, 200));
    EXPECT_OV_OK(OVSetFloat(camera, OV_FEATURE_Gain, 3.5));
}

ChunkValues ChunksOf(const TakenFrame& frame, uint64_t firstFrame) {
    return {{"ChunkFrameID", std::to_string(frame.id - firstFrame)},
            {"ChunkTimestamp", std::to_string(frame.timestamp)},
            {"ChunkExposureTime", "200"},
            {"ChunkGain", "3.5"},
            {"ChunkLineStatusAll", "0x0"}};
}

const ChunkWay kChunkWays[3] = {
    {"Callback", &LookInCallback}, {"Loan", &LookAtLoan}, {"All", &LookAtAllThatWait}};
