#pragma once
/// An adapter that GigE Vision cameras are found on.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TLClassInterface/Interface.h"

namespace OVTLClass {

class CGevInterface : public CInterface {
public:
    using CInterface::CInterface;

    void DoUpdateInterfaceInformation(const IF_INFO& info) override;

    std::shared_ptr<IDevice> DoCreateDeviceByIPAddress(int64_t ip) override;
    std::optional<GEV_IF_INFO> DoGetGevInterfaceInfo() override;

protected:
    void __DoAcquireInterfaceSpecialInformation(const IFeatureControl& control) override;
    void __DoResetInterfaceSpecialInformation() override;
    void __DoAcquireAllDeviceSpecialInformation(const IFeatureControl& control,
                                                size_t count) override;
    void __DoResetAllDeviceSpecialInformation() override;
    std::vector<SPECIAL_INFO*> __DoGetAllDeviceSpecialInformation(size_t count) override;

private:
    std::shared_ptr<IDevice> __SearchDeviceByIP(int64_t ip, const std::string& id);

    CLock m_gevInfoLock{LockRank::Information};
    GEV_IF_INFO m_gevInfo;
    std::vector<GEV_DEV_INFO> m_gevDeviceInfos;
    CLock m_createLock{LockRank::CreateByAddress};
};

}  // namespace OVTLClass
