#include "TLClassDevice/DeviceFactory.h"

#include "TLClassDevice/GevDevice.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

namespace {

std::unique_ptr<IDevice> MakeDevice(std::shared_ptr<const CGenTLLib> lib,
                                    std::shared_ptr<IInterface> owner, void* interfaceHandle,
                                    const DEV_INFO& info) {
    const bool isGev = info.tlType.value == GenTL::TLTYPE_GEV;
    const auto* const gevInfo = dynamic_cast<const GEV_DEV_INFO*>(info.pSpecialInfo);
    // The text of the transport and the type of the record come from different calls of the
    // producer, which needn't agree.
    if (info.pCommonInfo == nullptr || (isGev && gevInfo == nullptr)) {
        OV_RAISE(CUnexpectedError, "Invalid parameter");
    }
    if (isGev) {
        return std::make_unique<CGevDevice>(std::move(lib), std::move(owner), interfaceHandle, info,
                                            *gevInfo);
    }
    return std::make_unique<CDevice>(std::move(lib), std::move(owner), interfaceHandle, info);
}

}  // namespace

std::unique_ptr<IDevice> CDeviceFactory::CreateDevice(std::shared_ptr<const CGenTLLib> lib,
                                                      std::shared_ptr<IInterface> owner,
                                                      void* interfaceHandle, DEV_INFO& info) {
    try {
        auto device = MakeDevice(std::move(lib), std::move(owner), interfaceHandle, info);
        info.pCommonInfo = nullptr;
        info.pSpecialInfo = nullptr;
        return device;
    } catch (const std::exception&) {
        throw;
    } catch (...) {
        OV_RAISE(CUnexpectedError, "Failed to create device object.This is an unknown exception.");
    }
}

}  // namespace OVTLClass
