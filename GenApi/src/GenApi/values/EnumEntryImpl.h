#pragma once

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

    int64_t GetValue() override { return m_Value; }
    gcstring GetSymbolic() override { return m_Symbolic; }
    double GetNumericValue() override { return m_NumericValue; }
    bool IsSelfClearing() override { return m_IsSelfClearing == Yes; }

protected:
    gcstring InternalToString(bool verify, bool ignoreCache) override;
    void InternalFromString(const gcstring& value, bool verify) override;

private:
    int64_t m_Value = 0;
    double m_NumericValue = 0;
    bool m_HasNumericValue = false;
    gcstring m_Symbolic;
    EYesNo m_IsSelfClearing = No;
};

class CEnumEntry : public BaseT<ValueT<NodeT<CEnumEntryImpl>>> {};

}  // namespace GenApi_3_0_ORVANE
