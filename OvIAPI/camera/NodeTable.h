#pragma once
/// The handles of nodes: numbers that are checked at each call.

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "OvINodes.h"
#include "TLClassSupport/OvLock.h"

struct CNodeRecord;

/// A handle is the number of a slot and how often the slot was used before. Finding a record
/// takes no lock, because programs read features by the thousand; a number that was never a
/// handle, or no longer is one, finds nothing. Slots aren't freed, so that such a number can be
/// looked at as well.
class CNodeTable {
public:
    static CNodeTable& GetInstance();
    CNodeTable(const CNodeTable&) = delete;
    CNodeTable& operator=(const CNodeTable&) = delete;

    /// The record must outlive its handle, and every call that has found it.
    OV_NODE_HANDLE Add(const CNodeRecord& record);
    /// The number isn't a handle afterwards.
    void Remove(OV_NODE_HANDLE handle) noexcept;
    /// @return null for a number that isn't a handle
    const CNodeRecord* Find(OV_NODE_HANDLE handle) const noexcept;

private:
    /// An odd generation is that of a slot in use.
    struct Slot {
        std::atomic<uint32_t> generation{0};
        std::atomic<const CNodeRecord*> record{nullptr};
    };
    static constexpr uint32_t kSegmentSize = 4096;
    static constexpr uint32_t kSegments = 1024;
    using Segment = std::array<Slot, kSegmentSize>;

    CNodeTable() = default;
    Slot* FindSlot(uint32_t index) const noexcept;
    void AddSegment();

    /// Guards all but the finding.
    OVTLClass::CLock m_lock{OVTLClass::LockRank::NodeTable};
    std::array<std::atomic<Segment*>, kSegments> m_found{};
    std::vector<std::unique_ptr<Segment>> m_segments;
    /// Numbers of slots that are free, the next one at the end. Has room for all slots.
    std::vector<uint32_t> m_free;
};
