#pragma once
/// The engine of a stream: a thread that carries frames from their source into
/// the stream's buffers.

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

/// Where the frames come from: a camera's transmitting end. Called from the
/// engine's thread alone.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    /// Waits until a frame is due. False only when stopped.
    virtual bool WaitFrame(const std::stop_token& stop) = 0;
    /// Bytes of the frame that is due.
    virtual size_t FrameSize() = 0;
    /// Whether a frame waits for a buffer; otherwise it is lost without one.
    virtual bool WaitsForBuffer() = 0;
    /// Writes the frame that is due; `memory` holds at least `FrameSize` bytes.
    /// May break off when `abort` is requested, and then says incomplete.
    virtual FrameInfo ReadFrame(std::span<std::byte> memory, const std::stop_token& abort) = 0;
    /// The frame that is due is lost.
    virtual void DropFrame() = 0;
};

class Acquisition {
public:
    Acquisition(BufferPool& pool, FrameSource& source) : m_pool(pool), m_source(source) {}
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;
    ~Acquisition() { Halt(true); }

    /// Runs until `frames` frames were delivered or `Stop`. -1004 when it runs.
    void Start(uint64_t frames);
    /// Returns when the engine stands still: after the frame in progress, or at
    /// once with `kill`, where that frame comes out incomplete. -1004 when it
    /// was not started.
    void Stop(bool kill);
    /// As `Stop`, for closing: an engine that stands still is fine.
    void Halt(bool kill);

    bool IsGrabbing() const { return m_grabbing; }

private:
    void Run(const std::stop_token& stop, const std::stop_token& abort, uint64_t frames);
    bool CarryFrame(const std::stop_token& stop, const std::stop_token& abort);
    FrameInfo Fill(Buffer& buffer, const std::stop_token& abort);

    BufferPool& m_pool;
    FrameSource& m_source;
    std::mutex m_control;  // one start or stop at a time; the engine never takes it
    std::stop_source m_abort;
    std::jthread m_thread;
    std::vector<std::byte> m_scratch;
    std::atomic<bool> m_grabbing = false;
};

}  // namespace OvProducer
