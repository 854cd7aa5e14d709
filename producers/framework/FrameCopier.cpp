#include "framework/FrameCopier.h"

#include <algorithm>
#include <cstring>

namespace OvProducer {

void FrameCopier::Run(BufferPool& pool, const EngineRun& run) {
    uint64_t carried = 0;
    while (!run.stop.stop_requested() && carried != run.frames) {
        carried += CarryFrame(pool, run) ? 1 : 0;
    }
}

bool FrameCopier::CarryFrame(BufferPool& pool, const EngineRun& run) {
    if (!m_source.WaitFrame(run.stop)) {
        return false;
    }
    const std::shared_ptr<Buffer> buffer =
        m_source.WaitsForBuffer() ? pool.WaitInput(run.stop) : pool.TakeInput();
    if (!buffer) {
        if (!run.stop.stop_requested()) {
            m_source.DropFrame();
            pool.CountLost();
        }
        return false;
    }
    pool.Deliver(buffer, Fill(*buffer, run.abort));
    return true;
}

FrameInfo FrameCopier::Fill(Buffer& buffer, const std::stop_token& abort) {
    const size_t needed = m_source.FrameSize();
    if (needed <= buffer.size) {
        return m_source.ReadFrame(buffer.Memory(), abort);
    }
    m_scratch.resize(needed);
    FrameInfo frame = m_source.ReadFrame(m_scratch, abort);
    frame.sizeFilled = std::min(frame.sizeFilled, buffer.size);
    std::memcpy(buffer.base, m_scratch.data(), frame.sizeFilled);
    frame.incomplete = true;
    frame.largerThanBuffer = true;
    // The end of the payload, which describes the chunks, was cut off.
    frame.chunks.clear();
    frame.chunkPayloadSize = 0;
    return frame;
}

}  // namespace OvProducer
