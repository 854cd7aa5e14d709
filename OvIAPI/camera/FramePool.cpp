// Records of frames on loan. A stop on one thread may empty the pool while an application
// returns frames on another, so every function takes both locks for all that it does.

#include "camera/FramePool.h"

#include <algorithm>

#include "Base/EachFrame.h"
#include "TLClassBuffer/Buffer.h"
#include "TLClassSupport/RunLogged.h"

using namespace OVTLClass;

namespace {

/// A program that returns frames after a stop may be late by a few acquisitions. The
/// bound keeps one that never returns any from filling the memory.
constexpr size_t kRetired = 1024;

/// Returns the buffer of a frame to the producer.
void QueueBufferOf(const OV_FRAME_BUFFER& frame) {
    if (frame.nBufID != 0) {
        reinterpret_cast<CBuffer*>(frame.nBufID)->QueueBuffer();
    }
}

}  // namespace

template <class IsInTheWay, class Action>
auto CFramePool::RunLocked(const IsInTheWay& isInTheWay, const Action& action) {
    // Again until it is free: another thread may attach a frame in between.
    while (true) {
        {
            const std::scoped_lock freeLock(m_freeMutex);
            const std::scoped_lock deliveredLock(m_deliveredMutex);
            if (m_attached == nullptr || !isInTheWay()) {
                return action();
            }
        }
        m_detach();
    }
}

void CFramePool::Make(size_t count) {
    // Allocated before the locks are taken and before anything has changed.
    Queue fresh(count);
    RunLocked([] { return true; },
              [&] {
                  FreeLocked();
                  m_free.swap(fresh);
              });
}

OV_EACH_FRAME OV_FRAME_BUFFER* CFramePool::Take(const OV_FRAME_BUFFER& content) {
    const std::scoped_lock freeLock(m_freeMutex);
    const std::scoped_lock deliveredLock(m_deliveredMutex);
    if (m_free.empty()) {
        return nullptr;
    }
    m_delivered.splice(m_delivered.end(), m_free, m_free.begin());
    m_delivered.back() = content;
    return &m_delivered.back();
}

/// By address and without a look at what the pointer points to: it may be anything.
CFramePool::Queue::iterator CFramePool::FindLent(const OV_FRAME_BUFFER* frame) {
    return std::find_if(m_delivered.begin(), m_delivered.end(),
                        [frame](const auto& record) { return &record == frame; });
}

OV_EACH_FRAME bool CFramePool::Return(OV_FRAME_BUFFER* frame) {
    return RunLocked([&] { return m_attached == frame; },
                     [&] {
                         const auto found = FindLent(frame);
                         if (found == m_delivered.end()) {
                             return false;
                         }
                         ReturnAt(found);
                         return true;
                     });
}

void CFramePool::ReturnAll() {
    RunLocked([] { return true; },
              [this] {
                  while (!m_delivered.empty()) {
                      ReturnAt(m_delivered.begin());
                  }
              });
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): an iterator is a pointer
OV_EACH_FRAME void CFramePool::ReturnAt(Queue::iterator frame) {
    QueueBufferOf(*frame);
    m_free.splice(m_free.end(), m_delivered, frame);
}

void CFramePool::Free() {
    RunLocked([] { return true; }, [this] { FreeLocked(); });
}

bool CFramePool::Attach(const OV_FRAME_BUFFER* frame) {
    const auto isLent = [&] { return FindLent(frame) != m_delivered.end(); };
    return RunLocked(isLent, [&] {
        if (!isLent()) {
            return false;
        }
        m_attached = frame;
        return true;
    });
}

void CFramePool::NoteDetached() {
    const std::scoped_lock lock(m_deliveredMutex);
    m_attached = nullptr;
}

void CFramePool::FreeLocked() {
    m_free.clear();
    for (const auto& frame : m_delivered) {
        // A producer that refuses one buffer must not keep the others from going back.
        OV_RUN_LOGGED([&frame] { QueueBufferOf(frame); });
    }
    m_retired.splice(m_retired.begin(), m_delivered);
    if (m_retired.size() > kRetired) {
        m_retired.resize(kRetired);
    }
}
