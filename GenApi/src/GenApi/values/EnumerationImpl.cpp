// Choices among entries, kept as a number by another node or by this one.

#include "values/EnumerationImpl.h"

#include <algorithm>
#include <string_view>

#include "core/NodeExceptions.h"
#include "values/EnumEntryImpl.h"

namespace GenApi_3_0_ORVANE {

void CEnumerationImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Value_ID:
            m_Value = property.Integer();
            break;
        case CPropertyID::pValue_ID:
            m_Value = LinkChild(property, ReadRole | WriteRole | ValueRole);
            break;
        case CPropertyID::pEnumEntry_ID:
            m_Entries.push_back(LinkChild(property, NoRole));
            break;
        default:
            CNodeImpl::SetProperty(property);
    }
}

namespace {

using Entries = std::vector<CEnumEntryImpl*>;

/// Where two entries share a text or a number the first one counts.
template <class KeyOf>
void SortBy(Entries& entries, const KeyOf& keyOf) {
    std::stable_sort(entries.begin(), entries.end(), [&](const auto* left, const auto* right) {
        return keyOf(left) < keyOf(right);
    });
    const auto isRepeat = [&](const auto* left, const auto* right) {
        return keyOf(left) == keyOf(right);
    };
    entries.erase(std::unique(entries.begin(), entries.end(), isRepeat), entries.end());
}

template <class Key, class KeyOf>
CEnumEntryImpl* FindBy(const Entries& entries, const Key& key, const KeyOf& keyOf) {
    const auto found = std::lower_bound(
        entries.begin(), entries.end(), key,
        [&](const auto* entry, const Key& wanted) { return keyOf(entry) < wanted; });
    return found != entries.end() && keyOf(*found) == key ? *found : nullptr;
}

constexpr auto kSymbolicOf = [](const CEnumEntryImpl* entry) { return entry->GetSymbolicText(); };
constexpr auto kValueOf = [](const CEnumEntryImpl* entry) { return entry->GetNumber(); };

}  // namespace

/// Entries are looked up by name and by number in every access, and some enumerations have
/// hundreds of them: pixel formats, for example.
void CEnumerationImpl::FinalConstruct() {
    CNodeImpl::FinalConstruct();
    m_BySymbolic.reserve(m_Entries.size());
    for (INodePrivate* const node : m_Entries) {
        CEnumEntryImpl* const ptrEnumEntry = node->AsEnumEntry();
        // A description may give another node the name of an entry.
        if (ptrEnumEntry == nullptr) {
            RUNTIME_EXCEPTION_NODE("An entry of the enumeration is another kind of node.");
        }
        m_BySymbolic.push_back(ptrEnumEntry);
    }
    m_ByValue = m_BySymbolic;
    SortBy(m_BySymbolic, kSymbolicOf);
    SortBy(m_ByValue, kValueOf);
}

void CEnumerationImpl::InternalGetEntries(node_vector& entries) const {
    entries.clear();
    entries.reserve(m_Entries.size());
    for (INodePrivate* const entry : m_Entries) {
        entries.push_back(entry);
    }
}

/// Only those that can be chosen at present: clients fill the lists of user interfaces with them.
void CEnumerationImpl::InternalGetSymbolics(gcstring_vector& symbolics) {
    symbolics.clear();
    for (INodePrivate* const node : m_Entries) {
        if (IsAvailable(node->GetAccessMode())) {
            symbolics.push_back(node->AsEnumEntry()->GetSymbolic());
        }
    }
}

IEnumEntry* CEnumerationImpl::InternalGetEntryByName(const gcstring& symbolic) const {
    return FindBy(m_BySymbolic, std::string_view(symbolic.c_str(), symbolic.size()), kSymbolicOf);
}

IEnumEntry* CEnumerationImpl::InternalGetEntry(int64_t value) const {
    return FindBy(m_ByValue, value, kValueOf);
}

/// A device may well have a number that the description doesn't know, after an update of its
/// firmware for example.
IEnumEntry& CEnumerationImpl::RequireEntry(int64_t value) {
    IEnumEntry* const entry = InternalGetEntry(value);
    if (entry == nullptr) {
        INVALID_ARGUMENT_EXCEPTION_NODE(
            "Feature '%s' : cannot convert value '%ld', the value is invalid.", m_Name.c_str(),
            value);
    }
    return *entry;
}

/// While the state lasts, no read is answered from the cache: the device may change the value at
/// any time.
void CEnumerationImpl::LeaveSelfClearing(int64_t value) {
    if (m_State == SelfClearing && value != m_SelfClearingValue) {
        SetInvalid(simAll);
        m_State = Normal;
    }
}

/// Without verification any number passes, also one without an entry: a client may want to see
/// what the device has.
int64_t CEnumerationImpl::InternalGetIntValue(bool verify, bool ignoreCache) {
    const int64_t value = m_Value.GetValue(verify, ignoreCache || m_State == SelfClearing);
    if (verify && !IsReadable(RequireEntry(value).GetAccessMode())) {
        ACCESS_EXCEPTION_NODE("Failed to write enumeration value. Enum entry is not readable");
    }
    LeaveSelfClearing(value);
    return value;
}

/// A number without an entry is refused even without verification: nobody knows what it would do.
void CEnumerationImpl::InternalSetIntValue(int64_t value, bool verify) {
    IEnumEntry& entry = RequireEntry(value);
    if (verify && !IsAvailable(entry.GetAccessMode())) {
        ACCESS_EXCEPTION_NODE("Failed to write enumeration value. Enum entry is not writable");
    }
    SetOrHold(m_Value, value, verify);
    LeaveSelfClearing(value);
    if (entry.IsSelfClearing()) {
        m_SelfClearingValue = value;
        m_State = SelfClearing;
    }
}

/// An entry that isn't available has no name to show: the device is in a state that the
/// description rules out.
gcstring CEnumerationImpl::InternalSymbolicOf(int64_t value) {
    IEnumEntry& entry = RequireEntry(value);
    gcstring symbolic = entry.GetSymbolic();
    if (!IsAvailable(entry.GetAccessMode())) {
        ACCESS_EXCEPTION_NODE("Enumeration value '%s' is not available.", symbolic.c_str());
    }
    return symbolic;
}

int64_t CEnumerationImpl::InternalValueOf(const gcstring& symbolic) {
    IEnumEntry* const entry = InternalGetEntryByName(symbolic);
    if (entry == nullptr) {
        INVALID_ARGUMENT_EXCEPTION_NODE(
            "Feature '%s' : cannot convert value '%s', the value is invalid.", m_Name.c_str(),
            symbolic.c_str());
    }
    return entry->GetValue();
}

}  // namespace GenApi_3_0_ORVANE
