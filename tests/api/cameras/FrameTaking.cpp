#include "FrameTaking.h"

#include <condition_variable>
#include <mutex>

#include "support/LastError.h"

namespace {

/// Takes frames on the thread that delivers them.
class Collector {
public:
    explicit Collector(size_t count) : m_count(count) {}

    static void OnFrame(OV_FRAME_CALLBACK_PARAM* frame) {
        static_cast<Collector*>(frame->pUserParam)->Add(KeepFrame(frame->status, *frame));
    }
    void Await() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_frames.size() == m_count; });
    }
    std::vector<TakenFrame> Frames() {
        const std::lock_guard lock(m_mutex);
        return m_frames;
    }

private:
    void Add(TakenFrame frame) {
        const std::lock_guard lock(m_mutex);
        if (m_frames.size() < m_count) {
            m_frames.push_back(std::move(frame));
            m_changed.notify_all();
        }
    }

    const size_t m_count;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<TakenFrame> m_frames;
};

std::vector<TakenFrame> TakeByCallback(OV_DEV_HANDLE camera, size_t count) {
    Collector collector(count);
    EXPECT_OV_OK(OVRegisterCaptureCallback(camera, &collector, &Collector::OnFrame));
    EXPECT_OV_OK(OVStreamOn(camera));
    collector.Await();
    EXPECT_OV_OK(OVStreamOff(camera));
    EXPECT_OV_OK(OVUnregisterCaptureCallback(camera));
    return collector.Frames();
}

/// @param next  appends frames; false after a failure
template <class Next>
std::vector<TakenFrame> TakeByCalls(OV_DEV_HANDLE camera, size_t count, const Next& next) {
    std::vector<TakenFrame> frames;
    EXPECT_OV_OK(OVStreamOn(camera));
    while (frames.size() < count && next(frames)) {
    }
    EXPECT_OV_OK(OVStreamOff(camera));
    return frames;
}

std::vector<TakenFrame> TakeByCopy(OV_DEV_HANDLE camera, size_t count) {
    int64_t payload = 0;
    EXPECT_OV_OK(OVGetInt(camera, OV_FEATURE_PayloadSize, &payload));
    std::vector<uint8_t> memory(static_cast<size_t>(payload));
    return TakeByCalls(camera, count, [&](std::vector<TakenFrame>& frames) {
        OV_FRAME_DATA frame{};
        frame.pImgBuf = memory.data();
        const OV_STATUS status = OVGetImage(camera, &frame, kLongestFrame);
        EXPECT_EQ(status, OV_STATUS_SUCCESS) << LastError::Get().text;
        if (status == OV_STATUS_SUCCESS) {
            frames.push_back(KeepFrame(frame.nStatus, frame));
        }
        return status == OV_STATUS_SUCCESS;
    });
}

std::vector<TakenFrame> TakeByLoan(OV_DEV_HANDLE camera, size_t count) {
    return TakeByCalls(camera, count, [&](std::vector<TakenFrame>& frames) {
        OV_FRAME_BUFFER* frame = nullptr;
        EXPECT_OV_OK(OVDQBuf(camera, &frame, kLongestFrame));
        if (frame == nullptr) {
            return false;
        }
        frames.push_back(KeepFrame(frame->nStatus, *frame));
        EXPECT_OV_OK(OVQBuf(camera, frame));
        return true;
    });
}

std::vector<TakenFrame> TakeAllThatWait(OV_DEV_HANDLE camera, size_t count) {
    return TakeByCalls(camera, count, [&](std::vector<TakenFrame>& frames) {
        OV_FRAME_BUFFER* waiting[16] = {};
        uint32_t number = 0;
        EXPECT_OV_OK(OVDQAllBufs(camera, waiting, 16, &number, kLongestFrame));
        for (uint32_t i = 0; i < number; ++i) {
            frames.push_back(KeepFrame(waiting[i]->nStatus, *waiting[i]));
        }
        EXPECT_OV_OK(OVQAllBufs(camera));
        return number != 0;
    });
}

}  // namespace

const TakingWay kTakingWays[4] = {{"Callback", &TakeByCallback},
                                  {"Copy", &TakeByCopy},
                                  {"Loan", &TakeByLoan},
                                  {"All", &TakeAllThatWait}};
