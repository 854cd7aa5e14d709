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
#include "framework/Lookout.h"

namespace OvProducer {

/// The waiting side of a queue. What the queue holds is the derived class's
/// matter; its lock is handed in, since the entries of a stream's new-buffer
/// event are part of the buffer queues and share their lock.
class Event : public Object {
public:
    Event(GenTL::EVENT_TYPE type, std::mutex& mutex) : m_type(type), m_mutex(mutex) {}

    GenTL::EVENT_TYPE Type() const { return m_type; }

    /// Waits for the oldest entry and takes it. `buffer` may be null: the entry
    /// is then thrown away. Ends with -1011 after `timeout` milliseconds, with
    /// -1012 by `Kill` or `Close`; with -1016 the entry stays. No lock is held
    /// while it waits.
    void GetData(void* buffer, size_t* size, uint64_t timeout);

    /// Ends one wait: one that runs, or else the next. A kill goes before data.
    void Kill();
    /// Ends all waits, running and to come.
    void Close();
    /// Drops all entries.
    void Flush();

    InfoValue Info(GenTL::EVENT_INFO_CMD command) const;

    /// A part of an entry that `GetData` delivered.
    virtual InfoValue DataInfo(std::span<const std::byte> entry,
                               GenTL::EVENT_DATA_INFO_CMD command) const = 0;

protected:
    /// Largest entry, and largest part of an entry, in bytes.
    virtual size_t EntrySizeMax() const = 0;
    virtual size_t InfoSizeMax() const = 0;

    // The following run with the lock held.
    virtual size_t Pending() const = 0;
    virtual size_t FrontSize() const = 0;
    /// Takes the oldest entry; a null buffer drops it.
    virtual void TakeFront(void* buffer) = 0;
    virtual void DropAll() = 0;

    /// Counts an entry just added; the lock is held, and `Wake` follows without
    /// it.
    void Added() {
        ++m_fired;
        m_lookout.Signal();
    }
    /// Lets waiters look for entries.
    void Wake() { m_wake.notify_all(); }
    bool Closed() const { return m_closed; }

private:
    const GenTL::EVENT_TYPE m_type;
    std::mutex& m_mutex;
    std::condition_variable m_wake;
    Lookout m_lookout;
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

    /// Entries beyond the limit are dropped, as those of a full camera queue.
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

/// Entry of a remote-device or module event. Longer payloads are refused.
std::vector<std::byte> MakeMessageEntry(uint64_t id, std::span<const std::byte> payload);
/// Entry of an event that names a feature.
std::vector<std::byte> MakeFeatureEntry(std::string_view feature);
/// Entry of the error event.
std::vector<std::byte> MakeErrorEntry(GenTL::GC_ERROR code, std::string_view text);

}  // namespace OvProducer
