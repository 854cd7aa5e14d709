#include "TLClassMain/GcFactory.h"

#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/DataStream.h"
#include "TLClassMain/Device.h"
#include "TLClassMain/Interface.h"
#include "TLClassMain/TL.h"

namespace OVTLClass {

namespace {

constexpr const char* kGev = "GEV";

std::unique_ptr<CDevice> MakeDevice(std::shared_ptr<const CGenTLLib> lib,
                                    std::shared_ptr<IInterface> owner, void* interfaceHandle,
                                    const DEV_INFO& info) {
    const bool isGev = info.tlType.value == kGev;
    const auto* const gevInfo = dynamic_cast<const GEV_DEV_INFO*>(info.pSpecialInfo);
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

std::unique_ptr<CTL> CTLFactory::CreateTL(std::shared_ptr<const CGenTLLib> lib,
                                          const TL_INFO& info) {
    if (info.tlType.value == kGev) {
        return std::make_unique<CGevTL>(std::move(lib), info);
    }
    return std::make_unique<CTL>(std::move(lib), info);
}

std::unique_ptr<CInterface> CInterfaceFactory::CreateInterface(std::shared_ptr<const CGenTLLib> lib,
                                                               std::shared_ptr<ITL> tl,
                                                               void* tlHandle,
                                                               const IF_INFO& info) {
    if (info.tlType.value == kGev) {
        return std::make_unique<CGevInterface>(std::move(lib), std::move(tl), tlHandle, info);
    }
    return std::make_unique<CInterface>(std::move(lib), std::move(tl), tlHandle, info);
}

std::unique_ptr<CDevice> CDeviceFactory::CreateDevice(std::shared_ptr<const CGenTLLib> lib,
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

std::unique_ptr<CDataStream> CDataStreamFactory::CreateDataStream(
    std::shared_ptr<const CGenTLLib> lib, std::shared_ptr<IDevice> device, void* deviceHandle,
    const std::string& streamId) {
    return std::make_unique<CDataStream>(std::move(lib), std::move(device), deviceHandle, streamId);
}

}  // namespace OVTLClass
