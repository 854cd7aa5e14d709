#include "simulator/CameraProfile.h"

#include <cstdio>

#include "simulator/Chance.h"

namespace OvSimulator {
namespace {

/// Of hardware whose address no authority gave out.
constexpr uint64_t kOwnAddressBit = uint64_t{0x02} << 40;
constexpr uint64_t kLowBytes = 0xFF'FFFF'FFFF;

OvGige::MacAddress MacOf(unsigned index, const IpAddresses& address, uint16_t port) {
    const uint64_t place = Mix(index) ^ (uint64_t{address.ip.value} << 16 | port);
    return OvGige::MacAddress::Of(kOwnAddressBit | (Mix(place) & kLowBytes));
}

}  // namespace

CameraProfile MakeProfile(unsigned index, const IpAddresses& address, uint16_t port) {
    CameraProfile profile;
    profile.index = index;
    profile.color = index % 2 == 0;
    profile.vendor = "oviapi";
    profile.model = profile.color ? "Simulated-5M-Color" : "Simulated-5M-Mono";
    profile.version = "1.0.0";
    profile.mac = MacOf(index, address, port);
    char serial[16];
    std::snprintf(serial, sizeof serial, "SC%010llX",
                  static_cast<unsigned long long>(profile.mac.Value() & kLowBytes));
    profile.serialNumber = serial;
    profile.address = address;
    profile.port = port;
    return profile;
}

}  // namespace OvSimulator
