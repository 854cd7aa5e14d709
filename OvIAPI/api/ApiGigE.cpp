// Changes how a GigE Vision camera is set up on the network. The camera is found by its
// MAC address, because it may have no address yet that the host can reach. No lock of the
// interface is held: only the searches wait for one another.

#include "OvIAPI.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/OvException.h"
#include "api/DeviceManager.h"
#include "errors/OVIError.h"

using namespace OVTLClass;

namespace {

constexpr OV_IP_CONFIGURE_MODE kPersistentBit = 1;

bool IsPersistent(OV_IP_CONFIGURE_MODE mode) {
    return (mode & kPersistentBit) != 0;
}

std::shared_ptr<IDevice> Find(const char* mac, const OvPlace& place) {
    return CDeviceManager::GetInstance().GetDeviceInfoFactory().FindInWholeNetwork(mac, place);
}

}  // namespace

OV_STATUS OVGigEIpConfiguration(const char* pszDeviceMacAddress,
                                OV_IP_CONFIGURE_MODE emIpConfigFlag, const char* pszIPAddress,
                                const char* pszSubnetMask, const char* pszDefaultGateway,
                                const char* pszUserID) try {
    EnterApi();
    OV_CHECK_POINTER(pszDeviceMacAddress);
    if (emIpConfigFlag < OV_IP_CONFIGURE_LLA ||
        emIpConfigFlag > OV_IP_CONFIGURE_PERSISTENT_DHCP_LLA) {
        OV_RAISE(CInvalidParameterError, "Ip configure mode is undefined");
    }
    const char* const userId = pszUserID == nullptr ? "" : pszUserID;
    if (IsPersistent(emIpConfigFlag)) {
        OV_CHECK_POINTER(pszIPAddress);
        OV_CHECK_POINTER(pszSubnetMask);
        OV_CHECK_POINTER(pszDefaultGateway);
    } else {
        pszIPAddress = pszSubnetMask = pszDefaultGateway = "";
    }
    Find(pszDeviceMacAddress, OV_HERE)
        ->DoIpConfiguration(emIpConfigFlag, pszIPAddress, pszSubnetMask, pszDefaultGateway, userId);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGigEForceIp(const char* pszDeviceMacAddress, const char* pszIPAddress,
                        const char* pszSubnetMask, const char* pszDefaultGateway) try {
    EnterApi();
    OV_CHECK_POINTER(pszDeviceMacAddress);
    OV_CHECK_POINTER(pszIPAddress);
    OV_CHECK_POINTER(pszSubnetMask);
    OV_CHECK_POINTER(pszDefaultGateway);
    // The producer decides whether the addresses make sense.
    Find(pszDeviceMacAddress, OV_HERE)->DoForceIp(pszIPAddress, pszSubnetMask, pszDefaultGateway);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OVGigEResetDevice(const char* pszDeviceMacAddress, OV_RESET_MODE emResetMode) try {
    EnterApi();
    OV_CHECK_POINTER(pszDeviceMacAddress);
    if (emResetMode != OV_RESET_MODE_1 && emResetMode != OV_RESET_MODE_2) {
        OV_RAISE(CInvalidParameterError, "Invalid Param");
    }
    Find(pszDeviceMacAddress, OV_HERE)->DoResetDevice(emResetMode);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
