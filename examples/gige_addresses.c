// Lists the GigE Vision cameras of all networks with their addresses, and gives one another
// address until its next start.
// Usage: gige_addresses [MAC ADDRESS MASK GATEWAY]
#include "example.h"

int main(int argc, char** argv) {
    uint32_t count = 0;
    uint32_t found = 0;
    Check(OVInitLib(), "OVInitLib");
    if (argc == 5) {
        Check(OVGigEForceIp(argv[1], argv[2], argv[3], argv[4]), "OVGigEForceIp");
        printf("%s has the address %s\n", argv[1], argv[2]);
    }
    // Finds also a camera whose address belongs to another network, and can't be opened.
    Check(OVUpdateAllDeviceList(&count, 1000), "OVUpdateAllDeviceList");
    for (uint32_t i = 1; i <= count; ++i) {
        OV_DEVICE_IP_INFO info;
        if (OVGetDeviceIPInfo(i, &info) == OV_STATUS_SUCCESS) {
            printf("%s  %s mask %s gateway %s\n", info.szMAC, info.szIP, info.szSubnetMask,
                   info.szGateway);
            printf("  on %s  %s mask %s\n", info.szNICMAC, info.szNICIP, info.szNICSubnetMask);
            ++found;
        }
    }
    printf("GigE Vision cameras: %u of %u\n", found, count);
    Check(OVCloseLib(), "OVCloseLib");
    return 0;
}
