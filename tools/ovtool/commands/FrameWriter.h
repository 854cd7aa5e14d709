#pragma once
/// Frames on their way to files: written by a thread of their own, so that a slow disk doesn't
/// keep the camera waiting.

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

#include "pipeline/Picture.h"

struct TakenFrame {
    uint64_t id = 0;
    RawFrame raw;
};

class FrameWriter {
public:
    /// @param memory  how many bytes of frames may wait; one frame may always
    /// @param write   called for each frame in turn, on the writer's thread
    FrameWriter(size_t memory, std::function<void(const TakenFrame&)> write);
    /// Frames that still wait are dropped unless `Finish` came before.
    ~FrameWriter();
    FrameWriter(const FrameWriter&) = delete;
    FrameWriter& operator=(const FrameWriter&) = delete;

    /// Waits while there is no room. False once a frame couldn't be written: no further one is.
    bool Put(TakenFrame frame);
    /// Waits until all is written. Raises what went wrong with it.
    void Finish();

private:
    void Run();
    bool WriteNext();
    bool HasRoomFor(size_t bytes) const;

    const size_t m_memory;
    const std::function<void(const TakenFrame&)> m_write;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<TakenFrame> m_frames;
    size_t m_waiting = 0;  ///< bytes
    bool m_isEnding = false;
    std::exception_ptr m_failure;
    std::thread m_thread;
};

/// Half of the memory that is free now, in bytes: what frames may take while they wait.
size_t MemoryForFrames();
