#include "framework/Acquisition.h"

#include <algorithm>
#include <cstring>

namespace OvProducer {

void Acquisition::Start(uint64_t frames) {
    const std::lock_guard lock(m_control);
    if (m_grabbing) {
        throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The acquisition runs already");
    }
    m_pool.ResetCounters();
    m_abort = std::stop_source();
    m_grabbing = true;
    // Replacing the thread object joins one that ended by its frame count.
    m_thread = std::jthread([this, abort = m_abort.get_token(),
                             frames](const std::stop_token& stop) { Run(stop, abort, frames); });
}

void Acquisition::Stop(bool kill) {
    {
        const std::lock_guard lock(m_control);
        if (!m_thread.joinable()) {
            throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The acquisition doesn't run");
        }
    }
    Halt(kill);
}

void Acquisition::Halt(bool kill) {
    const std::lock_guard lock(m_control);
    if (kill) {
        m_abort.request_stop();
    }
    if (m_thread.joinable()) {
        m_thread.request_stop();
        m_thread.join();
    }
}

void Acquisition::Run(const std::stop_token& stop, const std::stop_token& abort, uint64_t frames) {
    uint64_t carried = 0;
    while (!stop.stop_requested() && carried != frames) {
        carried += CarryFrame(stop, abort) ? 1 : 0;
    }
    m_grabbing = false;
}

bool Acquisition::CarryFrame(const std::stop_token& stop, const std::stop_token& abort) {
    if (!m_source.WaitFrame(stop)) {
        return false;
    }
    const std::shared_ptr<Buffer> buffer =
        m_source.WaitsForBuffer() ? m_pool.WaitInput(stop) : m_pool.TakeInput();
    if (!buffer) {
        if (!stop.stop_requested()) {
            m_source.DropFrame();
            m_pool.CountLost();
        }
        return false;
    }
    m_pool.Deliver(buffer, Fill(*buffer, abort));
    return true;
}

FrameInfo Acquisition::Fill(Buffer& buffer, const std::stop_token& abort) {
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
