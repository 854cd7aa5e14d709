#pragma once
/// The open system module of a GigE Vision producer.

#include <vector>

#include "TLClassMain/TL.h"

namespace OVTLClass {

/// The system module of a GigE Vision producer.
class CGevTL : public CTL {
public:
    using CTL::CTL;

    GEV_TL_INFO GetGevTLInfo() const { return m_gevInfo; }
    std::vector<GEV_IF_INFO> GetAllGevInterfaceInfo() const { return m_gevInterfaceInfos; }

protected:
    void __DoAcquireTLSpecialInformation(const IFeatureControl& control) override;
    std::vector<SPECIAL_INFO*> __DoGetAllInterfaceSpecialInformation(size_t count) override;
    void __DoResetTLSpecialInformation() override;
    void __DoAcquireAllInterfaceSpecialInformation(const IFeatureControl& control,
                                                   size_t count) override;
    void __DoResetAllInterfaceSpecialInformation() override;
    /// An adapter may get another address.
    bool __DoInterfacesChange() const override { return true; }

private:
    std::vector<GEV_IF_INFO> m_gevInterfaceInfos;
    GEV_TL_INFO m_gevInfo;
};

}  // namespace OVTLClass
