#pragma once
/// The engine of a stream: a thread that copies frames from their source into the
/// stream's buffers.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <stop_token>
#include <thread>
#include <vector>

#include "framework/BufferPool.h"

namespace OvProducer {

/// Where the frames come from: the camera's side of a stream. Only the engine's thread
/// calls it.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    /// Waits until a frame is due. Returns false only if `stop` was requested.
    virtual bool WaitFrame(const std::stop_token& stop) = 0;
    /// Size of the frame that is due, in bytes.
    virtual size_t FrameSize() = 0;
    /// Whether a frame waits until a buffer is free. Otherwise a frame without a buffer
    /// is lost.
    virtual bool WaitsForBuffer() = 0;
    /// Writes the frame that is due to `memory`, which has at least `FrameSize` bytes.
    /// May stop early if `abort` is requested, and returns an incomplete frame then.
    virtual FrameInfo ReadFrame(std::span<std::byte> memory, const std::stop_token& abort) = 0;
    /// Skips the frame that is due because no buffer is free.
    virtual void DropFrame() = 0;
};

class Acquisition {
public:
    Acquisition(BufferPool& pool, FrameSource& source) : m_pool(pool), m_source(source) {}
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;
    ~Acquisition() { Halt(true); }

    /// Runs until `frames` frames were delivered, or until `Stop`. Fails with -1004 if it
    /// runs already.
    void Start(uint64_t frames);
    /// Returns when the engine has stopped: after the frame in progress, or with `kill`
    /// at once, which leaves that frame incomplete. Fails with -1004 if it wasn't
    /// started.
    void Stop(bool kill);
    /// Like `Stop`, but does nothing if the engine wasn't started. For closing.
    void Halt(bool kill);

    bool IsGrabbing() const { return m_grabbing; }

private:
    void Run(const std::stop_token& stop, const std::stop_token& abort, uint64_t frames);
    bool CarryFrame(const std::stop_token& stop, const std::stop_token& abort);
    FrameInfo Fill(Buffer& buffer, const std::stop_token& abort);

    BufferPool& m_pool;
    FrameSource& m_source;
    std::mutex m_control;  // serialises starts and stops; the engine's thread never takes it
    std::stop_source m_abort;
    std::jthread m_thread;
    std::vector<std::byte> m_scratch;
    std::atomic<bool> m_grabbing = false;
};

}  // namespace OvProducer
