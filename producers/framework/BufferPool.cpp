#include "framework/BufferPool.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Base/EachFrame.h"

namespace OvProducer {
namespace {

[[noreturn]] void ThrowNotAnnounced() {
    throw Failure(GenTL::GC_ERR_INVALID_BUFFER, "The buffer isn't announced to this stream");
}

}  // namespace

class BufferPool::NewBufferEvent : public Event {
public:
    NewBufferEvent(std::shared_ptr<Queues> queues, std::function<void()> checkAfterTimeout)
        : Event(GenTL::EVENT_NEW_BUFFER, queues->mutex),
          m_queues(std::move(queues)),
          m_checkAfterTimeout(std::move(checkAfterTimeout)) {}

    using Event::Wake;

    InfoValue DataInfo(std::span<const std::byte> entry,
                       GenTL::EVENT_DATA_INFO_CMD command) const override {
        GenTL::S_EVENT_NEW_BUFFER data{};
        if (entry.size() < sizeof data) {
            throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "The event entry is too short");
        }
        std::memcpy(&data, entry.data(), sizeof data);
        switch (command) {
            case GenTL::EVENT_DATA_ID:
                return InfoValue::Pointer(data.BufferHandle);
            case GenTL::EVENT_DATA_VALUE:
                return InfoValue::Pointer(data.pUserPointer);
            default:
                throw Failure(GenTL::GC_ERR_NOT_IMPLEMENTED, "The event has no such part");
        }
    }

    /// To be called with the lock held. `Wake` must follow after the lock was released.
    void Report(const std::shared_ptr<Buffer>& buffer) {
        if (!Closed()) {
            m_queues->entries.Push(buffer);
            Added();
        }
    }

protected:
    size_t EntrySizeMax() const override { return sizeof(GenTL::S_EVENT_NEW_BUFFER); }
    size_t InfoSizeMax() const override { return sizeof(void*); }
    OV_EACH_FRAME size_t Pending() const override { return m_queues->entries.size(); }
    OV_EACH_FRAME size_t FrontSize() const override { return EntrySizeMax(); }
    void CheckAfterTimeout() const override { m_checkAfterTimeout(); }

    OV_EACH_FRAME void TakeFront(void* buffer) override {
        const std::shared_ptr<Buffer> front = m_queues->entries.Pop();
        m_queues->output.Erase(front);
        front->facts->SetState(BufferState::Idle);
        if (buffer != nullptr) {
            const GenTL::S_EVENT_NEW_BUFFER data{front->Handle(), front->userPointer};
            std::memcpy(buffer, &data, sizeof data);
        }
    }

    void DropAll() override {
        m_queues->entries.Drain([this](const std::shared_ptr<Buffer>& buffer) {
            m_queues->output.Erase(buffer);
            buffer->facts->SetState(BufferState::Idle);
        });
    }

private:
    const std::shared_ptr<Queues> m_queues;
    const std::function<void()> m_checkAfterTimeout;
};

std::shared_ptr<Buffer> BufferPool::MakeBuffer(void* memory, size_t size, void* userPointer) const {
    if (size == 0) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "A buffer of no bytes can't be announced");
    }
    auto buffer = std::make_shared<Buffer>();
    if (memory == nullptr) {
        buffer->ownMemory.resize(size);
    }
    buffer->base = memory != nullptr ? static_cast<std::byte*>(memory) : buffer->ownMemory.data();
    buffer->size = size;
    buffer->userPointer = userPointer;
    buffer->facts->SetBuffer(buffer->base, size, userPointer, m_tlType);
    return buffer;
}

void BufferPool::Announce(const std::shared_ptr<Buffer>& buffer, const void* stream) {
    const std::lock_guard lock(m_queues->mutex);
    const bool known = std::any_of(m_announced.begin(), m_announced.end(),
                                   [&](const auto& other) { return other->base == buffer->base; });
    if (known) {
        throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The memory is announced already");
    }
    m_announced.push_back(buffer);
    m_byHandle[buffer->Handle()] = buffer;
    buffer->facts->Publish(stream, buffer->Handle());
}

OV_EACH_FRAME const std::shared_ptr<Buffer>& BufferPool::Announced(const void* handle) const {
    const auto found = m_byHandle.find(handle);
    if (found == m_byHandle.end()) {
        ThrowNotAnnounced();
    }
    return found->second;
}

void BufferPool::Revoke(const std::shared_ptr<Buffer>& buffer) {
    const std::lock_guard lock(m_queues->mutex);
    const auto found = std::find(m_announced.begin(), m_announced.end(), buffer);
    if (found == m_announced.end()) {
        ThrowNotAnnounced();
    }
    if (buffer->facts->State() != BufferState::Idle) {
        throw Failure(GenTL::GC_ERR_BUSY, "The buffer is in a queue or being filled");
    }
    m_announced.erase(found);
    m_byHandle.erase(buffer->Handle());
    buffer->facts->ClearFrame();
}

std::vector<std::shared_ptr<Buffer>> BufferPool::RevokeAll() {
    const std::lock_guard lock(m_queues->mutex);
    m_queues->input.Clear();
    m_queues->output.Clear();
    m_queues->entries.Clear();
    for (const std::shared_ptr<Buffer>& buffer : m_announced) {
        buffer->facts->ClearFrame();
    }
    m_byHandle.clear();
    return std::exchange(m_announced, {});
}

OV_EACH_FRAME void BufferPool::Queue(const void* handle) {
    {
        const std::lock_guard lock(m_queues->mutex);
        const std::shared_ptr<Buffer>& buffer = Announced(handle);
        if (buffer->facts->State() != BufferState::Idle) {
            throw Failure(GenTL::GC_ERR_BUSY, "The buffer is in a queue or being filled");
        }
        ToInput(buffer);
    }
    m_inputReady.notify_all();
}

void BufferPool::Flush(GenTL::ACQ_QUEUE_TYPE operation) {
    Queues& queues = *m_queues;
    {
        const std::lock_guard lock(queues.mutex);
        switch (operation) {
            case GenTL::ACQ_QUEUE_INPUT_TO_OUTPUT:
                queues.input.Drain([this](const auto& buffer) { ToOutput(buffer); });
                break;
            case GenTL::ACQ_QUEUE_OUTPUT_DISCARD:
                OutputToIdle();
                break;
            case GenTL::ACQ_QUEUE_ALL_TO_INPUT:
                OutputToInput();
                [[fallthrough]];
            case GenTL::ACQ_QUEUE_UNQUEUED_TO_INPUT:
                for (const auto& buffer : m_announced) {
                    if (buffer->facts->State() == BufferState::Idle) {
                        ToInput(buffer);
                    }
                }
                break;
            case GenTL::ACQ_QUEUE_ALL_DISCARD:
                OutputToIdle();
                queues.input.Clear();
                for (const auto& buffer : m_announced) {
                    buffer->discardWhenFilled = buffer->facts->State() == BufferState::Filling;
                    if (buffer->facts->State() == BufferState::Input) {
                        buffer->facts->SetState(BufferState::Idle);
                    }
                }
                break;
            default:
                throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "Unknown queue operation");
        }
    }
    m_inputReady.notify_all();
    Wake();
}

std::shared_ptr<Buffer> BufferPool::At(size_t index) const {
    const std::lock_guard lock(m_queues->mutex);
    if (index >= m_announced.size()) {
        throw Failure(GenTL::GC_ERR_INVALID_INDEX, "No buffer has that index");
    }
    return m_announced[index];
}

InfoValue BufferPool::Info(const void* handle, GenTL::BUFFER_INFO_CMD command) const {
    const std::lock_guard lock(m_queues->mutex);
    const std::shared_ptr<Buffer>& buffer = Announced(handle);
    if (command == GenTL::BUFFER_INFO_FILENAME && buffer->facts->HasFrame() &&
        !buffer->fileName.empty()) {
        return InfoValue::Text(buffer->fileName);
    }
    return buffer->facts->Answer(command);
}

std::vector<GenTL::S_SINGLE_CHUNK_DATA> BufferPool::Chunks(const void* handle) const {
    const std::lock_guard lock(m_queues->mutex);
    const std::shared_ptr<Buffer>& buffer = Announced(handle);
    if (!buffer->facts->HasFrame()) {
        ThrowNotAvailable();
    }
    if (buffer->hasWrongChunks) {
        throw Failure(GenTL::GC_ERR_PARSING_CHUNK_DATA,
                      "The end of the frame's data doesn't say where its chunks are");
    }
    return buffer->chunks;
}

StreamCounters BufferPool::Counters() const {
    const std::lock_guard lock(m_queues->mutex);
    StreamCounters counters = m_counters;
    counters.announced = m_announced.size();
    counters.input = m_queues->input.size();
    counters.output = m_queues->output.size();
    return counters;
}

BufferHandling BufferPool::Handling() const {
    const std::lock_guard lock(m_queues->mutex);
    return m_handling;
}

void BufferPool::SetHandling(BufferHandling handling) {
    const std::lock_guard lock(m_queues->mutex);
    m_handling = handling;
}

std::shared_ptr<Event> BufferPool::MakeEvent(std::function<void()> checkAfterTimeout) {
    auto event = std::make_shared<NewBufferEvent>(m_queues, std::move(checkAfterTimeout));
    const std::lock_guard lock(m_queues->mutex);
    m_event = event;
    return event;
}

void BufferPool::CloseEvent() {
    std::shared_ptr<NewBufferEvent> event;
    {
        const std::lock_guard lock(m_queues->mutex);
        event = std::exchange(m_event, nullptr);
    }
    if (event) {
        event->Close();
    }
}

void BufferPool::ResetCounters() {
    const std::lock_guard lock(m_queues->mutex);
    m_counters = {};
}

std::shared_ptr<Buffer> BufferPool::TakeInput() {
    const std::lock_guard lock(m_queues->mutex);
    return TakeInputLocked();
}

std::shared_ptr<Buffer> BufferPool::WaitInput(const std::stop_token& stop) {
    if (std::shared_ptr<Buffer> buffer = TakeInputSoon()) {
        return buffer;
    }
    // Outlives the lock, because its destructor waits for the call, which takes the lock. That is
    // so that no wait begins between the request and the wake-up.
    const std::stop_callback wake(stop, [this] {
        { const std::lock_guard lock(m_queues->mutex); }
        m_inputReady.notify_all();
    });
    // A condition that knows of stops itself has a second mutex, for which a thread that was woken
    // would wait again.
    std::unique_lock lock(m_queues->mutex);
    m_inputReady.wait(lock, [&] { return !m_queues->input.empty() || stop.stop_requested(); });
    return m_queues->input.empty() ? nullptr : TakeInputLocked();
}

std::shared_ptr<Buffer> BufferPool::TakeInputSoon() {
    std::unique_lock lock(m_queues->mutex);
    if (m_queues->input.empty()) {
        m_inputSpin.Spin(lock);
    }
    return m_queues->input.empty() ? nullptr : TakeInputLocked();
}

void BufferPool::Deliver(const std::shared_ptr<Buffer>& buffer, const FrameInfo& frame) {
    std::shared_ptr<NewBufferEvent> event;
    {
        const std::lock_guard lock(m_queues->mutex);
        m_counters.incomplete += frame.incomplete ? 1 : 0;
        buffer->facts->SetFrame(frame);
        buffer->facts->SetNewData(true);
        buffer->hasWrongChunks = frame.hasWrongChunks;
        buffer->chunks = frame.chunks;
        buffer->fileName = frame.fileName;
        if (std::exchange(buffer->discardWhenFilled, false)) {
            buffer->facts->SetState(BufferState::Idle);
            return;
        }
        if (m_handling == BufferHandling::NewestOnly) {
            m_counters.lost += m_queues->output.size();
            OutputToInput();
        }
        ++m_counters.delivered;
        ToOutput(buffer);
        event = m_event;
    }
    // After the lock was released, because the thread that wakes needs it at once.
    if (event) {
        event->Wake();
    }
}

void BufferPool::GiveBack(const std::shared_ptr<Buffer>& buffer) {
    {
        const std::lock_guard lock(m_queues->mutex);
        if (std::exchange(buffer->discardWhenFilled, false)) {
            buffer->facts->SetState(BufferState::Idle);
        } else {
            ToInput(buffer);
        }
    }
    m_inputReady.notify_all();
}

void BufferPool::CountLost() {
    const std::lock_guard lock(m_queues->mutex);
    ++m_counters.lost;
}

OV_EACH_FRAME void BufferPool::ToInput(const std::shared_ptr<Buffer>& buffer) {
    buffer->facts->SetState(BufferState::Input);
    buffer->facts->SetNewData(false);
    buffer->facts->ClearFrame();
    m_queues->input.Push(buffer);
    m_inputSpin.Notify();
}

void BufferPool::ToOutput(const std::shared_ptr<Buffer>& buffer) {
    buffer->facts->SetState(BufferState::Output);
    m_queues->output.Push(buffer);
    if (m_event) {
        m_event->Report(buffer);
    }
}

void BufferPool::Wake() const {
    std::shared_ptr<NewBufferEvent> event;
    {
        const std::lock_guard lock(m_queues->mutex);
        event = m_event;
    }
    if (event) {
        event->Wake();
    }
}

void BufferPool::OutputToIdle() {
    m_queues->output.Drain([](const auto& buffer) { buffer->facts->SetState(BufferState::Idle); });
    m_queues->entries.Clear();
}

void BufferPool::OutputToInput() {
    m_queues->output.Drain([this](const auto& buffer) { ToInput(buffer); });
    m_queues->entries.Clear();
}

std::shared_ptr<Buffer> BufferPool::TakeInputLocked() {
    BufferQueue& input = m_queues->input;
    BufferQueue& output = m_queues->output;
    std::shared_ptr<Buffer> buffer;
    if (!input.empty()) {
        buffer = input.Pop();
    } else if (m_handling != BufferHandling::OldestFirst && !output.empty()) {
        buffer = output.Pop();
        m_queues->entries.Erase(buffer);
        ++m_counters.lost;
    } else {
        return nullptr;
    }
    ++m_counters.started;
    buffer->facts->SetState(BufferState::Filling);
    buffer->facts->ClearFrame();
    buffer->facts->SetNewData(false);
    return buffer;
}

}  // namespace OvProducer
