// Slots are written under the lock and read without it. A reader looks at the generation
// before and after the record: a slot that changed in between isn't that of its handle.

#include "camera/NodeTable.h"

#include "TLClassSupport/OvException.h"

using namespace OVTLClass;

namespace {

constexpr unsigned kIndexBits = 32;

uint32_t IndexOf(OV_NODE_HANDLE handle) {
    return static_cast<uint32_t>(handle);
}

uint32_t GenerationOf(OV_NODE_HANDLE handle) {
    return static_cast<uint32_t>(handle >> kIndexBits);
}

bool IsInUse(uint32_t generation) {
    return (generation & 1U) != 0;
}

}  // namespace

CNodeTable& CNodeTable::GetInstance() {
    static CNodeTable table;
    return table;
}

CNodeTable::Slot* CNodeTable::FindSlot(uint32_t index) const noexcept {
    const uint32_t segment = index / kSegmentSize;
    Segment* const slots =
        segment < kSegments ? m_found[segment].load(std::memory_order_acquire) : nullptr;
    return slots == nullptr ? nullptr : &(*slots)[index % kSegmentSize];
}

void CNodeTable::AddSegment() {
    const size_t number = m_segments.size();
    if (number == kSegments) {
        OV_RAISE(CUnexpectedError, "Too many node handles");
    }
    // All memory is taken before anything changes.
    m_free.reserve((number + 1) * kSegmentSize);
    m_segments.reserve(number + 1);
    m_segments.push_back(std::make_unique<Segment>());
    m_found[number].store(m_segments.back().get(), std::memory_order_release);
    // The lowest first.
    const auto begin = static_cast<uint32_t>(number * kSegmentSize);
    for (uint32_t index = begin + kSegmentSize; index > begin; --index) {
        m_free.push_back(index - 1);
    }
}

OV_NODE_HANDLE CNodeTable::Add(const CNodeRecord& record) {
    const CAutoLock lock(m_lock);
    if (m_free.empty()) {
        AddSegment();
    }
    const uint32_t index = m_free.back();
    m_free.pop_back();
    Slot& slot = *FindSlot(index);
    slot.record.store(&record, std::memory_order_release);
    const uint32_t generation = slot.generation.fetch_add(1, std::memory_order_acq_rel) + 1;
    return (static_cast<OV_NODE_HANDLE>(generation) << kIndexBits) | index;
}

void CNodeTable::Remove(OV_NODE_HANDLE handle) noexcept {
    const CAutoLock lock(m_lock);
    FindSlot(IndexOf(handle))->generation.fetch_add(1, std::memory_order_acq_rel);
    m_free.push_back(IndexOf(handle));
}

const CNodeRecord* CNodeTable::Find(OV_NODE_HANDLE handle) const noexcept {
    const uint32_t generation = GenerationOf(handle);
    const Slot* const slot = IsInUse(generation) ? FindSlot(IndexOf(handle)) : nullptr;
    if (slot == nullptr || slot->generation.load(std::memory_order_acquire) != generation) {
        return nullptr;
    }
    const CNodeRecord* const record = slot->record.load(std::memory_order_acquire);
    return slot->generation.load(std::memory_order_relaxed) == generation ? record : nullptr;
}
