// From a list entry or a key to an open handle.

#include <algorithm>
#include <cstdlib>

#include "DeviceInfoFactory.h"
#include "Ipcalc.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassLoadTL/OvString.h"
#include "TLClassMain/Agency.h"
#include "TLClassMain/DataStream.h"
#include "TLClassMain/Device.h"
#include "TLClassMain/Interface.h"
#include "TLClassMain/TL.h"
#include "TLClassMain/TLManager.h"

using namespace OVTLClass;

namespace {

constexpr const char* kAlreadyOpen = "The device has already been opened";

/// The text of an entry that a key of that mode is compared with.
std::string KeyOf(const COvDeviceInfo& info, OV_OPEN_MODE mode) {
    switch (mode) {
        case OV_OPEN_SN:
            return info.serialNumber;
        case OV_OPEN_IP:
            return info.deviceAddresses.ipText;
        case OV_OPEN_MAC:
            return info.deviceAddresses.macText;
        default:
            return info.GetUserId();
    }
}

}  // namespace

/// An open device.
class CDeviceInfoFactory::COpenDeviceAgency : public CAgency {
public:
    COpenDeviceAgency(IDevice& device, OV_ACCESS_MODE accessMode) {
        device.DoOpenClosedDevice(accessMode);
        Arm([&device] { device.DoCloseDevice(); });
    }
};

/// An open first stream.
class CDeviceInfoFactory::COpenDataStreamAgency : public CAgency {
public:
    COpenDataStreamAgency(IDevice& device, const OvPlace& place) {
        const auto streams = device.DoGetDataStreamList();
        if (streams.empty()) {
            OV_RAISE_AT(CUnexpectedError, place, "DataStream's number is 0");
        }
        streams.front()->DoOpenDataStream();
        Arm([stream = streams.front()] { stream->DoCloseDataStream(); });
    }
};

/// Keeps an address among those that are being opened. Waits for another thread
/// that opens it.
class CDeviceInfoFactory::COpeningAgency : public CAgency {
public:
    COpeningAgency(CDeviceInfoFactory& factory, int64_t address) {
        const CAutoLock held(factory.m_openingLock);
        std::vector<int64_t>& opening = factory.m_opening;
        factory.m_opened.wait(factory.m_openingLock, [&] {
            return std::find(opening.begin(), opening.end(), address) == opening.end();
        });
        Arm([&factory, address] {
            const CAutoLock removing(factory.m_openingLock);
            std::erase(factory.m_opening, address);
            factory.m_opened.notify_all();
        });
        opening.push_back(address);
    }
};

OV_DEV_HANDLE CDeviceInfoFactory::OpenDeviceByIndex(uint32_t index, OV_ACCESS_MODE accessMode,
                                                    const OvPlace& place) {
    if (index == 0) {
        OV_RAISE_AT(COutOfRangeError, place, "Index should not be 0");
    }
    Known known = __FindByIndex(index);
    if (!known) {
        __TryUpdate();
        known = __FindByIndex(index);
    }
    if (!known) {
        OV_RAISE_AT(COutOfRangeError, place, "Index out of range");
    }
    return __OpenKnownDevice(*known, accessMode, place);
}

OV_DEV_HANDLE CDeviceInfoFactory::OpenDevice(const OV_OPEN_PARAM& param, const OvPlace& place) {
    const std::string key = param.pszContent;
    if (param.openMode == OV_OPEN_INDEX) {
        const auto index = static_cast<uint32_t>(std::strtol(key.c_str(), nullptr, 10));
        return OpenDeviceByIndex(index, param.accessMode, place);
    }
    if (param.openMode == OV_OPEN_IP && !Cipcalc().IsValidIP(key)) {
        OV_RAISE_AT(CInvalidParameterError, place, "IP string is wrong format");
    }
    if (const Known known = __FindByKeyWithUpdate(param.openMode, key)) {
        return __OpenKnownDevice(*known, param.accessMode, place);
    }
    if (param.openMode != OV_OPEN_IP) {
        OV_RAISE_AT(CNotFoundDeviceError, place, "Not found device");
    }
    return __OpenDeviceByIP(key, param.accessMode, place);
}

CDeviceInfoFactory::Known CDeviceInfoFactory::__FindByIndex(uint32_t index) {
    const CAutoLock lock(m_knownLock);
    return index <= m_known.size() ? m_known[index - 1] : nullptr;
}

CDeviceInfoFactory::Known CDeviceInfoFactory::__FindByKey(OV_OPEN_MODE mode,
                                                          const std::string& key) {
    const CAutoLock lock(m_knownLock);
    const auto found = std::find_if(m_known.begin(), m_known.end(),
                                    [&](const Known& known) { return KeyOf(*known, mode) == key; });
    return found == m_known.end() ? nullptr : *found;
}

CDeviceInfoFactory::Known CDeviceInfoFactory::__FindByKeyWithUpdate(OV_OPEN_MODE mode,
                                                                    const std::string& key) {
    if (Known known = __FindByKey(mode, key)) {
        return known;
    }
    __TryUpdate();
    return __FindByKey(mode, key);
}

OV_DEV_HANDLE CDeviceInfoFactory::__OpenKnownDevice(const COvDeviceInfo& known,
                                                    OV_ACCESS_MODE accessMode,
                                                    const OvPlace& place) {
    COpenDeviceAgency device(*known.GetDevice(), accessMode);
    COpenDataStreamAgency stream(*known.GetDevice(), place);
    OV_DEV_HANDLE const handle = __AddHandle(known.Clone());
    stream.Commit();
    device.Commit();
    return handle;
}

OV_DEV_HANDLE CDeviceInfoFactory::__AddHandle(std::unique_ptr<COvDeviceInfo> info) {
    info->GetPolling().Begin(*info->GetDevice(), *info->GetStream()->GetNodeMapRef());
    const CAutoLock lock(m_openLock);
    m_open.push_back(std::move(info));
    // A handle is the address of the base, which is what it is cast back to.
    return static_cast<IOvDeviceInfo*>(m_open.back().get());
}

OV_DEV_HANDLE CDeviceInfoFactory::__OpenDeviceByIP(const std::string& ip, OV_ACCESS_MODE accessMode,
                                                   const OvPlace& place) {
    const COpeningAgency opening(*this, Cipcalc().StringToInt(ip));
    __CheckNotOpenByIP(ip, place);
    auto info = std::make_unique<COvDeviceInfo>();
    info->SetDevice(__OpenOnAnyInterface(ip, accessMode, place));
    info->SetOpenedByIp();
    return __AddHandle(std::move(info));
}

void CDeviceInfoFactory::__CheckNotOpenByIP(const std::string& ip, const OvPlace& place) {
    const std::string id = CGevInterface::IdOfAddress(Cipcalc().StringToInt(ip));
    const CAutoLock lock(m_openLock);
    const auto isOpenAt = [&](const auto& info) {
        // A camera that was opened by its address has no address text of its
        // own; the ID that it was made with tells it.
        const bool isAt = info->deviceAddresses.ipText == ip ||
                          info->GetDevice()->DoGetDeviceInfo().id.value == id;
        return isAt && info->GetDevice()->DoIsDeviceOpen();
    };
    if (std::any_of(m_open.begin(), m_open.end(), isOpenAt) ||
        std::any_of(m_closing.begin(), m_closing.end(), isOpenAt)) {
        OV_RAISE_AT(CInvalidAccessError, place, kAlreadyOpen);
    }
}

std::shared_ptr<IDevice> CDeviceInfoFactory::__OpenOnAnyInterface(const std::string& ip,
                                                                  OV_ACCESS_MODE accessMode,
                                                                  const OvPlace& place) {
    const int64_t address = Cipcalc().StringToInt(ip);
    for (const auto& tl : ITLManager::GetInstance()->DoGetTLList()) {
        if (tl->DoGetTLInfo().tlType.value != "GEV") {
            continue;
        }
        for (const auto& candidate : tl->DoGetInterfaceList()) {
            const auto owner = std::dynamic_pointer_cast<CGevInterface>(candidate);
            if (auto device =
                    owner ? __OpenOnInterface(*owner, address, accessMode, place) : nullptr) {
                return device;
            }
        }
    }
    OV_RAISE_AT(CNotFoundDeviceError, place,
                COvString::MsgComposer("Can't open device by IP: %s", ip.c_str()));
}

std::shared_ptr<IDevice> CDeviceInfoFactory::__OpenOnInterface(CGevInterface& owner,
                                                               int64_t address,
                                                               OV_ACCESS_MODE accessMode,
                                                               const OvPlace& place) {
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
        // The camera may hang on the next adapter.
        OV_LOG(error.what());
        return nullptr;
    }
}
