#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "camera/ListedCamera.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"
#include "support/Text.h"

namespace {

/// The form in which the library knows MAC addresses.
std::string ListedMac(std::string mac) {
    for (char& character : mac) {
        const auto code = static_cast<unsigned char>(character);
        character = std::isxdigit(code) != 0 ? static_cast<char>(std::toupper(code)) : '-';
    }
    return mac;
}

Json ToJson(const IpAddresses& addresses) {
    return {{"ip", addresses.ip}, {"subnetMask", addresses.mask}, {"gateway", addresses.gateway}};
}

std::string ToText(const IpAddresses& addresses) {
    return addresses.ip + " mask " + addresses.mask + " gateway " + addresses.gateway;
}

struct Sight {
    size_t index;
    OV_DEVICE_BASE_INFO base;
    OV_DEVICE_IP_INFO ip;
};

std::vector<Sight> FindSights(uint32_t timeout) {
    const auto cameras = Library::FindCameras(timeout, Reach::AllNetworks);
    std::vector<Sight> sights;
    for (size_t index = 1; index <= cameras.size(); ++index) {
        if (cameras[index - 1].deviceClass == OV_DEVICE_CLASS_GEV) {
            Sight sight{index, cameras[index - 1], {}};
            Check(OVGetDeviceIPInfo(static_cast<uint32_t>(index), &sight.ip),
                  "read the addresses of camera " + std::to_string(index));
            sights.push_back(sight);
        }
    }
    return sights;
}

Json ToJson(const Sight& sight) {
    Json camera = {{"index", sight.index},
                   {"model", FieldText(sight.base.szModelName)},
                   {"serialNumber", FieldText(sight.base.szSN)}};
    camera.update(CameraAddresses(sight.ip));
    camera["adapter"] = AdapterAddresses(sight.ip);
    return camera;
}

void Print(const Sight& sight) {
    const OV_DEVICE_IP_INFO& info = sight.ip;
    const IpAddresses camera{info.szIP, info.szSubnetMask, info.szGateway};
    const IpAddresses adapter{info.szNICIP, info.szNICSubnetMask, info.szNICGateway};
    const auto show = [](const auto& field) { return Visible(FieldText(field)); };
    std::printf("%zu  %s  %s  serial %s  %s\n   on %s  %s  %s\n", sight.index, info.szMAC,
                show(sight.base.szModelName).c_str(), show(sight.base.szSN).c_str(),
                ToText(camera).c_str(), info.szNICMAC, show(info.szNICDescription).c_str(),
                ToText(adapter).c_str());
}

/// What a camera was told, in one line or as a document.
void Confirm(const Json& document, const std::string& line, bool json) {
    if (json) {
        PrintJson(document);
    } else {
        std::printf("%s\n", line.c_str());
    }
}

/// A way, or two that are tried in turn. A link-local address is always the last.
struct IpMode {
    const char* name;
    OV_IP_CONFIGURE_MODE mode;
    bool isPersistent;
};

constexpr IpMode kIpModes[] = {
    {"lla", OV_IP_CONFIGURE_LLA, false},
    {"persistent", OV_IP_CONFIGURE_PERSISTENT_LLA, true},
    {"dhcp", OV_IP_CONFIGURE_DHCP_LLA, false},
    {"persistent+dhcp", OV_IP_CONFIGURE_PERSISTENT_DHCP_LLA, true},
};

const IpMode& ModeNamed(const std::string& name) {
    const auto* const found =
        std::find_if(std::begin(kIpModes), std::end(kIpModes),
                     [&name](const IpMode& mode) { return name == mode.name; });
    if (found == std::end(kIpModes)) {
        throw UsageError("there is no mode '" + name + "'");
    }
    return *found;
}

IpAddresses ReadPersistent(OV_DEV_HANDLE camera) {
    using Text = std::array<char, 16>;
    Text ip{};
    Text mask{};
    Text gateway{};
    size_t ipSize = ip.size();
    size_t maskSize = mask.size();
    size_t gatewaySize = gateway.size();
    Check(OVGetDevicePersistentIpAddress(camera, ip.data(), &ipSize, mask.data(), &maskSize,
                                         gateway.data(), &gatewaySize),
          "read the persistent address");
    return {ip.data(), mask.data(), gateway.data()};
}

}  // namespace

std::vector<std::string> IpModeNames() {
    std::vector<std::string> names;
    for (const IpMode& mode : kIpModes) {
        names.emplace_back(mode.name);
    }
    return names;
}

void ListAddresses(uint32_t timeout, bool json) {
    const Library library;
    const std::vector<Sight> sights = FindSights(timeout);
    if (json) {
        Json cameras = Json::array();
        for (const Sight& sight : sights) {
            cameras.push_back(ToJson(sight));
        }
        PrintJson({{"cameras", cameras}});
    } else {
        for (const Sight& sight : sights) {
            Print(sight);
        }
        std::printf("%zu GigE Vision camera%s\n", sights.size(), sights.size() == 1 ? "" : "s");
    }
    if (sights.empty()) {
        throw ToolError("no GigE Vision camera was found", ExitCode::NoCamera);
    }
}

void ForceIp(const std::string& mac, const IpAddresses& addresses, bool json) {
    const Library library;
    const std::string listed = ListedMac(mac);
    Check(OVGigEForceIp(listed.c_str(), addresses.ip.c_str(), addresses.mask.c_str(),
                        addresses.gateway.c_str()),
          "force the address of " + listed);
    Json document = {{"mac", listed}};
    document.update(ToJson(addresses));
    Confirm(document, listed + ": " + ToText(addresses) + " until its next start", json);
}

void ConfigureIp(const std::string& mac, const IpConfiguration& configuration, bool json) {
    const Library library;
    const std::string listed = ListedMac(mac);
    const IpMode& mode = ModeNamed(configuration.mode);
    const IpAddresses& addresses = configuration.addresses;
    if (mode.isPersistent && addresses.gateway.empty()) {
        throw UsageError("mode " + configuration.mode + " needs address, mask and gateway");
    }
    Check(OVGigEIpConfiguration(listed.c_str(), mode.mode, addresses.ip.c_str(),
                                addresses.mask.c_str(), addresses.gateway.c_str(),
                                configuration.userId.c_str()),
          "configure " + listed);
    Json document = {{"mac", listed}, {"mode", mode.name}, {"userId", configuration.userId}};
    std::string line = listed + ": " + mode.name;
    if (mode.isPersistent) {
        document.update(ToJson(addresses));
        line += ", " + ToText(addresses);
    }
    Confirm(document, line, json);
}

void ResetCamera(const std::string& mac, OV_RESET_MODE mode, bool json) {
    const Library library;
    const std::string listed = ListedMac(mac);
    Check(OVGigEResetDevice(listed.c_str(), mode), "reset " + listed);
    Confirm({{"mac", listed}, {"mode", mode}}, listed + ": reset in mode " + std::to_string(mode),
            json);
}

void PersistentIp(const CameraChoice& choice, const IpAddresses& wanted, bool json) {
    const Camera camera(choice, wanted.ip.empty() ? Access::ReadOnly : Access::Control);
    if (!wanted.ip.empty()) {
        Check(OVSetDevicePersistentIpAddress(camera.Handle(), wanted.ip.c_str(),
                                             wanted.mask.c_str(), wanted.gateway.c_str()),
              "set the persistent address");
    }
    const IpAddresses kept = ReadPersistent(camera.Handle());
    Confirm(ToJson(kept), ToText(kept), json);
}
