#pragma once
/// Values of features that may be refused.

#include <atomic>
#include <memory>
#include <utility>
#include <variant>

#include "GenApi/Types.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

/// Why a feature can't be read: the exception, which nobody has thrown yet. A pointer, since it's
/// handed on through several functions that seldom have one.
class CRefusal {
public:
    // NOLINTBEGIN(google-explicit-constructor): either is a refusal
    CRefusal(CNotImplementedError error);
    CRefusal(CInvalidAccessError error);
    // NOLINTEND(google-explicit-constructor)
    ~CRefusal();
    CRefusal(CRefusal&&) noexcept = default;
    CRefusal& operator=(CRefusal&&) noexcept = default;
    CRefusal(const CRefusal&) = delete;
    CRefusal& operator=(const CRefusal&) = delete;

    const COvException& Get() const;
    [[noreturn]] void Raise() const;

private:
    using Error = std::variant<CNotImplementedError, CInvalidAccessError>;
    std::unique_ptr<const Error> m_error;
};

/// What came of a read: the value or a refusal. Programs ask for what a camera lacks, or hasn't at
/// present, as for any other feature, and to throw the answer takes ten times as long as to return
/// it.
template <class T>
class CReading {
public:
    // NOLINTBEGIN(google-explicit-constructor): a function returns the one or the other
    CReading(T value) : m_content(std::in_place_index<0>, std::move(value)) {}
    CReading(CRefusal refusal) : m_content(std::in_place_index<1>, std::move(refusal)) {}
    // NOLINTEND(google-explicit-constructor)

    /// Null if there is a value.
    const CRefusal* GetRefusal() const { return std::get_if<1>(&m_content); }
    /// Throws the refusal if there is no value.
    T& Value() {
        if (const CRefusal* const refusal = GetRefusal()) {
            refusal->Raise();
        }
        return *std::get_if<0>(&m_content);
    }

private:
    std::variant<T, CRefusal> m_content;
};

/// Remembers that a node has refused a read for nothing but its access mode. A node that the
/// description gets wrong refuses with that fault instead, and always does: whoever has refused
/// once without a fault has none.
class CSoundMark {
public:
    CSoundMark() = default;
    CSoundMark(const CSoundMark& other) : m_isSet(other.IsSet()) {}
    CSoundMark& operator=(const CSoundMark&) = delete;

    bool IsSet() const { return m_isSet.load(std::memory_order_relaxed); }
    /// To be called after a refusal without a fault.
    void NoteRefusal(GenApi_3_0_ORVANE::EAccessMode mode) {
        if (!GenApi_3_0_ORVANE::IsReadable(mode)) {
            m_isSet.store(true, std::memory_order_relaxed);
        }
    }
    /// Whether the access mode alone refuses a read, for what the camera has.
    bool IsRefused(GenApi_3_0_ORVANE::EAccessMode mode) const {
        return mode == GenApi_3_0_ORVANE::WO || (mode == GenApi_3_0_ORVANE::NA && IsSet());
    }

private:
    std::atomic<bool> m_isSet{false};
};

}  // namespace OVTLClass
