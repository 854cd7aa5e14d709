#include "devices/DeviceOpening.h"

#include "TLClassLoadTL/OvException.h"
#include "TLClassLoadTL/OvString.h"
#include "TLClassMain/DataStream.h"
#include "TLClassMain/Device.h"
#include "TLClassMain/Interface.h"
#include "TLClassMain/TL.h"
#include "TLClassMain/TLManager.h"
#include "gige/Ipcalc.h"

using namespace OVTLClass;

namespace {

/// The camera of that address when it could be opened there, else null.
std::shared_ptr<IDevice> OpenOnInterface(CGevInterface& owner, int64_t address,
                                         OV_ACCESS_MODE accessMode, const OvPlace& place) {
    std::shared_ptr<IDevice> device;
    try {
        device = owner.DoCreateDeviceByIPAddress(address);
        COpenDeviceAgency opened(*device, accessMode);
        COpenDataStreamAgency streamOpened(*device, place);
        streamOpened.Commit();
        opened.Commit();
        return device;
    } catch (const std::exception& error) {
        if (device && device->DoIsDeviceOpen()) {
            // It is found, and another thread has it.
            throw;
        }
        // The camera may be connected to the next adapter.
        OV_LOG(error.what());
        return nullptr;
    }
}

}  // namespace

COpenDeviceAgency::COpenDeviceAgency(IDevice& device, OV_ACCESS_MODE accessMode) {
    device.DoOpenClosedDevice(accessMode);
    Arm([&device] { device.DoCloseDevice(); });
}

COpenDataStreamAgency::COpenDataStreamAgency(IDevice& device, const OvPlace& place) {
    const auto streams = device.DoGetDataStreamList();
    if (streams.empty()) {
        OV_RAISE_AT(CUnexpectedError, place, "DataStream's number is 0");
    }
    streams.front()->DoOpenDataStream();
    Arm([stream = streams.front()] { stream->DoCloseDataStream(); });
}

std::shared_ptr<IDevice> OpenOnAnyInterface(const std::string& ip, OV_ACCESS_MODE accessMode,
                                            const OvPlace& place) {
    const int64_t address = Cipcalc().StringToInt(ip);
    for (const auto& tl : ITLManager::GetInstance()->DoGetTLList()) {
        if (tl->DoGetTLInfo().tlType.value != "GEV") {
            continue;
        }
        for (const auto& candidate : tl->DoGetInterfaceList()) {
            const auto owner = std::dynamic_pointer_cast<CGevInterface>(candidate);
            if (auto device =
                    owner ? OpenOnInterface(*owner, address, accessMode, place) : nullptr) {
                return device;
            }
        }
    }
    OV_RAISE_AT(CNotFoundDeviceError, place,
                COvString::MsgComposer("Can't open device by IP: %s", ip.c_str()));
}
