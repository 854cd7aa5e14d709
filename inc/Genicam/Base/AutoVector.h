#pragma once
/// Lists of values that copies share.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace GenICam_3_0_ORVANE {

/// A growable list; copies share the same values.
template <class T>
class autovector {
public:
    autovector() : m_pValues(std::make_shared<std::vector<T>>()) {}

    T& operator[](size_t index) { return (*m_pValues)[index]; }
    const T& operator[](size_t index) const { return (*m_pValues)[index]; }
    size_t size() const { return m_pValues->size(); }
    void push_back(T value) { m_pValues->push_back(value); }
    void reserve(size_t count) { m_pValues->reserve(count); }

private:
    std::shared_ptr<std::vector<T>> m_pValues;
};

using double_autovector_t = autovector<double>;
using int64_autovector_t = autovector<int64_t>;

}  // namespace GenICam_3_0_ORVANE
