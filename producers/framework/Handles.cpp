#include "framework/Handles.h"

#include <atomic>
#include <mutex>

namespace OvProducer {
namespace {

// Handles count for the whole process, so that a handle from before `GCCloseLib` is still
// invalid after the next `GCInitLib`.
void* NextHandle() {
    static std::atomic<uintptr_t> next{0x10000};
    return reinterpret_cast<void*>(next.fetch_add(HandleTable::kStep));
}

}  // namespace

void* HandleTable::Add(const std::shared_ptr<Object>& object) {
    object->m_handle = NextHandle();
    const std::lock_guard lock(m_mutex);
    m_objects.emplace(object->m_handle, object);
    return object->m_handle;
}

void HandleTable::Remove(const void* handle) {
    std::shared_ptr<Object> last;
    const std::lock_guard lock(m_mutex);
    const auto found = m_objects.find(handle);
    if (found != m_objects.end()) {
        // Destroyed after the lock was released: destructors may take long, or use the table.
        last = std::move(found->second);
        m_objects.erase(found);
    }
}

std::shared_ptr<Object> HandleTable::Find(const void* handle) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_objects.find(handle);
    return found == m_objects.end() ? nullptr : found->second;
}

}  // namespace OvProducer
