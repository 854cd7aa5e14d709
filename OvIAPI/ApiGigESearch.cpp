// The search for one GigE Vision camera that is to be configured. It goes past
// the known list: a camera in a foreign subnet need not be on it.

#include <algorithm>

#include "Base/GCException.h"
#include "DeviceInfoFactory.h"
#include "DeviceReader.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/TLManager.h"
#include "TLClassMain/UpdateAgency.h"

using namespace OVTLClass;

namespace {

constexpr unsigned kTimeout = 200;
constexpr unsigned kInterval = 1;

}  // namespace

void CDeviceInfoFactory::__UpdateDeviceInWholeNetwork(KnownList& list) {
    try {
        const GevTLList tls =
            CTLQuery::QueryGevTLFromTLArray(ITLManager::GetInstance()->DoGetTLList());
        bool changed = false;
        CGevUpdateAgency(tls).DoUpdateInWholeNetwork(kTimeout, kInterval, changed);
        for (const auto& tl : tls) {
            const OvDeviceInfoList devices = ReadDevicesOf(*tl);
            list.insert(list.end(), devices.begin(), devices.end());
        }
    } catch (const std::exception& error) {
        OV_RAISE(CUnexpectedError, error.what());
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        OV_RAISE(CUnexpectedError, error.what());
    }
}

std::shared_ptr<IDevice> CDeviceInfoFactory::FindInWholeNetwork(const std::string& mac,
                                                                const OvPlace& place) {
    KnownList list;
    __UpdateDeviceInWholeNetwork(list);
    const auto found = std::find_if(list.begin(), list.end(), [&mac](const Known& known) {
        return known->deviceAddresses.macText == mac;
    });
    if (found == list.end()) {
        OV_RAISE_AT(CNotFoundDeviceError, place, "Not Found Device");
    }
    if ((*found)->GetDevice() == nullptr) {
        OV_RAISE_AT(CUnexpectedError, place, "Unexpected Error");
    }
    return (*found)->GetDevice();
}
