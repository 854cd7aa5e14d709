#pragma once

#include <optional>

#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/BooleanT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"

namespace GenApi_3_0_ORVANE {

/// A truth value, kept as one of two numbers by another node.
class CBooleanImpl : public CNodeImpl {
public:
    void SetProperty(const CProperty& property) override;
    void FinalConstruct() override;
    EAccessMode InternalGetAccessMode() override {
        return CNodeImpl::InternalGetAccessMode(m_Value.GetNode());
    }

protected:
    void InternalSetValue(bool value, bool verify);
    bool InternalGetValue(bool verify, bool ignoreCache);

private:
    CIntegerPolyRef m_Value;
    /// A truth value that is in the description itself. It is turned into one of the two numbers
    /// once both are known.
    std::optional<int64_t> m_Constant;
    int64_t m_OnValue = 1;
    int64_t m_OffValue = 0;
};

class CBoolean : public BaseT<ValueT<NodeT<BooleanT<CBooleanImpl>>>> {
public:
    using BooleanT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
