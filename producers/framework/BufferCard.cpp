#include "framework/BufferCard.h"

#include <array>
#include <deque>
#include <mutex>
#include <set>
#include <vector>

#include "framework/Handles.h"

namespace OvProducer {
namespace {

/// Cards in use and cards that wait for a use, and the few texts on them.
class CardStore {
public:
    /// Each card in use keeps the store, which so outlives the last one.
    static const std::shared_ptr<CardStore>& Instance() {
        static const auto store = std::make_shared<CardStore>();
        return store;
    }

    BufferCard* Take() {
        const std::lock_guard lock(m_mutex);
        if (m_free.empty()) {
            return &m_cards.emplace_back();
        }
        BufferCard* const card = m_free.back();
        m_free.pop_back();
        return card;
    }
    void Give(BufferCard* card) {
        const std::lock_guard lock(m_mutex);
        m_free.push_back(card);
    }
    const std::string* Keep(const std::string& text) {
        const std::lock_guard lock(m_mutex);
        return &*m_texts.insert(text).first;
    }

private:
    std::mutex m_mutex;
    std::deque<BufferCard> m_cards;  // whose items stay where they are
    std::vector<BufferCard*> m_free;
    std::set<std::string> m_texts;
};

// Handles count up, so that those of one stream's buffers fall on places of
// their own. A card that loses its place to a later one is still found in the
// stream's list.
constexpr size_t kPlaces = 1024;
std::array<std::atomic<const BufferCard*>, kPlaces> g_places{};

std::atomic<const BufferCard*>& PlaceOf(const void* handle) {
    return g_places[reinterpret_cast<uintptr_t>(handle) / HandleTable::kStep % kPlaces];
}

}  // namespace

std::shared_ptr<BufferCard> BufferCard::Make() {
    const std::shared_ptr<CardStore>& store = CardStore::Instance();
    return {store->Take(), [store](BufferCard* card) { store->Give(card); }};
}

const BufferCard* BufferCard::Find(const void* handle) {
    return PlaceOf(handle);
}

void BufferCard::SetBuffer(std::byte* base, size_t size, void* userPointer,
                           const std::string& tlType) {
    Hide();
    SetState(BufferState::Idle);
    SetNewData(false);
    Set(m_handle, static_cast<const void*>(nullptr));
    Set(m_base, static_cast<const void*>(base));
    Set(m_size, size);
    Set(m_userPointer, static_cast<const void*>(userPointer));
    Set(m_tlType, CardStore::Instance()->Keep(tlType));
}

void BufferCard::Publish(const void* stream, const void* handle) {
    Set(m_stream, stream);
    Set(m_handle, handle);
    PlaceOf(handle).store(this);
}

void BufferCard::Show(const FrameInfo& frame) {
    Hide();
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
    Set(m_showing, ++m_showings);
}

}  // namespace OvProducer
