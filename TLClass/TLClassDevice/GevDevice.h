#pragma once
/// A camera that speaks GigE Vision.

#include <memory>
#include <optional>

#include "TLClassDevice/Device.h"

namespace OVTLClass {

class CGevDevice : public CDevice {
public:
    CGevDevice(std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IInterface> owner,
               void* interfaceHandle, const DEV_INFO& info, const GEV_DEV_INFO& gevInfo);

    void DoUpdateDeviceInformation(const DEV_INFO& info) override;
    std::optional<GEV_DEV_INFO> DoGetGevDeviceInfo() override;

private:
    CLock m_gevInfoLock{LockRank::Information};
    GEV_DEV_INFO m_gevInfo;
};

}  // namespace OVTLClass
