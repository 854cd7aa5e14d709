#pragma once

#include "GenApi/impl/RegisterInteger.h"

namespace GenApi_3_0_ORVANE {

/// The address of a smart feature: a camera tells it to who writes the feature's
/// GUID.
class CSmartFeatureImpl : public CRegisterIntegerImpl {
public:
    CSmartFeatureImpl();
    void SetProperty(const CProperty& property) override;
    EAccessMode InternalGetAccessMode() override;

protected:
    void InternalSetValue(int64_t value, bool verify);
    int64_t InternalGetValue(bool verify, bool ignoreCache);

private:
    GUID m_FeatureID{};
    INodePrivate* m_pPortNode = nullptr;
};

class CSmartFeature : public BaseT<ValueT<NodeT<IntegerT<RegisterT<CSmartFeatureImpl>>>>> {
public:
    using IntegerT::operator=;
};

}  // namespace GenApi_3_0_ORVANE
