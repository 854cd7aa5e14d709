#pragma once
/// Event queues: what `GCRegisterEvent` makes. One event object belongs to one
/// module and one event type; any number of threads may wait for its entries.

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "framework/Handles.h"
#include "framework/InfoValue.h"
#include "framework/SpinBeforeSleep.h"

namespace OvProducer {

/// The waiting side of a queue. The derived class has the entries and passes the lock:
/// the entries of a stream's new-buffer event are part of the buffer queues and share
/// their lock.
class Event : public Object {
public:
    Event(GenTL::EVENT_TYPE type, std::mutex& mutex) : m_type(type), m_mutex(mutex) {}

    GenTL::EVENT_TYPE Type() const { return m_type; }
    Event* AsEvent() final;

    /// Waits for the oldest entry and removes it from the queue. If `buffer` is null, the
    /// entry is dropped. Fails with -1011 after `timeout` milliseconds, with -1012 after
    /// `Kill` or `Close`, and with -1016 if `buffer` is too small, which keeps the entry.
    /// Holds no lock while it waits.
    void GetData(void* buffer, size_t* size, uint64_t timeout);

    /// Ends one wait: one that is under way, or else the next one, even if there are
    /// entries.
    void Kill();
    /// Ends all waits, those under way and those to come.
    void Close();
    /// Drops all entries.
    void Flush();

    InfoValue Info(GenTL::EVENT_INFO_CMD command) const;

    /// Returns a part of an entry that `GetData` has delivered.
    virtual InfoValue DataInfo(std::span<const std::byte> entry,
                               GenTL::EVENT_DATA_INFO_CMD command) const = 0;

protected:
    /// Largest entry, and largest part of an entry, in bytes.
    virtual size_t EntrySizeMax() const = 0;
    virtual size_t InfoSizeMax() const = 0;

    // The following are called with the lock held.
    virtual size_t Pending() const = 0;
    virtual size_t FrontSize() const = 0;
    /// Copies the oldest entry to `buffer`, unless that is null, and removes it.
    virtual void TakeFront(void* buffer) = 0;
    virtual void DropAll() = 0;

    /// Called without the lock when a wait is over and nothing came. May throw what the wait
    /// fails with instead of -1011.
    virtual void CheckAfterTimeout() const {}

    /// Counts an entry that was just added. To be called with the lock held; `Wake` must
    /// follow after the lock was released.
    void Added() {
        ++m_fired;
        m_spin.Notify();
    }
    /// Wakes all waits, so that they look for entries.
    void Wake() { m_wake.notify_all(); }
    bool Closed() const { return m_closed; }

private:
    /// Whether a wait has something to return.
    bool IsReady() const { return m_closed || m_kills != 0 || Pending() != 0; }
    /// Waits for that. Returns false after the time-out.
    bool Wait(std::unique_lock<std::mutex>& lock, uint64_t timeout);

    const GenTL::EVENT_TYPE m_type;
    std::mutex& m_mutex;
    std::condition_variable m_wake;
    SpinBeforeSleep m_spin;
    uint64_t m_fired = 0;
    size_t m_kills = 0;
    bool m_closed = false;
};

/// An event whose entries carry their own bytes, in a queue of limited length.
///
/// | Event | Entry |
/// |---|---|
/// | error | code (32 bits), text |
/// | feature invalidate | feature name |
/// | remote device, module | event ID (64 bits), payload |
/// | device offline | nothing |
class QueuedEvent : public Event {
public:
    explicit QueuedEvent(GenTL::EVENT_TYPE type) : Event(type, m_queueMutex) {}

    /// Drops the entry if the queue is full.
    void Post(std::span<const std::byte> entry);

    InfoValue DataInfo(std::span<const std::byte> entry,
                       GenTL::EVENT_DATA_INFO_CMD command) const override;

    static constexpr size_t kPayloadMax = 1024;
    static constexpr size_t kQueueMax = 1024;

protected:
    size_t EntrySizeMax() const override { return sizeof(uint64_t) + kPayloadMax; }
    size_t InfoSizeMax() const override { return kPayloadMax; }
    size_t Pending() const override { return m_entries.size(); }
    size_t FrontSize() const override { return m_entries.front().size(); }
    void TakeFront(void* buffer) override;
    void DropAll() override { m_entries.clear(); }

private:
    std::mutex m_queueMutex;
    std::deque<std::vector<std::byte>> m_entries;
};

/// Makes the entry of a remote-device or module event. Refuses payloads above kPayloadMax.
std::vector<std::byte> MakeMessageEntry(uint64_t id, std::span<const std::byte> payload);
/// Makes the entry of an event that names a feature.
std::vector<std::byte> MakeFeatureEntry(std::string_view feature);
/// Makes the entry of the error event.
std::vector<std::byte> MakeErrorEntry(GenTL::GC_ERROR code, std::string_view text);

}  // namespace OvProducer
