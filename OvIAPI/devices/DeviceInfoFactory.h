#pragma once
/// The cameras of the flat interface: searches for them, lists, opens and closes them.

#include <cstdint>
#include <memory>
#include <string>

#include "OvIDef.h"
#include "devices/DeviceSearch.h"
#include "devices/KnownCameras.h"
#include "devices/OpenCameras.h"
#include "devices/OpeningAddresses.h"
#include "errors/Place.h"
#include "events/PollingThread.h"

/// The facade of the objects below, each of which has its own lock. A `place` is the
/// place of the exported function, which failures name.
class CDeviceInfoFactory {
public:
    CDeviceInfoFactory() = default;
    virtual ~CDeviceInfoFactory() = default;
    CDeviceInfoFactory(const CDeviceInfoFactory&) = delete;
    CDeviceInfoFactory& operator=(const CDeviceInfoFactory&) = delete;

    /// Searches for cameras and replaces the device list.
    /// @param count    receives the number of cameras; may be null
    /// @param timeout  how long each producer may search, in milliseconds
    virtual void UpdateDeviceList(uint32_t* count, unsigned timeout);
    /// Opens a camera by its position in the device list, from 1.
    virtual OV_DEV_HANDLE OpenDeviceByIndex(uint32_t index, OV_ACCESS_MODE accessMode,
                                            const OvPlace& place);

    /// Applies to all later searches, also to those that an opening starts.
    void SetSearchMode(OvSearchMode mode) { m_search.SetMode(mode); }
    CKnownCameras& GetKnownCameras() { return m_known; }
    CPollingThread& GetPollingThread() { return m_polling; }

    /// Searches for cameras first if the device list is empty.
    void GetAllDeviceBaseInfo(OV_DEVICE_BASE_INFO* records, size_t* size, const OvPlace& place);
    OV_DEV_HANDLE OpenDevice(const OV_OPEN_PARAM& param, const OvPlace& place);
    /// Throws on a thread that runs one of the camera's callbacks, for which the close
    /// would wait. This is checked before any lock is taken that other threads hold for
    /// long.
    void CloseDevice(const COvDeviceInfo& info, const OvPlace& place);
    /// Closes cameras in reverse order of their opening. Throws at the first camera of
    /// which the calling thread runs a callback. When it returns, cameras that other
    /// threads were closing are closed as well.
    void CloseAllDevice(const OvPlace& place);
    /// Searches all networks for a GigE Vision camera, and doesn't change the device
    /// list.
    /// @param mac  "AA-BB-CC-DD-EE-FF" in capitals, as in the device list
    std::shared_ptr<OVTLClass::IDevice> FindInWholeNetwork(const std::string& mac,
                                                           const OvPlace& place);

private:
    OvDeviceInfoList __CreateKnownDeviceList(unsigned timeout);
    void __UpdateDeviceInWholeNetwork(OvDeviceInfoList& list);
    void __TryUpdate();
    OV_DEV_HANDLE __OpenKnownDevice(const COvDeviceInfo& known, OV_ACCESS_MODE accessMode,
                                    const OvPlace& place);
    OV_DEV_HANDLE __OpenDeviceByIP(const std::string& ip, OV_ACCESS_MODE accessMode,
                                   const OvPlace& place);
    OV_DEV_HANDLE __AddHandle(std::unique_ptr<COvDeviceInfo> info);
    void __Close(COvDeviceInfo& info);

    /// Never destroyed, so that a program that ends with cameras open doesn't wait for
    /// its thread.
    CPollingThread& m_polling = *std::make_unique<CPollingThread>().release();
    CDeviceSearch m_search;
    CKnownCameras m_known;
    COpenCameras m_open;
    COpeningAddresses m_opening;
};
