#pragma once
/// An engine that copies one frame after the other from their source.

#include <cstddef>
#include <span>
#include <stop_token>
#include <vector>

#include "framework/BufferPool.h"
#include "framework/FrameEngine.h"

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

class FrameCopier : public FrameEngine {
public:
    explicit FrameCopier(FrameSource& source) : m_source(source) {}

    void Run(BufferPool& pool, const EngineRun& run) override;

private:
    bool CarryFrame(BufferPool& pool, const EngineRun& run);
    FrameInfo Fill(Buffer& buffer, const std::stop_token& abort);

    FrameSource& m_source;
    std::vector<std::byte> m_scratch;
};

}  // namespace OvProducer
