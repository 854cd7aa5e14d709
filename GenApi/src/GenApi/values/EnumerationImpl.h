#pragma once

#include <vector>

#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/EnumerationT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"

namespace GenApi_3_0_ORVANE {

class CEnumEntryImpl;

/// A choice among entries, kept as a number by another node.
class CEnumerationImpl : public CNodeImpl {
public:
    void SetProperty(const CProperty& property) override;
    void FinalConstruct() override;
    /// False while the device is expected to change the value by itself.
    bool InternalIsValueCacheValid() override {
        return m_State == Normal && CNodeImpl::InternalIsValueCacheValid();
    }
    EAccessMode InternalGetAccessMode() override {
        return CNodeImpl::InternalGetAccessMode(m_Value.GetNode());
    }

protected:
    void InternalGetSymbolics(gcstring_vector& symbolics);
    void InternalGetEntries(node_vector& entries) const;
    IEnumEntry* InternalGetEntryByName(const gcstring& symbolic) const;
    IEnumEntry* InternalGetEntry(int64_t value) const;
    int64_t InternalGetIntValue(bool verify, bool ignoreCache);
    void InternalSetIntValue(int64_t value, bool verify);
    /// Returns the symbolic name of the entry, which must exist and be available.
    gcstring InternalSymbolicOf(int64_t value);
    /// Returns the number of the entry, which must exist.
    int64_t InternalValueOf(const gcstring& symbolic);

private:
    enum EState { Normal = 1, SelfClearing = 2 };

    IEnumEntry& RequireEntry(int64_t value);
    /// Ends that expectation once the value is another than the one that was written.
    void LeaveSelfClearing(int64_t value);

    CIntegerPolyRef m_Value;
    NodeList m_Entries;
    /// The same entries, sorted by what they are looked up by. Of two that share it only the first
    /// is there.
    std::vector<CEnumEntryImpl*> m_BySymbolic;
    std::vector<CEnumEntryImpl*> m_ByValue;
    EState m_State = Normal;
    int64_t m_SelfClearingValue = 0;
};

class CEnumeration : public BaseT<ValueT<NodeT<EnumerationT<CEnumerationImpl>>>> {
public:
    using EnumerationT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
