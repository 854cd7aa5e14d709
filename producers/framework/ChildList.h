#pragma once
/// The children of a module: those of the last update, and those that are open. An open
/// child may be missing in the last update.

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "framework/Failure.h"

namespace OvProducer {

/// `Backend` has the ID in `Facts().id`; `Child` is the open module that is made for it.
template <typename Backend, typename Child>
class ChildList {
public:
    using Backends = std::vector<std::shared_ptr<Backend>>;

    /// Replaces the list. Returns true if the set of IDs has changed.
    bool Update(Backends found) {
        const std::set<std::string> after = IdsOf(found);
        const std::lock_guard lock(m_mutex);
        const bool changed = IdsOf(m_listed) != after;
        m_listed = std::move(found);
        m_selected = std::clamp<int64_t>(m_selected, 0, std::max<int64_t>(Last(), 0));
        return changed;
    }

    size_t Count() const {
        const std::lock_guard lock(m_mutex);
        return m_listed.size();
    }

    /// Fails with -1017 beyond the end.
    std::shared_ptr<Backend> At(size_t index) const {
        const std::lock_guard lock(m_mutex);
        if (index >= m_listed.size()) {
            throw Failure(GenTL::GC_ERR_INVALID_INDEX,
                          "No list entry has index " + std::to_string(index));
        }
        return m_listed[index];
    }

    /// Null if the list has no such ID.
    std::shared_ptr<Backend> Find(const std::string& id) const {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find_if(m_listed.begin(), m_listed.end(),
                                        [&](const auto& b) { return b->Facts().id == id; });
        return found == m_listed.end() ? nullptr : *found;
    }

    /// Opens the child by `make`, which may take its time: the list can be used meanwhile. Fails
    /// with -1004 if it is open already, without calling `make`.
    template <typename Make>
    std::shared_ptr<Child> Open(const std::string& id, Make make) {
        Reserve(id);
        std::shared_ptr<Child> child;
        try {
            child = make();
        } catch (...) {
            const std::lock_guard lock(m_mutex);
            m_open.erase(id);
            throw;
        }
        if (!Enter(id, child)) {
            child->Close();
            throw Failure(GenTL::GC_ERR_INVALID_HANDLE, "The module was closed meanwhile");
        }
        return child;
    }

    /// Removes the child from the open ones. Fails with -1006 if it isn't open.
    void Remove(const std::shared_ptr<Child>& child) {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find_if(m_open.begin(), m_open.end(),
                                        [&](const auto& entry) { return entry.second == child; });
        if (found == m_open.end()) {
            throw Failure(GenTL::GC_ERR_INVALID_HANDLE, "The module is closed");
        }
        m_open.erase(found);
    }

    /// Returns all open children and removes them from the open ones.
    std::vector<std::shared_ptr<Child>> TakeOpen() {
        const std::lock_guard lock(m_mutex);
        std::vector<std::shared_ptr<Child>> children;
        for (const auto& [id, child] : m_open) {
            if (child) {
                children.push_back(child);
            }
        }
        m_open.clear();
        return children;
    }

    // The list as a description's selector sees it.

    /// -1 if the list is empty, so that a reader that counts from 0 finds none.
    int64_t LastIndex() const {
        const std::lock_guard lock(m_mutex);
        return Last();
    }

    int64_t Selected() const {
        const std::lock_guard lock(m_mutex);
        return m_selected;
    }

    void Select(int64_t index) {
        const std::lock_guard lock(m_mutex);
        if (index < 0 || index > Last()) {
            throw Failure(GenTL::GC_ERR_INVALID_VALUE, "The selector is out of range");
        }
        m_selected = index;
    }

    std::shared_ptr<Backend> SelectedBackend() const { return At(static_cast<size_t>(Selected())); }

private:
    void Reserve(const std::string& id) {
        const std::lock_guard lock(m_mutex);
        if (!m_open.try_emplace(id).second) {
            throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "'" + id + "' is open already");
        }
    }

    /// False if the open ones were taken away since the ID was reserved.
    bool Enter(const std::string& id, const std::shared_ptr<Child>& child) {
        const std::lock_guard lock(m_mutex);
        const auto reserved = m_open.find(id);
        if (reserved == m_open.end()) {
            return false;
        }
        reserved->second = child;
        return true;
    }

    static std::set<std::string> IdsOf(const Backends& backends) {
        std::set<std::string> ids;
        for (const auto& backend : backends) {
            ids.insert(backend->Facts().id);
        }
        return ids;
    }

    int64_t Last() const { return static_cast<int64_t>(m_listed.size()) - 1; }

    mutable std::mutex m_mutex;
    Backends m_listed;
    std::map<std::string, std::shared_ptr<Child>> m_open;  // null while one is being opened
    int64_t m_selected = 0;
};

}  // namespace OvProducer
