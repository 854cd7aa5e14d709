#pragma once
/// How a feature is named to the control of its module.

#include <cstddef>
#include <string>

namespace OVTLClass {

/// A name, and for a feature that has an identifier also its number among these: by the number, a
/// control finds a node again without a search. Lives no longer than the text that it is made of.
class CFeatureName {
public:
    /// Numbers are below.
    static constexpr size_t kNumbers = 256;

    // NOLINTBEGIN(google-explicit-constructor): a text is a name
    CFeatureName(const char* name) : m_name(name) {}
    CFeatureName(const std::string& name) : m_name(name.c_str()) {}
    // NOLINTEND(google-explicit-constructor)
    CFeatureName(const char* name, size_t number) : m_name(name), m_number(number) {}

    const char* Get() const { return m_name; }
    bool HasNumber() const { return m_number < kNumbers; }
    size_t GetNumber() const { return m_number; }

private:
    const char* m_name;
    size_t m_number = kNumbers;
};

}  // namespace OVTLClass
