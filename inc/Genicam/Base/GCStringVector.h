#pragma once
/// Vectors that may cross a library boundary.

#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Base/Export.h"
#include "Base/GCException.h"
#include "Base/GCString.h"

namespace GenICam_3_0_ORVANE {

/// A vector behind a pointer, with the operations of std::vector under the same names. It has
/// iterators of its own, so that no standard container crosses the boundary.
/// @throws BadAllocException  from whatever makes it grow, if an allocation fails
template <class T>
class opaque_vector {
public:
    class const_iterator;

    /// Visits the elements in order. Any change of the vector ends its use.
    class iterator {
    public:
        /// @name As in an iterator of std::vector
        /// @{
        explicit iterator(T* element = nullptr) : m_pElement(element) {}
        T& operator*() const { return *m_pElement; }
        T* operator->() const { return m_pElement; }
        iterator& operator++() {
            ++m_pElement;
            return *this;
        }
        iterator operator++(int) { return iterator(m_pElement++); }
        iterator& operator--() {
            --m_pElement;
            return *this;
        }
        iterator operator+(ptrdiff_t count) const { return iterator(m_pElement + count); }
        ptrdiff_t operator-(const iterator& other) const { return m_pElement - other.m_pElement; }
        bool operator==(const iterator& other) const { return m_pElement == other.m_pElement; }
        bool operator!=(const iterator& other) const { return m_pElement != other.m_pElement; }
        /// @}

    private:
        friend class const_iterator;
        T* m_pElement;
    };

    /// The same for elements that can't be changed.
    class const_iterator {
    public:
        /// @name As in an iterator of std::vector
        /// @{
        explicit const_iterator(const T* element = nullptr) : m_pElement(element) {}
        // NOLINTNEXTLINE(google-explicit-constructor): as for standard iterators
        const_iterator(const iterator& other) : m_pElement(other.m_pElement) {}
        const T& operator*() const { return *m_pElement; }
        const T* operator->() const { return m_pElement; }
        const_iterator& operator++() {
            ++m_pElement;
            return *this;
        }
        const_iterator operator++(int) { return const_iterator(m_pElement++); }
        const_iterator& operator--() {
            --m_pElement;
            return *this;
        }
        const_iterator operator+(ptrdiff_t count) const {
            return const_iterator(m_pElement + count);
        }
        ptrdiff_t operator-(const const_iterator& other) const {
            return m_pElement - other.m_pElement;
        }
        bool operator==(const const_iterator& other) const {
            return m_pElement == other.m_pElement;
        }
        bool operator!=(const const_iterator& other) const {
            return m_pElement != other.m_pElement;
        }
        /// @}

    private:
        const T* m_pElement;
    };

    /// @name As in std::vector
    /// @{
    opaque_vector() : m_pElements(std::make_unique<std::vector<T>>()) {}
    opaque_vector(size_t count, const T& element) : opaque_vector() { assign(count, element); }
    opaque_vector(const opaque_vector& other) : opaque_vector() { assign(other); }
    virtual ~opaque_vector() = default;

    virtual void assign(size_t count, const T& element) {
        Allocating([&] { m_pElements->assign(count, element); });
    }
    virtual void clear() { m_pElements->clear(); }
    virtual iterator erase(iterator position) {
        const ptrdiff_t index = position - begin();
        m_pElements->erase(m_pElements->begin() + index);
        return begin() + index;
    }
    /// @throws OutOfRangeException beyond the last element
    virtual T& at(size_t index) { return const_cast<T&>(std::as_const(*this).at(index)); }
    /// @throws OutOfRangeException beyond the last element
    virtual const T& at(size_t index) const {
        if (index >= size()) {
            OUT_OF_RANGE_EXCEPTION("Index %zu is out of range", index);
        }
        return (*m_pElements)[index];
    }
    virtual T& back() { return m_pElements->back(); }
    virtual const T& back() const { return m_pElements->back(); }
    virtual iterator begin() { return iterator(m_pElements->data()); }
    virtual const_iterator begin() const { return const_iterator(m_pElements->data()); }
    virtual size_t capacity() const { return m_pElements->capacity(); }
    virtual iterator end() { return iterator(m_pElements->data() + size()); }
    virtual const_iterator end() const { return const_iterator(m_pElements->data() + size()); }
    virtual T& front() { return m_pElements->front(); }
    virtual const T& front() const { return m_pElements->front(); }
    virtual size_t max_size() const { return m_pElements->max_size(); }
    virtual size_t size() const { return m_pElements->size(); }
    virtual iterator insert(iterator position, const T& element) {
        const ptrdiff_t index = position - begin();
        insert(static_cast<size_t>(index), element);
        return begin() + index;
    }
    virtual bool empty() const { return m_pElements->empty(); }
    virtual void pop_back() { m_pElements->pop_back(); }
    virtual void push_back(const T& element) {
        Allocating([&] { m_pElements->push_back(element); });
    }
    virtual void resize(size_t count, const T& element = T()) {
        Allocating([&] { m_pElements->resize(count, element); });
    }
    virtual void reserve(size_t count) {
        Allocating([&] { m_pElements->reserve(count); });
    }
    /// Whether an element is equal to this one. The time grows with the length.
    virtual bool contains(const T& element) const {
        for (const T& candidate : *m_pElements) {
            if (candidate == element) {
                return true;
            }
        }
        return false;
    }
    virtual void assign(const opaque_vector& other) {
        Allocating([&] { *m_pElements = *other.m_pElements; });
    }
    /// Removes the element at a position, which isn't checked.
    virtual void erase(size_t index) {
        m_pElements->erase(m_pElements->begin() + static_cast<ptrdiff_t>(index));
    }
    /// Inserts before a position, which isn't checked.
    virtual void insert(size_t index, const T& element) {
        Allocating([&] {
            m_pElements->insert(m_pElements->begin() + static_cast<ptrdiff_t>(index), element);
        });
    }

    /// The same as at.
    T& operator[](size_t index) { return at(index); }
    /// The same as at.
    const T& operator[](size_t index) const { return at(index); }
    opaque_vector& operator=(const opaque_vector& other) {
        if (this != &other) {
            assign(other);
        }
        return *this;
    }
    /// @}

private:
    template <class Change>
    static void Allocating(const Change& change) {
        try {
            change();
        } catch (const std::bad_alloc&) {
            ThrowBadAlloc(__FILE__, __LINE__);
        } catch (const std::length_error&) {
            // More than any memory could hold.
            ThrowBadAlloc(__FILE__, __LINE__);
        }
    }

    std::unique_ptr<std::vector<T>> m_pElements;
};

/// A vector of texts.
class OV_ENGINE_API gcstring_vector : public opaque_vector<gcstring> {
public:
    using opaque_vector::opaque_vector;
    gcstring_vector() = default;
    gcstring_vector(const gcstring_vector&) = default;
    gcstring_vector& operator=(const gcstring_vector&) = default;
    ~gcstring_vector() override;
};

}  // namespace GenICam_3_0_ORVANE
