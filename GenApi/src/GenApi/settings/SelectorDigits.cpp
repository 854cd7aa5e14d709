// The digits of a counter that runs through all combinations of selectors. Each knows the
// values of one selector and what it had before.

#include "settings/SelectorDigits.h"

#include <string>

#include "Base/GCException.h"
#include "GenApi/INode.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// A selector that can't be read couldn't be put back.
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

/// Hides that enumerations have other names for their operations.
template <class Selector>
auto ValueOf(Selector& selector) {
    return selector.GetValue();
}

int64_t ValueOf(IEnumeration& selector) {
    return selector.GetIntValue();
}

/// For putting a value back: what the device held it may get back, whatever its limits are now.
template <class Selector, class Value>
void SetUnchecked(Selector& selector, Value value) {
    selector.SetValue(value, false);
}

void SetUnchecked(IEnumeration& selector, int64_t value) {
    selector.SetIntValue(value, false);
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

/// The original value is read only once: at a later first step the selector is in the middle of
/// the walk.
template <class Selector, class Value>
void CSelectorDigit<Selector, Value>::Begin() {
    RequireReadable(GetSelector());
    if (!m_OriginalValue) {
        m_OriginalValue = ValueOf(GetSelector());
    }
    RequireWritable(GetSelector());
}

template <class Selector, class Value>
void CSelectorDigit<Selector, Value>::Restore() {
    if (m_OriginalValue) {
        SetUnchecked(GetSelector(), *m_OriginalValue);
    }
}

template <class Selector, class Value>
gcstring CSelectorDigit<Selector, Value>::ToString() {
    return GetSelector().GetNode()->GetName() + "=" + SelectorText(GetSelector());
}

template <class Selector, class Value>
void CSelectorDigit<Selector, Value>::GetSelectorList(value_vector& list, bool incremental) {
    if (!incremental) {
        list.clear();
    }
    list.push_back(&GetSelector());
}

template class CSelectorDigit<IInteger, int64_t>;
template class CSelectorDigit<IBoolean, bool>;
template class CSelectorDigit<IEnumeration, int64_t>;

bool CIntSelectorDigit::SetFirst() {
    Begin();
    // Asked for at every start: the other selectors may decide on it.
    m_CurrentValue = GetSelector().GetMin();
    GetSelector().SetValue(m_CurrentValue, true);
    return true;
}

/// The limits are asked at each step: other selectors may change them. The current value is
/// remembered rather than read, since the device may not return what was written.
bool CIntSelectorDigit::SetNext(bool tick) {
    IInteger& selector = GetSelector();
    int64_t next = 0;
    // A maximum at the end of the range of numbers is common for a feature without a
    // limit.
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

bool CBoolSelectorDigit::SetFirst() {
    Begin();
    m_CurrentValue = false;
    GetSelector().SetValue(m_CurrentValue, true);
    return true;
}

/// True is the last value.
bool CBoolSelectorDigit::SetNext(bool tick) {
    if (m_CurrentValue) {
        return false;
    }
    if (tick) {
        GetSelector().SetValue(true, true);
        m_CurrentValue = true;
    }
    return true;
}

CEnumSelectorDigit::CEnumSelectorDigit(const Pointer& selector) : CSelectorDigit(selector) {
    GetSelector().GetEntries(m_Entries);
}

bool CEnumSelectorDigit::SetFirst() {
    Begin();
    return GoToEntryFrom(0, true);
}

bool CEnumSelectorDigit::SetNext(bool tick) {
    return GoToEntryFrom(m_Position + 1, tick);
}

/// Goes to the first available entry from a position on.
bool CEnumSelectorDigit::GoToEntryFrom(size_t position, bool tick) {
    for (; position < m_Entries.size(); ++position) {
        const CPointer<IEnumEntry> entry(m_Entries[position]);
        if (!IsAvailable(entry->GetAccessMode())) {
            continue;
        }
        if (tick) {
            GetSelector().SetIntValue(entry->GetValue());
            m_Position = position;
        }
        return true;
    }
    return false;
}

}  // namespace GenApi_3_0_ORVANE
