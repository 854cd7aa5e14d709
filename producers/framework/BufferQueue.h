#pragma once
/// A queue of buffers that allocates nothing after it has once held all of them.

#include <algorithm>
#include <memory>
#include <vector>

#include "framework/Buffer.h"

namespace OvProducer {

/// First in, first out. The items are contiguous. The room before the first item is
/// reclaimed when it is more than half of the memory.
class BufferQueue {
public:
    bool empty() const { return size() == 0; }
    size_t size() const { return m_items.size() - m_first; }

    void Push(const std::shared_ptr<Buffer>& buffer) {
        if (m_items.size() == m_items.capacity() && m_first > size()) {
            m_items.erase(m_items.begin(), First());
            m_first = 0;
        }
        m_items.push_back(buffer);
    }
    std::shared_ptr<Buffer> Pop() {
        std::shared_ptr<Buffer> first = std::move(m_items[m_first]);
        ++m_first;
        if (empty()) {
            Clear();
        }
        return first;
    }
    void Erase(const std::shared_ptr<Buffer>& buffer) {
        const auto found = std::find(First(), m_items.cend(), buffer);
        if (found == m_items.cend()) {
            return;
        }
        if (found == First()) {
            Pop();
        } else {
            m_items.erase(found);
        }
    }
    void Clear() {
        m_items.clear();
        m_first = 0;
    }
    /// Removes all items in order and passes them to `take`, which must not add to the
    /// queue.
    template <typename Take>
    void Drain(const Take& take) {
        while (!empty()) {
            take(Pop());
        }
    }

private:
    using Items = std::vector<std::shared_ptr<Buffer>>;

    Items::const_iterator First() const {
        return m_items.begin() + static_cast<ptrdiff_t>(m_first);
    }

    Items m_items;
    size_t m_first = 0;
};

}  // namespace OvProducer
