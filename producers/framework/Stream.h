#pragma once
/// The data stream module: buffers, the engine that fills them, and the
/// new-buffer event.

#include <memory>
#include <string>

#include "framework/Acquisition.h"
#include "framework/BufferPool.h"
#include "framework/Module.h"

namespace OvProducer {

class Device;

class Stream : public Module, public std::enable_shared_from_this<Stream> {
public:
    Stream(Session& session, std::weak_ptr<Device> parent, std::shared_ptr<StreamBackend> backend);

    /// The device. Fails with -1006 if it is closed.
    std::shared_ptr<Device> Parent() const;
    /// Stops the engine, ends the events and revokes all buffers.
    void Close();

    void* Announce(void* memory, size_t size, void* userPointer);
    void Revoke(void* buffer, void** memory, void** userPointer);
    void Queue(void* buffer);
    void Flush(GenTL::ACQ_QUEUE_TYPE operation);
    void* BufferAt(size_t index) const { return m_pool.At(index)->Handle(); }
    InfoValue BufferInfo(void* buffer, GenTL::BUFFER_INFO_CMD command) const;
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> Chunks(void* buffer) const;

    void Start(GenTL::ACQ_START_FLAGS flags, uint64_t frames);
    void Stop(GenTL::ACQ_STOP_FLAGS flags);

    InfoValue Info(GenTL::STREAM_INFO_CMD command) const;

    /// The state that the information calls report.
    struct Snapshot {
        StreamFacts facts;
        StreamCounters counters;
        bool grabbing;
    };

protected:
    bool OffersEvent(GenTL::EVENT_TYPE type) const override {
        return type == GenTL::EVENT_NEW_BUFFER;
    }
    std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE type) override;
    void EndEvent(Event& event) override;

private:
    Snapshot Current() const;
    std::shared_ptr<Buffer> BufferOf(void* handle) const;
    /// Runs `use`, which finds the buffer in the pool. If the pool doesn't have it, fails
    /// with -1006 for an invalid handle and with -1013 otherwise.
    template <typename Use>
    auto OnBuffer(void* handle, const Use& use) const;
    void AddRegisters();
    void AddCounterRegisters();
    void SetHandling(int64_t value);

    const std::weak_ptr<Device> m_parent;
    const std::shared_ptr<StreamBackend> m_backend;
    BufferPool m_pool;
    const std::unique_ptr<FrameEngine> m_engine;
    Acquisition m_acquisition;
    std::atomic<int64_t> m_paramsLocked = 0;
};

}  // namespace OvProducer
