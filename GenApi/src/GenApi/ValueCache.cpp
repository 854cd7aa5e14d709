#include "GenApi/impl/ValueCache.h"

#include <algorithm>

#include "Base/GCException.h"

namespace GenApi_3_0_ORVANE {

void CValueCache::InvalidateValue(int64_t address) {
    const AutoLock lock(m_Lock);
    const auto found = m_Entries.find(address);
    if (found != m_Entries.end()) {
        found->second.valid = false;
    }
}

void CValueCache::InvalidateAll() {
    const AutoLock lock(m_Lock);
    for (auto& [address, entry] : m_Entries) {
        entry.valid = false;
    }
}

bool CValueCache::IsValueValid(int64_t address, int64_t size) {
    const AutoLock lock(m_Lock);
    const auto found = m_Entries.find(address);
    return found != m_Entries.end() && found->second.valid &&
           found->second.bytes.size() == static_cast<size_t>(size);
}

void CValueCache::SetValue(int64_t address, int64_t size, const uint8_t* bytes) {
    const AutoLock lock(m_Lock);
    const auto [entry, isNew] = m_Entries.try_emplace(address);
    if (isNew) {
        entry->second.bytes.assign(bytes, bytes + size);
    } else {
        std::copy_n(bytes, std::min(static_cast<size_t>(size), entry->second.bytes.size()),
                    entry->second.bytes.data());
    }
    entry->second.valid = true;
}

void CValueCache::GetValue(int64_t address, int64_t size, uint8_t* bytes) {
    const AutoLock lock(m_Lock);
    const auto found = m_Entries.find(address);
    if (found == m_Entries.end()) {
        RUNTIME_EXCEPTION("CValueCache::GetValue() - value not implemented");
    }
    std::copy_n(found->second.bytes.data(),
                std::min(static_cast<size_t>(size), found->second.bytes.size()), bytes);
}

bool CValueCache::TryGetValue(int64_t address, int64_t entrySize, int64_t size, uint8_t* bytes) {
    const AutoLock lock(m_Lock);
    const auto found = m_Entries.find(address);
    if (found == m_Entries.end() || !found->second.valid ||
        found->second.bytes.size() != static_cast<size_t>(entrySize)) {
        return false;
    }
    std::copy_n(found->second.bytes.data(), std::min(size, entrySize), bytes);
    return true;
}

}  // namespace GenApi_3_0_ORVANE
