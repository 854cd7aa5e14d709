#include "framework/BufferFacts.h"

#include <array>
#include <deque>
#include <mutex>
#include <set>
#include <vector>

#include "Base/EachFrame.h"
#include "framework/Handles.h"

namespace OvProducer {
namespace {

/// The memory of all facts, and the few texts that they refer to.
class FactsStore {
public:
    /// All facts that are in use own the store too, so that it outlives them.
    static const std::shared_ptr<FactsStore>& Instance() {
        static const auto store = std::make_shared<FactsStore>();
        return store;
    }

    BufferFacts* Take() {
        const std::lock_guard lock(m_mutex);
        if (m_free.empty()) {
            return &m_facts.emplace_back();
        }
        BufferFacts* const facts = m_free.back();
        m_free.pop_back();
        return facts;
    }
    void Return(BufferFacts* facts) {
        const std::lock_guard lock(m_mutex);
        m_free.push_back(facts);
    }
    const std::string* Keep(const std::string& text) {
        const std::lock_guard lock(m_mutex);
        return &*m_texts.insert(text).first;
    }

private:
    std::mutex m_mutex;
    std::deque<BufferFacts> m_facts;  // a deque, whose items never move
    std::vector<BufferFacts*> m_free;
    std::set<std::string> m_texts;
};

// Handles that are valid at the same time differ in the digits above the step, so that the buffers
// of a stream have places of their own. Facts that lose their place to a later buffer are still
// found in the stream's list.
constexpr size_t kPlaces = 1024;
std::array<std::atomic<const BufferFacts*>, kPlaces> g_places{};

std::atomic<const BufferFacts*>& PlaceOf(const void* handle) {
    return g_places[reinterpret_cast<uintptr_t>(handle) / HandleTable::kStep % kPlaces];
}

}  // namespace

std::shared_ptr<BufferFacts> BufferFacts::Make() {
    const std::shared_ptr<FactsStore>& store = FactsStore::Instance();
    return {store->Take(), [store](BufferFacts* facts) { store->Return(facts); }};
}

OV_EACH_FRAME const BufferFacts* BufferFacts::Find(const void* handle) {
    return PlaceOf(handle);
}

void BufferFacts::SetBuffer(std::byte* base, size_t size, void* userPointer,
                            const std::string& tlType) {
    ClearFrame();
    SetState(BufferState::Idle);
    SetNewData(false);
    Set(m_handle, static_cast<const void*>(nullptr));
    Set(m_base, static_cast<const void*>(base));
    Set(m_size, size);
    Set(m_userPointer, static_cast<const void*>(userPointer));
    Set(m_tlType, FactsStore::Instance()->Keep(tlType));
}

void BufferFacts::Publish(const void* stream, const void* handle) {
    Set(m_stream, stream);
    Set(m_handle, handle);
    PlaceOf(handle).store(this);
}

void BufferFacts::SetFrame(const FrameInfo& frame) {
    ClearFrame();
    Set(m_frame.width, frame.width);
    Set(m_frame.height, frame.height);
    Set(m_frame.offsetX, frame.offsetX);
    Set(m_frame.offsetY, frame.offsetY);
    Set(m_frame.paddingX, frame.paddingX);
    Set(m_frame.paddingY, frame.paddingY);
    Set(m_frame.deliveredHeight, frame.deliveredHeight);
    Set(m_frame.sizeFilled, frame.sizeFilled);
    Set(m_frame.imageOffset, frame.imageOffset);
    Set(m_frame.pixelFormat, frame.pixelFormat);
    Set(m_frame.frameId, frame.frameId);
    Set(m_frame.timestamp, frame.timestamp);
    Set(m_frame.timestampNs, frame.timestampNs);
    Set(m_frame.payloadType, frame.payloadType);
    Set(m_frame.chunkPayloadSize, frame.chunkPayloadSize);
    Set(m_frame.chunkLayoutId, frame.chunkLayoutId);
    Set(m_frame.imagePresent, frame.imagePresent);
    Set(m_frame.incomplete, frame.incomplete);
    Set(m_frame.largerThanBuffer, frame.largerThanBuffer);
    Set(m_frame.hasChunks, !frame.chunks.empty());
    Set(m_frameNumber, ++m_lastFrameNumber);
}

/// The answers of `DSGetBufferInfo`.
struct BufferFacts::Rows {
    static const Frame& FrameOf(const BufferFacts& facts) {
        if (!facts.HasFrame()) {
            ThrowNotAvailable();
        }
        return facts.m_frame;
    }

    template <Cell<size_t> Frame::*field>
    OV_EACH_FRAME static InfoValue FrameSize(const BufferFacts& facts) {
        return InfoValue::Size(FrameOf(facts).*field);
    }

    template <Cell<uint64_t> Frame::*field>
    OV_EACH_FRAME static InfoValue FrameNumber(const BufferFacts& facts) {
        return InfoValue::Uint64(FrameOf(facts).*field);
    }

    template <Cell<bool> Frame::*field>
    OV_EACH_FRAME static InfoValue FrameFlag(const BufferFacts& facts) {
        return InfoValue::Bool(FrameOf(facts).*field);
    }

    static bool IsQueued(const BufferFacts& facts) {
        const BufferState state = facts.State();
        return state == BufferState::Input || state == BufferState::Output;
    }

    /// What consumers ask with each frame comes first, so that it is found soon.
    static constexpr InfoRow<BufferFacts> kAll[] = {
        {GenTL::BUFFER_INFO_SIZE_FILLED, FrameSize<&Frame::sizeFilled>},
        {GenTL::BUFFER_INFO_WIDTH, FrameSize<&Frame::width>},
        {GenTL::BUFFER_INFO_HEIGHT, FrameSize<&Frame::height>},
        {GenTL::BUFFER_INFO_XOFFSET, FrameSize<&Frame::offsetX>},
        {GenTL::BUFFER_INFO_YOFFSET, FrameSize<&Frame::offsetY>},
        {GenTL::BUFFER_INFO_TIMESTAMP, FrameNumber<&Frame::timestamp>},
        {GenTL::BUFFER_INFO_FRAMEID, FrameNumber<&Frame::frameId>},
        {GenTL::BUFFER_INFO_PIXELFORMAT, FrameNumber<&Frame::pixelFormat>},
        {GenTL::BUFFER_INFO_IS_INCOMPLETE, FrameFlag<&Frame::incomplete>},
        {GenTL::BUFFER_INFO_BASE,
         [](const BufferFacts& b) { return InfoValue::Pointer(b.m_base.load()); }},
        {GenTL::BUFFER_INFO_SIZE, [](const BufferFacts& b) { return InfoValue::Size(b.m_size); }},
        {GenTL::BUFFER_INFO_USER_PTR,
         [](const BufferFacts& b) { return InfoValue::Pointer(b.m_userPointer.load()); }},
        {GenTL::BUFFER_INFO_NEW_DATA,
         [](const BufferFacts& b) { return InfoValue::Bool(b.NewData()); }},
        {GenTL::BUFFER_INFO_IS_QUEUED,
         [](const BufferFacts& b) { return InfoValue::Bool(IsQueued(b)); }},
        {GenTL::BUFFER_INFO_IS_ACQUIRING,
         [](const BufferFacts& b) { return InfoValue::Bool(b.State() == BufferState::Filling); }},
        {GenTL::BUFFER_INFO_TLTYPE,
         [](const BufferFacts& b) { return InfoValue::Text(*b.m_tlType); }},
        {GenTL::BUFFER_INFO_XPADDING, FrameSize<&Frame::paddingX>},
        {GenTL::BUFFER_INFO_YPADDING, FrameSize<&Frame::paddingY>},
        {GenTL::BUFFER_INFO_IMAGEPRESENT, FrameFlag<&Frame::imagePresent>},
        {GenTL::BUFFER_INFO_IMAGEOFFSET, FrameSize<&Frame::imageOffset>},
        {GenTL::BUFFER_INFO_PAYLOADTYPE, FrameSize<&Frame::payloadType>},
        {GenTL::BUFFER_INFO_PIXELFORMAT_NAMESPACE,
         [](const BufferFacts& b) {
             static_cast<void>(FrameOf(b));
             return InfoValue::Uint64(GenTL::PIXELFORMAT_NAMESPACE_PFNC_32BIT);
         }},
        {GenTL::BUFFER_INFO_DELIVERED_IMAGEHEIGHT, FrameSize<&Frame::deliveredHeight>},
        {GenTL::BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE, FrameSize<&Frame::chunkPayloadSize>},
        {GenTL::BUFFER_INFO_CHUNKLAYOUTID, FrameNumber<&Frame::chunkLayoutId>},
        {GenTL::BUFFER_INFO_FILENAME, [](const BufferFacts&) -> InfoValue { ThrowNotAvailable(); }},
        {GenTL::BUFFER_INFO_PIXEL_ENDIANNESS,
         [](const BufferFacts& b) {
             static_cast<void>(FrameOf(b));
             return InfoValue::Int32(GenTL::PIXELENDIANNESS_LITTLE);
         }},
        {GenTL::BUFFER_INFO_DATA_SIZE, FrameSize<&Frame::sizeFilled>},
        {GenTL::BUFFER_INFO_TIMESTAMP_NS, FrameNumber<&Frame::timestampNs>},
        {GenTL::BUFFER_INFO_DATA_LARGER_THAN_BUFFER, FrameFlag<&Frame::largerThanBuffer>},
        {GenTL::BUFFER_INFO_CONTAINS_CHUNKDATA,
         [](const BufferFacts& b) { return InfoValue::Bool(FrameOf(b).hasChunks); }},
    };
};

OV_EACH_FRAME InfoValue BufferFacts::Answer(GenTL::BUFFER_INFO_CMD command) const {
    return AnswerFrom(Rows::kAll, command, *this);
}

OV_EACH_FRAME std::optional<InfoValue> BufferFacts::TryAnswer(
    const void* stream, const void* handle, GenTL::BUFFER_INFO_CMD command) const {
    const uint64_t number = m_frameNumber;
    // A file's name isn't among the facts.
    if (!HasFrameOf(stream, handle) || command == GenTL::BUFFER_INFO_FILENAME) {
        return std::nullopt;
    }
    InfoValue answer = Answer(command);
    if (m_frameNumber != number) {
        return std::nullopt;
    }
    return answer;
}

}  // namespace OvProducer
