#pragma once
/// The wheels that a walk through the combinations of selectors is made of.

#include <optional>

#include "GenApi/IBoolean.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IInteger.h"
#include "GenApi/Pointer.h"
#include "GenApi/SelectorSet.h"

namespace GenApi_3_0_ORVANE {

/// How the value of a selector is named: "3", "Default".
gcstring SelectorText(IInteger& selector);
gcstring SelectorText(IEnumeration& selector);
gcstring SelectorText(IBoolean& selector);

/// What all digits share: they remember the value that the selector had, put it back, and name
/// the present one.
template <class Selector, class Value>
class CSelectorDigit : public ISelectorDigit {
public:
    using Pointer = CPointer<Selector, IBase>;

    explicit CSelectorDigit(const Pointer& selector) : m_ptrSelector(selector) {}

    /// Without checks: what a device held, it may get back.
    void Restore() override;
    gcstring ToString() override;
    void GetSelectorList(value_vector& list, bool incremental = false) override;

protected:
    Selector& GetSelector() { return *m_ptrSelector; }
    /// Remembers the value at the first call.
    /// @throws AccessException for a selector that can't be read or written now
    void Begin();

private:
    Pointer m_ptrSelector;
    std::optional<Value> m_OriginalValue;
};

/// An integer from its minimum to its maximum in steps of its increment.
class CIntSelectorDigit : public CSelectorDigit<IInteger, int64_t> {
public:
    using CSelectorDigit::CSelectorDigit;

    bool SetFirst() override;
    bool SetNext(bool tick = true) override;

private:
    int64_t m_CurrentValue = 0;
};

/// A truth value: false, then true.
class CBoolSelectorDigit : public CSelectorDigit<IBoolean, bool> {
public:
    using CSelectorDigit::CSelectorDigit;

    bool SetFirst() override;
    bool SetNext(bool tick = true) override;

private:
    bool m_CurrentValue = false;
};

/// An enumeration that steps through the entries that are available at the time of each step,
/// which may depend on other selectors.
class CEnumSelectorDigit : public CSelectorDigit<IEnumeration, int64_t> {
public:
    explicit CEnumSelectorDigit(const Pointer& selector);

    bool SetFirst() override;
    bool SetNext(bool tick = true) override;

private:
    bool GoToEntryFrom(size_t position, bool tick);

    node_vector m_Entries;
    size_t m_Position = 0;
};

}  // namespace GenApi_3_0_ORVANE
