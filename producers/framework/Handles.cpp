#include "framework/Handles.h"

#include <bit>
#include <utility>

#include "Base/EachFrame.h"

namespace OvProducer {
namespace {

// The digits of a handle, from the lowest: the step, the index of its place, and a number that
// never comes again. Forty bits of numbers last longer than any process.
constexpr unsigned kIndexBits = 20;

// Counts for the whole process, so that a handle from before `GCCloseLib` is still invalid
// after the next `GCInitLib`.
void* NextHandle(size_t index) {
    static_assert(sizeof(uintptr_t) == sizeof(uint64_t));
    static std::atomic<uintptr_t> next{1};
    const uintptr_t number = next.fetch_add(1, std::memory_order_relaxed);
    return reinterpret_cast<void*>(((number << kIndexBits) | index) * HandleTable::kStep);
}

size_t IndexOf(const void* handle) {
    constexpr size_t kIndices = size_t{1} << kIndexBits;
    return reinterpret_cast<uintptr_t>(handle) / HandleTable::kStep % kIndices;
}

}  // namespace

HandleTable::Place* HandleTable::PlaceAt(size_t index) const {
    static_assert(kPlaces <= size_t{1} << kIndexBits);
    if (index >= kPlaces) {
        return nullptr;
    }
    // The blocks before it have 1, 3, 7 and so on times the places of the first one.
    const size_t number = index / kFirstBlock + 1;
    const size_t first = kFirstBlock * (std::bit_floor(number) - 1);
    const auto block = static_cast<size_t>(std::bit_width(number / 2));
    Place* const places = m_blocks[block].load(std::memory_order_acquire);
    return places == nullptr ? nullptr : places + (index - first);
}

HandleTable::Place* HandleTable::PlaceOf(const void* handle) const {
    return handle == nullptr ? nullptr : PlaceAt(IndexOf(handle));
}

void HandleTable::AddBlock() {
    const size_t block = m_owned.size();
    if (block == kBlocks) {
        throw Failure(GenTL::GC_ERR_OUT_OF_MEMORY, "There are too many handles");
    }
    const size_t size = kFirstBlock << block;
    // Later, when a handle is removed, nothing may fail.
    m_free.reserve(m_used + size);
    m_owned.push_back(std::make_unique<Place[]>(size));
    m_blocks[block].store(m_owned.back().get(), std::memory_order_release);
}

size_t HandleTable::TakeFree() {
    if (!m_free.empty()) {
        const size_t index = m_free.back();
        m_free.pop_back();
        return index;
    }
    if (PlaceAt(m_used) == nullptr) {
        AddBlock();
    }
    return m_used++;
}

void* HandleTable::Add(const std::shared_ptr<Object>& object, std::shared_ptr<const void> owner) {
    const std::lock_guard lock(m_mutex);
    const size_t index = TakeFree();
    Place& place = *PlaceAt(index);
    object->m_handle = NextHandle(index);
    object->m_owner = std::move(owner);
    const std::lock_guard placeLock(place.mutex);
    place.handle = object->m_handle;
    place.object = object;
    return object->m_handle;
}

std::shared_ptr<Object> HandleTable::Vacate(Place& place, size_t index) {
    m_free.push_back(index);
    place.handle = nullptr;
    return std::move(place.object);
}

void HandleTable::Remove(const void* handle) {
    Place* const place = PlaceOf(handle);
    if (place == nullptr) {
        return;
    }
    // Destroyed after the locks were released: destructors may take long, or use the table.
    std::shared_ptr<Object> last;
    const std::lock_guard lock(m_mutex);
    const std::lock_guard placeLock(place->mutex);
    if (place->handle == handle) {
        last = Vacate(*place, IndexOf(handle));
    }
}

void HandleTable::RemoveAllOf(const void* owner) {
    for (size_t index = 0;; ++index) {
        std::shared_ptr<Object> last;
        const std::lock_guard lock(m_mutex);
        if (index == m_used) {
            return;
        }
        Place& place = *PlaceAt(index);
        const std::lock_guard placeLock(place.mutex);
        if (place.object && place.object->m_owner.get() == owner) {
            last = Vacate(place, index);
        }
    }
}

OV_EACH_FRAME std::shared_ptr<Object> HandleTable::Find(const void* handle) const {
    Place* const place = PlaceOf(handle);
    if (place == nullptr) {
        return nullptr;
    }
    const std::lock_guard lock(place->mutex);
    return place->handle == handle ? place->object : nullptr;
}

}  // namespace OvProducer
