#include "FramePool.h"

#include <algorithm>

#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/Buffer.h"

using namespace OVTLClass;

namespace {

/// The buffer of a frame goes back to the producer.
void QueueBufferOf(const OV_FRAME_BUFFER& frame) {
    if (frame.nBufID != 0) {
        reinterpret_cast<CBuffer*>(frame.nBufID)->QueueBuffer();
    }
}

}  // namespace

void CFramePool::Make(size_t count) {
    Free();
    const std::scoped_lock lock(m_freeMutex);
    m_free.resize(count);
}

OV_FRAME_BUFFER* CFramePool::Take(const OV_FRAME_BUFFER& content) {
    const std::scoped_lock freeLock(m_freeMutex);
    const std::scoped_lock deliveredLock(m_deliveredMutex);
    if (m_free.empty()) {
        return nullptr;
    }
    m_delivered.splice(m_delivered.end(), m_free, m_free.begin());
    m_delivered.back() = content;
    return &m_delivered.back();
}

void CFramePool::Return(OV_FRAME_BUFFER* frame) {
    const std::scoped_lock freeLock(m_freeMutex);
    const std::scoped_lock deliveredLock(m_deliveredMutex);
    const auto found = std::find_if(m_delivered.begin(), m_delivered.end(),
                                    [frame](const auto& record) { return &record == frame; });
    if (found == m_delivered.end()) {
        OV_RAISE(CInvalidParameterError, "Invalid OV_FRAME_BUFFER* parameter");
    }
    ReturnAt(found);
}

void CFramePool::ReturnAll() {
    const std::scoped_lock freeLock(m_freeMutex);
    const std::scoped_lock deliveredLock(m_deliveredMutex);
    while (!m_delivered.empty()) {
        ReturnAt(m_delivered.begin());
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): an iterator is a pointer
void CFramePool::ReturnAt(Queue::iterator frame) {
    QueueBufferOf(*frame);
    m_free.splice(m_free.end(), m_delivered, frame);
}

void CFramePool::Free() {
    const std::scoped_lock freeLock(m_freeMutex);
    m_free.clear();
    const std::scoped_lock deliveredLock(m_deliveredMutex);
    for (const auto& frame : m_delivered) {
        OV_RUN_LOGGED([&frame] { QueueBufferOf(frame); });
    }
    m_delivered.clear();
}
