#pragma once
/// The cameras of the flat interface, from the search to the closed handle.

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

/// The face of what knows, opens and closes cameras, each of which has its own lock.
/// A place is that of the exported function.
class CDeviceInfoFactory {
public:
    CDeviceInfoFactory() = default;
    virtual ~CDeviceInfoFactory() = default;
    CDeviceInfoFactory(const CDeviceInfoFactory&) = delete;
    CDeviceInfoFactory& operator=(const CDeviceInfoFactory&) = delete;

    /// Searches for cameras and replaces the known ones.
    /// @param count    takes the number of cameras; may be null
    /// @param timeout  for each producer, in milliseconds
    virtual void UpdateDeviceList(uint32_t* count, unsigned timeout);
    /// Opens a camera by its place among the known ones, from 1.
    virtual OV_DEV_HANDLE OpenDeviceByIndex(uint32_t index, OV_ACCESS_MODE accessMode,
                                            const OvPlace& place);

    /// For the searches from now on, the automatic ones included.
    void SetSearchMode(OvSearchMode mode) { m_search.SetMode(mode); }
    CKnownCameras& GetKnownCameras() { return m_known; }
    CPollingThread& GetPollingThread() { return m_polling; }

    /// Searches first when no camera is known.
    void GetAllDeviceBaseInfo(OV_DEVICE_BASE_INFO* records, size_t* size, const OvPlace& place);
    OV_DEV_HANDLE OpenDevice(const OV_OPEN_PARAM& param, const OvPlace& place);
    /// Raises on a thread that runs one of the camera's callbacks, before any lock
    /// is taken that is held for long.
    void CloseDevice(const COvDeviceInfo& info, const OvPlace& place);
    /// From the last opened to the first. Raises at the first camera of which the
    /// calling thread runs a callback. When it returns, cameras that other threads were
    /// closing are closed, too.
    void CloseAllDevice(const OvPlace& place);
    /// Searches all networks for a GigE Vision camera, known or not, and leaves the
    /// known cameras as they are.
    /// @param mac  as text in the form of the list, capitals
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

    /// Never destroyed: a program that ends with cameras open waits for no thread.
    CPollingThread& m_polling = *std::make_unique<CPollingThread>().release();
    CDeviceSearch m_search;
    CKnownCameras m_known;
    COpenCameras m_open;
    COpeningAddresses m_opening;
};
