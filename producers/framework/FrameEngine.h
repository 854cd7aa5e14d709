#pragma once
/// What fills a stream's buffers while frames are acquired.

#include <cstdint>
#include <stop_token>

namespace OvProducer {

class BufferPool;

/// One run of an engine, from its start to its stop.
struct EngineRun {
    std::stop_token stop;   ///< ends the run after the frame in progress
    std::stop_token abort;  ///< together with `stop`: leaves the frame in progress incomplete
    uint64_t frames = 0;    ///< how many to deliver
};

/// `Begin` and `End` are called by whoever starts and stops the acquisition, one at a time;
/// `Run` has a thread of its own between them. An engine may hold several buffers at once.
class FrameEngine {
public:
    virtual ~FrameEngine() = default;

    /// Prepares a run. If it throws, nothing runs and `End` isn't called.
    virtual void Begin() {}
    /// Fills buffers. Returns when `run.stop` was requested or all frames were delivered, and
    /// has returned all buffers to the pool by then.
    virtual void Run(BufferPool& pool, const EngineRun& run) = 0;
    /// Called once after each run, at the latest when the acquisition stops.
    virtual void End() noexcept {}
};

}  // namespace OvProducer
