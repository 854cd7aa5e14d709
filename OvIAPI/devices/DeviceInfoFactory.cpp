// Finding, opening and closing cameras. No lock is held while a producer opens a camera,
// which may take seconds; each table locks itself for as long as it is read or changed.

#include "devices/DeviceInfoFactory.h"

#include <algorithm>
#include <cstdlib>

#include "Base/GCException.h"
#include "TLClassModule/IDataStream.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"
#include "devices/DeviceOpening.h"
#include "frames/Acquisition.h"
#include "gige/Ipcalc.h"

using namespace OVTLClass;

namespace {

constexpr unsigned kAutomaticTimeout = 200;

}  // namespace

OvDeviceInfoList CDeviceInfoFactory::__CreateKnownDeviceList(unsigned timeout) {
    try {
        return m_search.Run(timeout);
    } catch (const CUnexpectedError& error) {
        OV_RAISE(CUnexpectedError, error.what());
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        OV_RAISE(CUnexpectedError, error.what());
    }
}

void CDeviceInfoFactory::UpdateDeviceList(uint32_t* count, unsigned timeout) {
    const size_t known = m_known.Replace(__CreateKnownDeviceList(timeout));
    if (count != nullptr) {
        *count = static_cast<uint32_t>(known);
    }
}

void CDeviceInfoFactory::__TryUpdate() {
    // Doesn't wait for a search that another thread runs: the caller goes on with the
    // cameras that are known.
    const auto turn = m_search.TryTakeTurn();
    if (!turn) {
        return;
    }
    uint32_t count = 0;
    try {
        UpdateDeviceList(&count, kAutomaticTimeout);
    } catch (const std::exception&) {
        // A search that the program hasn't asked for fails without a text of its own.
        throw std::exception();
    }
}

void CDeviceInfoFactory::GetAllDeviceBaseInfo(OV_DEVICE_BASE_INFO* records, size_t* size,
                                              const OvPlace& place) {
    if (m_known.IsEmpty()) {
        __TryUpdate();
    }
    m_known.GetBaseInfo(records, size, place);
}

OV_DEV_HANDLE CDeviceInfoFactory::OpenDeviceByIndex(uint32_t index, OV_ACCESS_MODE accessMode,
                                                    const OvPlace& place) {
    if (index == 0) {
        OV_RAISE_AT(COutOfRangeError, place, "Index should not be 0");
    }
    CKnownCameras::Camera known = m_known.FindByIndex(index);
    if (!known) {
        __TryUpdate();
        known = m_known.FindByIndex(index);
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
    CKnownCameras::Camera known = m_known.FindByKey(param.openMode, key);
    if (!known) {
        __TryUpdate();
        known = m_known.FindByKey(param.openMode, key);
    }
    if (known) {
        return __OpenKnownDevice(*known, param.accessMode, place);
    }
    if (param.openMode != OV_OPEN_IP) {
        OV_RAISE_AT(CNotFoundDeviceError, place, "Not found device");
    }
    return __OpenDeviceByIP(key, param.accessMode, place);
}

OV_DEV_HANDLE CDeviceInfoFactory::__OpenKnownDevice(const COvDeviceInfo& known,
                                                    OV_ACCESS_MODE accessMode,
                                                    const OvPlace& place) {
    // What is opened here closes again unless it is committed, in reverse: the stream
    // before its device.
    COpenDeviceAgency device(*known.GetDevice(), accessMode);
    COpenDataStreamAgency stream(*known.GetDevice(), place);
    OV_DEV_HANDLE const handle = __AddHandle(known.Clone());
    stream.Commit();
    device.Commit();
    return handle;
}

OV_DEV_HANDLE CDeviceInfoFactory::__OpenDeviceByIP(const std::string& ip, OV_ACCESS_MODE accessMode,
                                                   const OvPlace& place) {
    const int64_t address = Cipcalc().StringToInt(ip);
    // Two threads that open one address would each make a device for it.
    m_opening.Begin(address);
    const CRollback ended([this, address] { m_opening.End(address); });
    if (m_open.IsOpenAt(ip)) {
        OV_RAISE_AT(CInvalidAccessError, place, "The device has already been opened");
    }
    const std::shared_ptr<IDevice> device = OpenOnAnyInterface(ip, accessMode, place);
    // If the table has no memory for the handle, the camera is closed here: nobody else
    // could.
    CRollback close([&device] { device->DoCloseDevice(); });
    auto info = std::make_unique<COvDeviceInfo>();
    info->SetDevice(device);
    info->SetOpenedByIp();
    OV_DEV_HANDLE const handle = __AddHandle(std::move(info));
    close.Commit();
    return handle;
}

OV_DEV_HANDLE CDeviceInfoFactory::__AddHandle(std::unique_ptr<COvDeviceInfo> info) {
    info->GetPolling().Begin(*info->GetDevice(), *info->GetStream()->GetNodeMapRef());
    return m_open.Add(std::move(info));
}

void CDeviceInfoFactory::CloseDevice(const COvDeviceInfo& info, const OvPlace& place) {
    CheckMayClose(info, "close device", place);
    if (COvDeviceInfo* const closing = m_open.BeginClosing(info)) {
        __Close(*closing);
    }
}

void CDeviceInfoFactory::CloseAllDevice(const OvPlace& place) {
    while (COvDeviceInfo* const last = m_open.BeginClosingLast(place)) {
        __Close(*last);
    }
}

/// Runs to its end whatever fails, because the handle is void afterwards.
void CDeviceInfoFactory::__Close(COvDeviceInfo& info) {
    const CRollback ended([this, &info] { m_open.EndClosing(info); });
    // From the outside in: first nobody calls back any more, then no frames arrive, then
    // stream and device go.
    m_polling.Detach(info.GetPolling());
    EndAcquisition(info);
    // Before the nodes themselves: none of their handles leads to what is gone.
    info.GetNodes().Release();
    OV_RUN_LOGGED([&info] { info.GetStream()->DoCloseDataStream(); });
    OV_RUN_LOGGED([&info] { info.GetDevice()->DoCloseDevice(); });
}

void CDeviceInfoFactory::__UpdateDeviceInWholeNetwork(OvDeviceInfoList& list) {
    try {
        list = SearchWholeNetwork();
    } catch (const std::exception& error) {
        OV_RAISE(CUnexpectedError, error.what());
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        OV_RAISE(CUnexpectedError, error.what());
    }
}

std::shared_ptr<IDevice> CDeviceInfoFactory::FindInWholeNetwork(const std::string& mac,
                                                                const OvPlace& place) {
    OvDeviceInfoList list;
    __UpdateDeviceInWholeNetwork(list);
    const auto found = std::find_if(list.begin(), list.end(), [&mac](const auto& camera) {
        return camera->deviceAddresses.macText == mac;
    });
    if (found == list.end()) {
        OV_RAISE_AT(CNotFoundDeviceError, place, "Not Found Device");
    }
    if ((*found)->GetDevice() == nullptr) {
        OV_RAISE_AT(CUnexpectedError, place, "Unexpected Error");
    }
    return (*found)->GetDevice();
}
