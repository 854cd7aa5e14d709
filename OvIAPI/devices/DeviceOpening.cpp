// Opening, and what takes it back when a later step fails.

#include "devices/DeviceOpening.h"

#include "TLClassMain/ITLManager.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IDevice.h"
#include "TLClassModule/IInterface.h"
#include "TLClassModule/ITL.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"
#include "gige/Ipcalc.h"

using namespace OVTLClass;

namespace {

/// Returns the camera at that address, open, or null when this adapter doesn't reach it.
std::shared_ptr<IDevice> OpenOnInterface(IInterface& owner, int64_t address,
                                         OV_ACCESS_MODE accessMode, const OvPlace& place) {
    std::shared_ptr<IDevice> device;
    try {
        device = owner.DoCreateDeviceByIPAddress(address);
        if (!device) {
            return nullptr;
        }
        COpenDeviceAgency opened(*device, accessMode);
        COpenDataStreamAgency streamOpened(*device, place);
        streamOpened.Commit();
        opened.Commit();
        return device;
    } catch (const std::exception& error) {
        if (device && device->DoIsDeviceOpen()) {
            // The camera is here, and another thread has opened it.
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
        for (const auto& owner : tl->DoGetInterfaceList()) {
            if (auto device = OpenOnInterface(*owner, address, accessMode, place)) {
                return device;
            }
        }
    }
    OV_RAISE_AT(CNotFoundDeviceError, place,
                COvString::MsgComposer("Can't open device by IP: %s", ip.c_str()));
}
