#pragma once

#include <string_view>

#include "GenApi/IEnumEntry.h"
#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"

namespace GenApi_3_0_ORVANE {

/// One choice of an enumeration. What it holds never changes, so reads need no lock.
class CEnumEntryImpl : public CNodeImpl, virtual public IEnumEntry {
public:
    void SetProperty(const CProperty& property) override;
    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfIEnumEntry; }
    CEnumEntryImpl* AsEnumEntry() override { return this; }

    /// The same as GetSymbolic without a copy; valid as long as the map is.
    std::string_view GetSymbolicText() const { return m_Symbolic; }
    /// The same as GetValue, for the enumeration.
    int64_t GetNumber() const { return m_Value; }
    int64_t GetValue() override { return m_Value; }
    gcstring GetSymbolic() override { return TextOf(m_Symbolic); }
    double GetNumericValue() override { return m_NumericValue; }
    bool IsSelfClearing() override { return m_IsSelfClearing == Yes; }

protected:
    gcstring InternalToString(bool verify, bool ignoreCache) override;
    void InternalFromString(const gcstring& value, bool verify) override;

private:
    int64_t m_Value = 0;
    double m_NumericValue = 0;
    bool m_HasNumericValue = false;
    std::string_view m_Symbolic;
    EYesNo m_IsSelfClearing = No;
};

class CEnumEntry : public BaseT<ValueT<NodeT<CEnumEntryImpl>>> {};

}  // namespace GenApi_3_0_ORVANE
