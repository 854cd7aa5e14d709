#pragma once
/// Lists of values that share their elements when they are copied.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace GenICam_3_0_ORVANE {

/// A list that grows. Copies share the same values, which makes returning one cheap. One thread
/// at a time.
template <class T>
class autovector {
public:
    /// Makes an empty list.
    autovector() : m_pValues(std::make_shared<std::vector<T>>()) {}

    /// Returns a value by its position, which isn't checked.
    T& operator[](size_t index) { return (*m_pValues)[index]; }
    /// Returns a value by its position, which isn't checked.
    const T& operator[](size_t index) const { return (*m_pValues)[index]; }
    /// Returns the number of values.
    size_t size() const { return m_pValues->size(); }
    /// Appends a value, for all copies.
    void push_back(T value) { m_pValues->push_back(value); }
    /// Makes room for that many values.
    void reserve(size_t count) { m_pValues->reserve(count); }

private:
    std::shared_ptr<std::vector<T>> m_pValues;
};

/// A list of floats.
using double_autovector_t = autovector<double>;
/// A list of integers.
using int64_autovector_t = autovector<int64_t>;

}  // namespace GenICam_3_0_ORVANE
