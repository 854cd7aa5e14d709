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

/// An integer from its minimum to its maximum in steps of its increment.
class CIntSelectorDigit : public ISelectorDigit {
public:
    using Pointer = CPointer<IInteger, IBase>;

    explicit CIntSelectorDigit(const Pointer& selector) : m_ptrIntSelector(selector) {}

    bool SetFirst() override;
    bool SetNext(bool tick = true) override;
    void Restore() override;
    gcstring ToString() override;
    void GetSelectorList(value_vector& list, bool incremental = false) override;

private:
    Pointer m_ptrIntSelector;
    int64_t m_OriginalValue = 0;
    int64_t m_CurrentValue = 0;
    bool m_IsFirstUse = true;
};

/// A truth value: false, then true.
class CBoolSelectorDigit : public ISelectorDigit {
public:
    using Pointer = CPointer<IBoolean, IBase>;

    explicit CBoolSelectorDigit(const Pointer& selector) : m_ptrBoolSelector(selector) {}

    bool SetFirst() override;
    bool SetNext(bool tick = true) override;
    void Restore() override;
    gcstring ToString() override;
    void GetSelectorList(value_vector& list, bool incremental = false) override;

private:
    Pointer m_ptrBoolSelector;
    std::optional<bool> m_OriginalValue;
    bool m_CurrentValue = false;
};

/// An enumeration through the entries that are available at the time of each
/// step: other selectors may decide about that.
class CEnumSelectorDigit : public ISelectorDigit {
public:
    using Pointer = CPointer<IEnumeration, IBase>;

    explicit CEnumSelectorDigit(const Pointer& selector);

    bool SetFirst() override;
    bool SetNext(bool tick = true) override;
    void Restore() override;
    gcstring ToString() override;
    void GetSelectorList(value_vector& list, bool incremental = false) override;

private:
    bool GoToEntryFrom(size_t position, bool tick);

    Pointer m_ptrEnumSelector;
    std::optional<int64_t> m_OriginalValue;
    node_vector m_Entries;
    size_t m_Position = 0;
};

}  // namespace GenApi_3_0_ORVANE
