#include "framework/Stream.h"

#include "Base/EachFrame.h"
#include "framework/Device.h"

namespace OvProducer {
namespace {

using Row = InfoRow<Stream::Snapshot>;

constexpr Row kStreamRows[] = {
    {GenTL::STREAM_INFO_ID, [](const auto& s) { return InfoValue::Text(s.facts.id); }},
    {GenTL::STREAM_INFO_NUM_DELIVERED,
     [](const auto& s) { return InfoValue::Uint64(s.counters.delivered); }},
    {GenTL::STREAM_INFO_NUM_UNDERRUN,
     [](const auto& s) { return InfoValue::Uint64(s.counters.lost); }},
    {GenTL::STREAM_INFO_NUM_ANNOUNCED,
     [](const auto& s) { return InfoValue::Size(s.counters.announced); }},
    {GenTL::STREAM_INFO_NUM_QUEUED,
     [](const auto& s) { return InfoValue::Size(s.counters.input); }},
    {GenTL::STREAM_INFO_NUM_AWAIT_DELIVERY,
     [](const auto& s) { return InfoValue::Size(s.counters.output); }},
    {GenTL::STREAM_INFO_NUM_STARTED,
     [](const auto& s) { return InfoValue::Uint64(s.counters.started); }},
    {GenTL::STREAM_INFO_PAYLOAD_SIZE,
     [](const auto& s) {
         if (!s.facts.definesPayloadSize) {
             ThrowNotAvailable();
         }
         return InfoValue::Size(s.facts.payloadSize);
     }},
    {GenTL::STREAM_INFO_IS_GRABBING, [](const auto& s) { return InfoValue::Bool(s.grabbing); }},
    {GenTL::STREAM_INFO_DEFINES_PAYLOADSIZE,
     [](const auto& s) { return InfoValue::Bool(s.facts.definesPayloadSize); }},
    {GenTL::STREAM_INFO_TLTYPE, [](const auto& s) { return InfoValue::Text(s.facts.tlType); }},
    {GenTL::STREAM_INFO_NUM_CHUNKS_MAX,
     [](const auto& s) { return InfoValue::Size(s.facts.chunksMax); }},
    {GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN,
     [](const auto& s) { return InfoValue::Size(s.facts.announceMinimum); }},
    {GenTL::STREAM_INFO_BUF_ALIGNMENT,
     [](const auto& s) { return InfoValue::Size(s.facts.alignment); }},
};

PortFacts PortFactsOf(const Session& session, const StreamFacts& facts) {
    return {facts.id,       session.facts.vendor,  session.facts.model, facts.tlType,
            "TLDataStream", session.facts.version, "StreamPort"};
}

}  // namespace

Stream::Stream(Session& session, std::weak_ptr<Device> parent,
               std::shared_ptr<StreamBackend> backend)
    : Module(session, PortFactsOf(session, backend->Facts())),
      m_parent(std::move(parent)),
      m_backend(std::move(backend)),
      m_pool(m_backend->Facts().tlType),
      m_engine(m_backend->MakeEngine()),
      m_acquisition(m_pool, *m_engine) {
    AddRegisters();
    m_backend->AddRegisters(GetOwnPort().Registers());
    session.producer->Describe(ModuleKind::Stream, GetOwnPort());
}

std::shared_ptr<Device> Stream::Parent() const {
    if (std::shared_ptr<Device> parent = m_parent.lock()) {
        return parent;
    }
    throw Failure(GenTL::GC_ERR_INVALID_HANDLE, "The device is closed");
}

void Stream::Close() {
    Retire();
    m_acquisition.Halt(true);
    for (const std::shared_ptr<Buffer>& buffer : m_pool.RevokeAll()) {
        GetSession().handles.Remove(buffer->Handle());
    }
}

template <typename Use>
auto Stream::OnBuffer(void* handle, const Use& use) const {
    try {
        return use();
    } catch (const Failure& failure) {
        // The pool only knows its own buffers. A handle that doesn't exist at all must
        // fail as an invalid handle.
        if (failure.Code() == GenTL::GC_ERR_INVALID_BUFFER) {
            static_cast<void>(BufferOf(handle));
        }
        throw;
    }
}

void* Stream::Announce(void* memory, size_t size, void* userPointer) {
    const std::shared_ptr<Buffer> buffer = m_pool.MakeBuffer(memory, size, userPointer);
    // The handle is made first: as soon as the buffer is announced, another thread may
    // queue it by a flush, and an event may report its handle.
    GetSession().Add(buffer);
    try {
        m_pool.Announce(buffer, Handle());
    } catch (const Failure&) {
        GetSession().handles.Remove(buffer->Handle());
        throw;
    }
    return buffer->Handle();
}

void Stream::Revoke(void* buffer, void** memory, void** userPointer) {
    const std::shared_ptr<Buffer> revoked = BufferOf(buffer);
    m_pool.Revoke(revoked);
    GetSession().handles.Remove(buffer);
    if (memory != nullptr) {
        *memory = revoked->ownMemory.empty() ? revoked->base : nullptr;
    }
    if (userPointer != nullptr) {
        *userPointer = revoked->userPointer;
    }
}

OV_EACH_FRAME void Stream::Queue(void* buffer) {
    OnBuffer(buffer, [&] { m_pool.Queue(buffer); });
}

void Stream::Flush(GenTL::ACQ_QUEUE_TYPE operation) {
    m_pool.Flush(operation);
}

InfoValue Stream::BufferInfo(void* buffer, GenTL::BUFFER_INFO_CMD command) const {
    return OnBuffer(buffer, [&] { return m_pool.Info(buffer, command); });
}

std::vector<GenTL::S_SINGLE_CHUNK_DATA> Stream::Chunks(void* buffer) const {
    return OnBuffer(buffer, [&] { return m_pool.Chunks(buffer); });
}

void Stream::Start(GenTL::ACQ_START_FLAGS flags, uint64_t frames) {
    if (flags != GenTL::ACQ_START_FLAGS_DEFAULT) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "Unknown start flags");
    }
    m_backend->CheckUsable();
    const size_t minimum = m_backend->Facts().announceMinimum;
    if (m_pool.Counters().announced < minimum) {
        throw Failure(GenTL::GC_ERR_INVALID_BUFFER,
                      "At least " + std::to_string(minimum) + " buffers must be announced");
    }
    m_acquisition.Start(frames);
}

void Stream::Stop(GenTL::ACQ_STOP_FLAGS flags) {
    if (flags != GenTL::ACQ_STOP_FLAGS_DEFAULT && flags != GenTL::ACQ_STOP_FLAGS_KILL) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "Unknown stop flags");
    }
    m_acquisition.Stop(flags == GenTL::ACQ_STOP_FLAGS_KILL);
}

InfoValue Stream::Info(GenTL::STREAM_INFO_CMD command) const {
    return AnswerFrom(kStreamRows, command, Current());
}

Stream::Snapshot Stream::Current() const {
    return {m_backend->Facts(), m_pool.Counters(), m_acquisition.IsGrabbing()};
}

std::shared_ptr<Event> Stream::MakeEvent(GenTL::EVENT_TYPE type) {
    static_cast<void>(type);
    return m_pool.MakeEvent([backend = m_backend] { backend->CheckAfterTimeout(); });
}

void Stream::EndEvent(Event& event) {
    static_cast<void>(event);
    m_pool.CloseEvent();
}

std::shared_ptr<Buffer> Stream::BufferOf(void* handle) const {
    return GetSession().handles.Get<Buffer>(handle);
}

void Stream::AddRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    registers.AddText(0x0000, 128, [this] { return m_backend->Facts().id; });
    registers.AddInteger(0x0080, 8, [this] { return TlTypeNumber(m_backend->Facts().tlType); });
    registers.AddInteger(
        0x0088, 8, [this] { return m_paramsLocked.load(); },
        [this](int64_t value) { m_paramsLocked = value; });
    registers.AddInteger(
        0x0090, 8, [this] { return static_cast<int64_t>(m_pool.Handling()); },
        [this](int64_t value) { SetHandling(value); });
    registers.AddInteger(0x0098, 8, [this] { return m_acquisition.IsGrabbing() ? 1 : 0; });
    AddCounterRegisters();
}

void Stream::AddCounterRegisters() {
    using Reader = uint64_t (*)(const Snapshot&);
    constexpr Reader kReaders[] = {
        [](const Snapshot& s) -> uint64_t { return s.facts.announceMinimum; },
        [](const Snapshot& s) -> uint64_t { return s.counters.announced; },
        [](const Snapshot& s) -> uint64_t { return s.facts.chunksMax; },
        [](const Snapshot& s) -> uint64_t { return s.facts.alignment; },
        [](const Snapshot& s) { return s.counters.started; },
        [](const Snapshot& s) { return s.counters.delivered; },
        [](const Snapshot& s) { return s.counters.lost; },
        [](const Snapshot& s) { return s.counters.incomplete; },
        [](const Snapshot& s) -> uint64_t { return s.counters.input; },
        [](const Snapshot& s) -> uint64_t { return s.counters.output; },
    };
    uint64_t address = 0x00A0;
    for (const Reader read : kReaders) {
        GetOwnPort().Registers().AddInteger(
            address, 8, [this, read] { return static_cast<int64_t>(read(Current())); });
        address += 8;
    }
}

void Stream::SetHandling(int64_t value) {
    if (m_acquisition.IsGrabbing()) {
        throw Failure(GenTL::GC_ERR_ACCESS_DENIED, "The mode is locked while acquiring");
    }
    if (value < 0 || value > static_cast<int64_t>(BufferHandling::NewestOnly)) {
        throw Failure(GenTL::GC_ERR_INVALID_VALUE, "Unknown buffer handling mode");
    }
    m_pool.SetHandling(static_cast<BufferHandling>(value));
}

}  // namespace OvProducer
