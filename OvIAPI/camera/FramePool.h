#pragma once
/// The records behind the frames on loan of one camera.

#include <list>
#include <mutex>

#include "OvIDef.h"
#include "TLClassSupport/OvLock.h"

/// A record is free or delivered. Records move between the two queues without
/// being made anew: lending a frame takes no memory. The lock of the free ones is always taken
/// before that of the delivered ones.
class CFramePool {
public:
    CFramePool() = default;
    ~CFramePool() = default;
    CFramePool(const CFramePool&) = delete;
    CFramePool& operator=(const CFramePool&) = delete;

    /// Frees the pool and fills it with blank records. Without memory for them
    /// nothing changes.
    void Make(size_t count);
    /// A free record, now delivered, with that content; null when none is free.
    /// It is filled here, under the locks: a stop on another thread takes it.
    OV_FRAME_BUFFER* Take(const OV_FRAME_BUFFER& content);
    /// Gives a delivered record and its buffer back. False for any other pointer.
    bool Return(OV_FRAME_BUFFER* frame);
    void ReturnAll();
    /// Gives all delivered buffers back; no record is left.
    void Free();

private:
    using Queue = std::list<OV_FRAME_BUFFER>;

    void ReturnAt(Queue::iterator frame);
    void FreeLocked();

    OVTLClass::CLock m_freeMutex{OVTLClass::LockRank::FreeFrames};
    Queue m_free;
    OVTLClass::CLock m_deliveredMutex{OVTLClass::LockRank::LentFrames};
    Queue m_delivered;
    /// On loan when the pool was freed, the last ones first. They are kept for a
    /// while, so that no frame is lent at the address of one that somebody still
    /// means to give back.
    Queue m_retired;
};
