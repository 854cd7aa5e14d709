#pragma once
/// The records that the application receives for frames on loan.

#include <functional>
#include <list>
#include <mutex>

#include "OvIDef.h"
#include "TLClassSupport/OvLock.h"

/// A record is free or delivered. Lending a frame moves a record between the two queues
/// and so allocates nothing. The lock of the free records is always taken before that of
/// the delivered ones.
///
/// One frame may be attached: features read from it. It is detached before its buffer goes to the
/// producer, whichever call returns it. A detachment waits for those features, and so never runs
/// with a lock of the pool.
class CFramePool {
public:
    /// @param detach  lets the features go of the attached frame, and then calls NoteDetached
    explicit CFramePool(std::function<void()> detach = nullptr) : m_detach(std::move(detach)) {}
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
    /// Notes that features are about to read from the frame, in place of any other.
    /// @return false if the pointer isn't a delivered record
    bool Attach(const OV_FRAME_BUFFER* frame);
    /// No frame is attached any more.
    void NoteDetached();

private:
    using Queue = std::list<OV_FRAME_BUFFER>;

    /// Runs the action with both locks. If the attached frame would be in its way, that is
    /// detached before it.
    template <class IsInTheWay, class Action>
    auto RunLocked(const IsInTheWay& isInTheWay, const Action& action);
    Queue::iterator FindLent(const OV_FRAME_BUFFER* frame);
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
    const std::function<void()> m_detach;
    /// One of the delivered records; null if none is attached.
    const OV_FRAME_BUFFER* m_attached = nullptr;
};
