#pragma once

#include "GenApi/impl/UnlimitedIntegerT.h"
#include "registers/RegisterImpl.h"
#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

/// The address of a smart feature, which a camera returns after the feature's GUID was written.
class CSmartFeatureImpl : public UnlimitedIntegerT<CRegisterImpl> {
public:
    CSmartFeatureImpl();
    void SetProperty(const CProperty& property) override;
    using CNodeImpl::InternalGetAccessMode;
    EAccessMode InternalGetAccessMode() override;

protected:
    void InternalSetValue(int64_t value, bool verify);
    int64_t InternalGetValue(bool verify, bool ignoreCache);

private:
    GUID m_FeatureID{};
};

class CSmartFeature : public BaseT<ValueT<NodeT<IntegerT<RegisterT<CSmartFeatureImpl>>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
