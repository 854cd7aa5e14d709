#pragma once
/// Threads that fetch frames until a stop ends them.

#include <atomic>
#include <thread>
#include <vector>

#include "GenTL/GenTL.h"
#include "support/Beside.h"

/// Longer than any frame takes: only a stop ends the wait.
constexpr uint32_t kFetchTimeOut = 60000;

/// One way to fetch frames and to return them.
struct FetchWay {
    const char* name;
    OV_STATUS (*fetch)(OV_DEV_HANDLE camera);
};

inline OV_STATUS CopyOne(OV_DEV_HANDLE camera) {
    std::vector<uint8_t> pixels(1 << 16);
    OV_FRAME_DATA data{};
    data.pImgBuf = pixels.data();
    return OVGetImage(camera, &data, kFetchTimeOut);
}

inline OV_STATUS LendOne(OV_DEV_HANDLE camera) {
    OV_FRAME_BUFFER* frame = nullptr;
    const OV_STATUS status = OVDQBuf(camera, &frame, kFetchTimeOut);
    // What comes of it depends on the stop; it never touches what the stop took.
    if (status == OV_STATUS_SUCCESS) {
        OVQBuf(camera, frame);
    }
    return status;
}

/// Two threads that want all frames may each have some of them and wait for those of
/// the other: none waits for long, and then gives back what it has.
inline OV_STATUS LendAll(OV_DEV_HANDLE camera) {
    constexpr uint32_t kNotLong = 50;
    OV_FRAME_BUFFER* frames[8] = {};
    uint32_t count = 0;
    const OV_STATUS status = OVDQAllBufs(camera, frames, 8, &count, kNotLong);
    for (uint32_t i = 0; i < count; ++i) {
        OVQBuf(camera, frames[i]);
    }
    return status == OV_STATUS_TIMEOUT ? OV_STATUS_SUCCESS : status;
}

inline OV_STATUS FlushAndLendOne(OV_DEV_HANDLE camera) {
    EXPECT_OV_OK(OVFlushQueue(camera));
    return LendOne(camera);
}

inline constexpr FetchWay kFetchWays[] = {
    {"Copy", &CopyOne}, {"Loan", &LendOne}, {"All", &LendAll}, {"Flush", &FlushAndLendOne}};

/// Fetches on a thread of its own until a stop ends it, and then says how.
class Fetcher {
public:
    Fetcher(OV_DEV_HANDLE camera, const FetchWay& way)
        : m_beside([this, camera, &way] {
              OV_STATUS status = way.fetch(camera);
              while (status == OV_STATUS_SUCCESS) {
                  ++m_frames;
                  status = way.fetch(camera);
              }
              return status;
          }) {}

    void WaitForFrames(unsigned frames) const {
        while (m_frames < frames) {
            std::this_thread::yield();
        }
    }

    /// Expects what a fetch beside a stop may come to: the wait was ended, or the
    /// stream was stopped already.
    void ExpectEnd() {
        const OV_STATUS status = m_beside.Join();
        EXPECT_TRUE(status == GenTL::GC_ERR_ABORT || status == OV_STATUS_INVALID_CALL) << status;
        if (status == OV_STATUS_INVALID_CALL) {
            EXPECT_NE(m_beside.GetText().find(" before start capture"), std::string::npos)
                << m_beside.GetText();
        }
    }

private:
    std::atomic<unsigned> m_frames{0};
    Beside m_beside;
};
