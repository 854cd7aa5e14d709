#include "SelectorDigits.h"

#include <string>

#include "Base/GCException.h"
#include "GenApi/INode.h"

namespace GenApi_3_0_ORVANE {

namespace {

void RequireReadable(IValue& selector) {
    if (!IsReadable(selector.GetAccessMode())) {
        ACCESS_EXCEPTION("Selector '%s' is not readable", selector.GetNode()->GetName().c_str());
    }
}

void RequireWritable(IValue& selector) {
    if (!IsWritable(selector.GetAccessMode())) {
        ACCESS_EXCEPTION("Selector '%s' is not writable", selector.GetNode()->GetName().c_str());
    }
}

template <class Selector>
gcstring NameAndValue(Selector& selector) {
    return selector.GetNode()->GetName() + "=" + SelectorText(selector);
}

void ListSelector(IValue& selector, value_vector& list, bool incremental) {
    if (!incremental) {
        list.clear();
    }
    list.push_back(&selector);
}

}  // namespace

gcstring SelectorText(IInteger& selector) {
    return std::to_string(selector.GetValue()).c_str();
}

gcstring SelectorText(IEnumeration& selector) {
    return selector.ToString();
}

gcstring SelectorText(IBoolean& selector) {
    return selector.ToString();
}

bool CIntSelectorDigit::SetFirst() {
    IInteger& selector = *m_ptrIntSelector;
    RequireReadable(selector);
    if (m_IsFirstUse) {
        m_OriginalValue = selector.GetValue();
        m_IsFirstUse = false;
    }
    RequireWritable(selector);
    m_CurrentValue = selector.GetMin();
    selector.SetValue(m_CurrentValue, true);
    return true;
}

bool CIntSelectorDigit::SetNext(bool tick) {
    IInteger& selector = *m_ptrIntSelector;
    int64_t next = 0;
    const bool isTooLarge = __builtin_add_overflow(m_CurrentValue, selector.GetInc(), &next);
    if (isTooLarge || next > selector.GetMax()) {
        return false;
    }
    if (tick) {
        selector.SetValue(next, true);
        m_CurrentValue = next;
    }
    return true;
}

/// Without checks: what a device held, it may get back.
void CIntSelectorDigit::Restore() {
    if (!m_IsFirstUse) {
        m_ptrIntSelector->SetValue(m_OriginalValue, false);
    }
}

gcstring CIntSelectorDigit::ToString() {
    return NameAndValue(*m_ptrIntSelector);
}

void CIntSelectorDigit::GetSelectorList(value_vector& list, bool incremental) {
    ListSelector(*m_ptrIntSelector, list, incremental);
}

bool CBoolSelectorDigit::SetFirst() {
    IBoolean& selector = *m_ptrBoolSelector;
    RequireReadable(selector);
    if (!m_OriginalValue) {
        m_OriginalValue = selector.GetValue();
    }
    RequireWritable(selector);
    m_CurrentValue = false;
    selector.SetValue(m_CurrentValue, true);
    return true;
}

bool CBoolSelectorDigit::SetNext(bool tick) {
    if (m_CurrentValue) {
        return false;
    }
    if (tick) {
        m_ptrBoolSelector->SetValue(true, true);
        m_CurrentValue = true;
    }
    return true;
}

void CBoolSelectorDigit::Restore() {
    if (m_OriginalValue) {
        m_ptrBoolSelector->SetValue(*m_OriginalValue, false);
    }
}

gcstring CBoolSelectorDigit::ToString() {
    return NameAndValue(*m_ptrBoolSelector);
}

void CBoolSelectorDigit::GetSelectorList(value_vector& list, bool incremental) {
    ListSelector(*m_ptrBoolSelector, list, incremental);
}

CEnumSelectorDigit::CEnumSelectorDigit(const Pointer& selector) : m_ptrEnumSelector(selector) {
    m_ptrEnumSelector->GetEntries(m_Entries);
}

bool CEnumSelectorDigit::SetFirst() {
    IEnumeration& selector = *m_ptrEnumSelector;
    RequireReadable(selector);
    if (!m_OriginalValue) {
        m_OriginalValue = selector.GetIntValue();
    }
    RequireWritable(selector);
    return GoToEntryFrom(0, true);
}

bool CEnumSelectorDigit::SetNext(bool tick) {
    return GoToEntryFrom(m_Position + 1, tick);
}

/// Goes to the first available entry from a place on.
bool CEnumSelectorDigit::GoToEntryFrom(size_t position, bool tick) {
    for (; position < m_Entries.size(); ++position) {
        const CPointer<IEnumEntry> entry(m_Entries[position]);
        if (!IsAvailable(entry->GetAccessMode())) {
            continue;
        }
        if (tick) {
            m_ptrEnumSelector->SetIntValue(entry->GetValue());
            m_Position = position;
        }
        return true;
    }
    return false;
}

void CEnumSelectorDigit::Restore() {
    if (m_OriginalValue) {
        m_ptrEnumSelector->SetIntValue(*m_OriginalValue, false);
    }
}

gcstring CEnumSelectorDigit::ToString() {
    return NameAndValue(*m_ptrEnumSelector);
}

void CEnumSelectorDigit::GetSelectorList(value_vector& list, bool incremental) {
    ListSelector(*m_ptrEnumSelector, list, incremental);
}

}  // namespace GenApi_3_0_ORVANE
