#include "gige/producer/IpSettings.h"

#include "framework/Failure.h"

namespace OvGige {
namespace {

using OvProducer::Failure;

constexpr uint32_t kModes = kIpPersistent | kIpDhcp | kIpLinkLocal;

void RequireOffered(CameraMemory& camera, const IpSettings& settings) {
    // Every camera has the link-local address; some don't list it.
    const uint32_t offered = camera.ReadRegister(kRegSupportedIpConfig) | kIpLinkLocal;
    if ((settings.mode & ~offered) != 0) {
        throw Failure(GenTL::GC_ERR_NOT_IMPLEMENTED,
                      (settings.mode & ~offered & kIpPersistent) != 0
                          ? "The camera can't keep an address"
                          : "The camera can't ask a server for its address");
    }
    if (!settings.userName.empty() && (camera.Capability() & kOffersUserName) == 0) {
        throw Failure(GenTL::GC_ERR_NOT_IMPLEMENTED, "The camera can't be given a name");
    }
}

void WriteAndCheck(CameraMemory& camera, uint32_t address, uint32_t value) {
    camera.WriteRegister(address, value);
    if (camera.ReadRegister(address) != value) {
        throw Failure(GenTL::GC_ERR_IO, "The camera doesn't keep its IP configuration");
    }
}

}  // namespace

void RequireAddress(Ipv4 ip, Ipv4 mask, Ipv4 gateway) {
    const std::string fault = AddressFault(ip, mask, gateway);
    if (!fault.empty()) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, fault);
    }
}

void RequireSense(const IpSettings& settings) {
    if ((settings.mode & ~kModes) != 0 || (settings.mode & kIpLinkLocal) == 0) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER,
                      "There is no IP configuration " + std::to_string(settings.mode));
    }
    if ((settings.mode & kIpPersistent) != 0) {
        RequireAddress(settings.ip, settings.mask, settings.gateway);
    }
    if (settings.userName.size() >= kRegUserName.width) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER,
                      "The name \"" + settings.userName + "\" is longer than " +
                          std::to_string(kRegUserName.width - 1) + " bytes");
    }
}

// The mode comes last: a camera that loses its power in between still starts as before.
void WriteIpSettings(CameraMemory& camera, const IpSettings& settings) {
    RequireOffered(camera, settings);
    if (!settings.userName.empty()) {
        Bytes name(kRegUserName.width);
        WriteText(name, settings.userName);
        camera.Write(kRegUserName.address, name);
    }
    if ((settings.mode & kIpPersistent) != 0) {
        WriteAndCheck(camera, kRegPersistentIp, settings.ip.value);
        WriteAndCheck(camera, kRegPersistentMask, settings.mask.value);
        WriteAndCheck(camera, kRegPersistentGateway, settings.gateway.value);
    }
    const uint32_t before = camera.ReadRegister(kRegCurrentIpConfig);
    WriteAndCheck(camera, kRegCurrentIpConfig, (before & ~kModes) | settings.mode);
}

}  // namespace OvGige
