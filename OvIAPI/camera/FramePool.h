#pragma once
/// The records that the application receives for frames on loan.

#include <list>
#include <mutex>

#include "OvIDef.h"
#include "TLClassSupport/OvLock.h"

/// A record is free or delivered. Lending a frame moves a record between the two queues
/// and so allocates nothing. The lock of the free records is always taken before that of
/// the delivered ones.
class CFramePool {
public:
    CFramePool() = default;
    ~CFramePool() = default;
    CFramePool(const CFramePool&) = delete;
    CFramePool& operator=(const CFramePool&) = delete;

    /// Empties the pool and fills it with blank records. If there is no memory for them,
    /// the pool keeps its content.
    void Make(size_t count);
    /// Delivers a free record with that content; null if none is free. The record is
    /// filled under the locks because a stop on another thread may return it at once.
    OV_FRAME_BUFFER* Take(const OV_FRAME_BUFFER& content);
    /// Returns a delivered record to the pool and its buffer to the producer.
    /// @return false if the pointer isn't a delivered record
    bool Return(OV_FRAME_BUFFER* frame);
    void ReturnAll();
    /// Returns all delivered buffers to the producer and removes all records.
    void Free();

private:
    using Queue = std::list<OV_FRAME_BUFFER>;

    void ReturnAt(Queue::iterator frame);
    void FreeLocked();

    OVTLClass::CLock m_freeMutex{OVTLClass::LockRank::FreeFrames};
    Queue m_free;
    OVTLClass::CLock m_deliveredMutex{OVTLClass::LockRank::LentFrames};
    Queue m_delivered;
    /// Records that were on loan when the pool was emptied, the latest first. They are
    /// kept for a while: an application may return such a frame late, and no newer frame
    /// may have its address by then.
    Queue m_retired;
};
