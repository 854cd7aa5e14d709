#pragma once

#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/StringT.h"
#include "GenApi/impl/ValueT.h"

namespace GenApi_3_0_ORVANE {

/// A text from the description or from another node.
class CStringNodeImpl : public CNodeImpl {
public:
    void SetProperty(const CProperty& property) override;
    EAccessMode InternalGetAccessMode() override {
        return CNodeImpl::InternalGetAccessMode(m_Value.GetNode());
    }

protected:
    void InternalSetValue(const gcstring& value, bool verify) { m_Value.SetValue(value, verify); }
    gcstring InternalGetValue(bool verify, bool ignoreCache) {
        return m_Value.GetValue(verify, ignoreCache);
    }
    int64_t InternalGetMaxLength() { return m_Value.GetMaxLength(); }

private:
    CStringPolyRef m_Value;
};

class CStringNode : public BaseT<ValueT<NodeT<StringT<CStringNodeImpl>>>> {
public:
    using StringT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
