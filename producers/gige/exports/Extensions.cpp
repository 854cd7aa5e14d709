/// @file The functions that aren't part of the standard, for cameras that nobody has opened.
#include "framework/exports/Serve.h"
#include "gige/producer/GigeInterface.h"

namespace {

using namespace OvGige;
using GenTL::GC_ERROR;
using OvProducer::Failure;
using OvProducer::Function;

/// How a camera is reset.
enum ResetMode : int32_t {
    ResetConnection = 1,  ///< it configures its address anew, which ends its connections
    ResetCamera = 2,
};

Ipv4 AddressIn(const char* text, const char* what) {
    OvProducer::RequirePointer(text, what);
    const auto address = ParseIpv4(text);
    if (!address) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER,
                      std::string(what) + " \"" + text + "\" isn't of the form 192.168.1.10");
    }
    return *address;
}

struct Addresses {
    Ipv4 ip;
    Ipv4 mask;
    Ipv4 gateway;
};

Addresses AddressesIn(const char* ip, const char* mask, const char* gateway) {
    return {AddressIn(ip, "The address"), AddressIn(mask, "The subnet mask"),
            AddressIn(gateway, "The gateway")};
}

/// Runs `change(interface, camera)`.
template <typename Change>
GC_ERROR ChangeCamera(Function function, GenTL::IF_HANDLE handle, const char* id,
                      const Change& change) {
    return OvProducer::ServeOn<OvProducer::Interface>(
        function, handle, [&](OvProducer::Interface& iface) {
            const auto device = iface.DeviceNamed(OvProducer::IdOf(id));
            change(dynamic_cast<GigeInterface&>(iface.Backend()),
                   dynamic_cast<GigeDevice&>(*device));
        });
}

}  // namespace

OV_PRODUCER_EXPORT IFIpConfiguration(GenTL::IF_HANDLE hIface, const char* sDeviceID, int32_t iMode,
                                     const char* sIp, const char* sMask, const char* sGateway,
                                     const char* sUserID) {
    return ChangeCamera(Function::IFIpConfiguration, hIface, sDeviceID,
                        [&](GigeInterface& iface, GigeDevice& camera) {
                            IpSettings settings;
                            settings.mode = static_cast<uint32_t>(iMode);
                            if ((settings.mode & kIpPersistent) != 0) {
                                const Addresses wanted = AddressesIn(sIp, sMask, sGateway);
                                settings.ip = wanted.ip;
                                settings.mask = wanted.mask;
                                settings.gateway = wanted.gateway;
                            }
                            settings.userName = sUserID != nullptr ? sUserID : "";
                            iface.Configure(camera, settings);
                        });
}

OV_PRODUCER_EXPORT IFForceIp(GenTL::IF_HANDLE hIface, const char* sDeviceID, const char* sIp,
                             const char* sMask, const char* sGateway) {
    return ChangeCamera(Function::IFForceIp, hIface, sDeviceID,
                        [&](GigeInterface& iface, GigeDevice& camera) {
                            const Addresses wanted = AddressesIn(sIp, sMask, sGateway);
                            iface.ForceIp(camera, wanted.ip, wanted.mask, wanted.gateway);
                        });
}

OV_PRODUCER_EXPORT IFResetDevice(GenTL::IF_HANDLE hIface, const char* sDeviceID, int32_t iMode) {
    return ChangeCamera(
        Function::IFResetDevice, hIface, sDeviceID, [&](GigeInterface& iface, GigeDevice& camera) {
            switch (iMode) {
                case ResetConnection:
                    return iface.ForceIp(camera, {}, {}, {});
                case ResetCamera:
                    return camera.Reset();
                default:
                    throw Failure(GenTL::GC_ERR_INVALID_PARAMETER,
                                  "There is no reset mode " + std::to_string(iMode));
            }
        });
}
