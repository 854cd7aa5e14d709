#pragma once
/// The buffers of one stream and their queues. A buffer is idle, in the input pool, being
/// filled, in the output queue, and idle again after its delivery.

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <unordered_map>
#include <vector>

#include "framework/BufferQueue.h"
#include "framework/Event.h"
#include "framework/SpinBeforeSleep.h"

namespace OvProducer {

/// What happens to frames that arrive faster than they are fetched.
enum class BufferHandling : int64_t {
    OldestFirst = 0,           ///< the new frame is lost if no input buffer is free
    OldestFirstOverwrite = 1,  ///< the new frame replaces the oldest one in the output queue
    NewestOnly = 2             ///< only the newest frame is in the output queue
};

/// Counters of a stream. The first four count since the start of the acquisition.
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

    // For the consumer.

    /// Makes a buffer of the consumer's memory, or of its own memory if `memory` is null.
    /// It isn't announced yet, so that it can receive its handle first.
    std::shared_ptr<Buffer> MakeBuffer(void* memory, size_t size, void* userPointer) const;
    /// Fails with -1004 if the memory is announced already. `stream` is the handle of the
    /// stream that the buffers belong to.
    void Announce(const std::shared_ptr<Buffer>& buffer, const void* stream);
    /// Fails with -1013 if the buffer isn't announced, with -1022 unless it is idle.
    void Revoke(const std::shared_ptr<Buffer>& buffer);
    /// Revokes all buffers, whatever their state. The engine must have stopped.
    std::vector<std::shared_ptr<Buffer>> RevokeAll();
    /// These three find a buffer by its handle, and fail with -1013 if it isn't
    /// announced.
    void Queue(const void* handle);
    InfoValue Info(const void* handle, GenTL::BUFFER_INFO_CMD command) const;
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> Chunks(const void* handle) const;
    void Flush(GenTL::ACQ_QUEUE_TYPE operation);
    std::shared_ptr<Buffer> At(size_t index) const;

    StreamCounters Counters() const;
    BufferHandling Handling() const;
    void SetHandling(BufferHandling handling);

    /// Makes the stream's new-buffer event, for which entries are collected from now on.
    /// @param checkAfterTimeout  is called when a wait is over without a frame, and may throw
    std::shared_ptr<Event> MakeEvent(std::function<void()> checkAfterTimeout = [] {});
    /// Ends the waits for the event, and collects no more entries for it.
    void CloseEvent();

    // For the engine.

    void ResetCounters();
    /// Returns a buffer to fill and counts a frame as started, or returns null if no
    /// buffer is free.
    std::shared_ptr<Buffer> TakeInput();
    /// Waits for a buffer to fill. Returns null only if `stop` was requested.
    std::shared_ptr<Buffer> WaitInput(const std::stop_token& stop);
    /// Puts a filled buffer into the output queue and wakes the threads that wait for it.
    void Deliver(const std::shared_ptr<Buffer>& buffer, const FrameInfo& frame);
    /// Puts a buffer that isn't delivered back to those that wait to be filled.
    void GiveBack(const std::shared_ptr<Buffer>& buffer);
    void CountLost();

private:
    /// Shared with the event: when buffers leave the output queue, its entries go with
    /// them.
    struct Queues {
        std::mutex mutex;
        BufferQueue input;
        BufferQueue output;
        BufferQueue entries;  ///< the buffers of `output` that the event will report
    };
    class NewBufferEvent;

    const std::shared_ptr<Buffer>& Announced(const void* handle) const;
    void ToInput(const std::shared_ptr<Buffer>& buffer);
    void ToOutput(const std::shared_ptr<Buffer>& buffer);
    void Wake() const;
    void OutputToIdle();
    void OutputToInput();
    std::shared_ptr<Buffer> TakeInputLocked();
    /// Waits for the length of a spin. Null if no buffer was free by then.
    std::shared_ptr<Buffer> TakeInputSoon();

    const std::string m_tlType;
    const std::shared_ptr<Queues> m_queues;
    std::condition_variable m_inputReady;
    SpinBeforeSleep m_inputSpin;
    std::vector<std::shared_ptr<Buffer>> m_announced;  ///< in the order of their indices
    std::unordered_map<const void*, std::shared_ptr<Buffer>> m_byHandle;
    std::shared_ptr<NewBufferEvent> m_event;
    StreamCounters m_counters;
    BufferHandling m_handling = BufferHandling::OldestFirst;
};

}  // namespace OvProducer
