#pragma once
/// The buffers of one stream and the queues that they go through: idle, input
/// pool, being filled, output queue, and idle again once delivered.

#include <condition_variable>
#include <memory>
#include <mutex>
#include <stop_token>
#include <vector>

#include "framework/BufferQueue.h"
#include "framework/Event.h"
#include "framework/Lookout.h"

namespace OvProducer {

/// What happens when frames come faster than they are fetched.
enum class BufferHandling : int64_t {
    OldestFirst = 0,           ///< without an input buffer the new frame is lost
    OldestFirstOverwrite = 1,  ///< it takes the place of the oldest unfetched one
    NewestOnly = 2             ///< only the newest frame waits in the output queue
};

/// Counters of a stream; the first four since the acquisition's start.
struct StreamCounters {
    uint64_t delivered = 0;
    uint64_t lost = 0;
    uint64_t started = 0;
    uint64_t incomplete = 0;
    size_t announced = 0;
    size_t input = 0;
    size_t output = 0;
};

class BufferPool {
public:
    explicit BufferPool(std::string tlType)
        : m_tlType(std::move(tlType)), m_queues(std::make_shared<Queues>()) {}

    // The consumer's side.

    /// A buffer over the consumer's memory, or for a null `memory` with memory
    /// of its own. It is not announced yet, so that it can get its handle first.
    std::shared_ptr<Buffer> MakeBuffer(void* memory, size_t size, void* userPointer) const;
    /// -1004 when the memory is announced already. `stream` is the handle of the
    /// stream that the buffers belong to.
    void Announce(const std::shared_ptr<Buffer>& buffer, const void* stream);
    /// -1022 unless the buffer is idle.
    void Revoke(const std::shared_ptr<Buffer>& buffer);
    /// Takes every buffer away, wherever it is. The engine must stand still.
    std::vector<std::shared_ptr<Buffer>> RevokeAll();
    /// These three take a buffer by its handle; -1022 when it isn't announced.
    void Queue(const void* handle);
    InfoValue Info(const void* handle, GenTL::BUFFER_INFO_CMD command) const;
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> Chunks(const void* handle) const;
    void Flush(GenTL::ACQ_QUEUE_TYPE operation);
    std::shared_ptr<Buffer> At(size_t index) const;

    StreamCounters Counters() const;
    BufferHandling Handling() const;
    void SetHandling(BufferHandling handling);

    /// The stream's new-buffer event. Entries are collected from now on.
    std::shared_ptr<Event> MakeEvent();
    /// Ends the event's waits and its collecting.
    void CloseEvent();

    // The engine's side.

    void ResetCounters();
    /// Takes a buffer to fill and counts a frame as started, or null when there
    /// is none.
    std::shared_ptr<Buffer> TakeInput();
    /// Waits for a buffer to fill; null only when stopped.
    std::shared_ptr<Buffer> WaitInput(const std::stop_token& stop);
    /// Gives back a filled buffer and wakes whoever waits for it.
    void Deliver(const std::shared_ptr<Buffer>& buffer, FrameInfo frame);
    void CountLost();

private:
    /// Shared with the event, whose entries are removed with the buffers.
    struct Queues {
        std::mutex mutex;
        BufferQueue input;
        BufferQueue output;
        BufferQueue entries;  ///< of `output`, those that the event will report
    };
    class NewBufferEvent;

    const std::shared_ptr<Buffer>& Announced(const void* handle) const;
    void ToInput(const std::shared_ptr<Buffer>& buffer);
    void ToOutput(const std::shared_ptr<Buffer>& buffer);
    void Wake() const;
    void OutputToIdle();
    void OutputToInput();
    std::shared_ptr<Buffer> TakeInputLocked();

    const std::string m_tlType;
    const std::shared_ptr<Queues> m_queues;
    std::condition_variable_any m_inputReady;
    Lookout m_inputLookout;
    std::vector<std::shared_ptr<Buffer>> m_announced;
    std::shared_ptr<NewBufferEvent> m_event;
    StreamCounters m_counters;
    BufferHandling m_handling = BufferHandling::OldestFirst;
};

}  // namespace OvProducer
