#pragma once
/// The list of known cameras and the table of open handles.

#include <atomic>
#include <condition_variable>
#include <memory>
#include <string>
#include <vector>

#include "DeviceInfo.h"
#include "OvIDef.h"
#include "Place.h"
#include "PollingThread.h"
#include "TLClassLoadTL/OvLock.h"

namespace OVTLClass {
class ITL;
class CGevInterface;
}  // namespace OVTLClass

/// How far a search goes.
enum class OvSearchMode : int32_t { WholeNetwork = 0, LocalNetwork = 1 };

class CDeviceInfoFactory {
public:
    using Known = std::shared_ptr<COvDeviceInfo>;
    using KnownList = std::vector<Known>;

    CDeviceInfoFactory() = default;
    virtual ~CDeviceInfoFactory() = default;
    CDeviceInfoFactory(const CDeviceInfoFactory&) = delete;
    CDeviceInfoFactory& operator=(const CDeviceInfoFactory&) = delete;

    /// Searches for cameras and replaces the known list.
    /// @param count    takes the number of cameras; may be null
    /// @param timeout  for each producer, in milliseconds
    virtual void UpdateDeviceList(uint32_t* count, unsigned timeout);
    /// Opens a camera by its place in the known list, from 1.
    virtual OV_DEV_HANDLE OpenDeviceByIndex(uint32_t index, OV_ACCESS_MODE accessMode,
                                            const OvPlace& place);

    /// For this search and the automatic ones after it.
    void SetSearchMode(OvSearchMode mode) { m_searchMode = mode; }

    // The place is that of the exported function.
    void GetAllDeviceBaseInfo(OV_DEVICE_BASE_INFO* records, size_t* size, const OvPlace& place);
    void GetDeviceIPInfo(uint32_t index, OV_DEVICE_IP_INFO& record, const OvPlace& place);
    OV_DEV_HANDLE OpenDevice(const OV_OPEN_PARAM& param, const OvPlace& place);
    /// Raises on a thread that runs one of the camera's callbacks, before any lock
    /// is taken that is held for long.
    void CloseDevice(const COvDeviceInfo& info, const OvPlace& place);
    /// From the last opened to the first. Raises at the first camera of which the
    /// calling thread runs a callback. Closed are also, at the end, the cameras
    /// that other threads were closing.
    void CloseAllDevice(const OvPlace& place);
    void DeleteKnownList();
    CPollingThread& GetPollingThread() { return m_polling; }
    /// Searches all networks for a GigE Vision camera, listed or not, and leaves
    /// the known list as it is.
    /// @param mac  as text in the form of the list, capitals
    std::shared_ptr<OVTLClass::IDevice> FindInWholeNetwork(const std::string& mac,
                                                           const OvPlace& place);
    /// Gives the first known camera of that device ID a new user ID.
    void SetKnownUserId(const std::string& deviceId, const std::string& userId);

private:
    class COpenDeviceAgency;
    class COpenDataStreamAgency;
    class COpeningAgency;

    KnownList __CreateKnownDeviceList(unsigned timeout);
    void __UpdateDeviceInWholeNetwork(KnownList& list);
    void __TryUpdate();
    bool __IsKnownListEmpty();
    Known __FindByIndex(uint32_t index);
    Known __FindByKey(OV_OPEN_MODE mode, const std::string& key);
    Known __FindByKeyWithUpdate(OV_OPEN_MODE mode, const std::string& key);
    OV_DEV_HANDLE __OpenKnownDevice(const COvDeviceInfo& known, OV_ACCESS_MODE accessMode,
                                    const OvPlace& place);
    OV_DEV_HANDLE __OpenDeviceByIP(const std::string& ip, OV_ACCESS_MODE accessMode,
                                   const OvPlace& place);
    std::shared_ptr<OVTLClass::IDevice> __OpenOnAnyInterface(const std::string& ip,
                                                             OV_ACCESS_MODE accessMode,
                                                             const OvPlace& place);
    /// The camera of that address when it could be opened there, else null.
    static std::shared_ptr<OVTLClass::IDevice> __OpenOnInterface(OVTLClass::CGevInterface& owner,
                                                                 int64_t address,
                                                                 OV_ACCESS_MODE accessMode,
                                                                 const OvPlace& place);
    void __CheckNotOpenByIP(const std::string& ip, const OvPlace& place);
    OV_DEV_HANDLE __AddHandle(std::unique_ptr<COvDeviceInfo> info);
    // These two move a handle to those that are being closed and give it; null when
    // there is none, and no other thread closes it any more.
    COvDeviceInfo* __BeginClosing(const COvDeviceInfo& info);
    COvDeviceInfo* __BeginClosingLast(const OvPlace& place);
    void __Close(COvDeviceInfo& info);
    void __EndClosing(const COvDeviceInfo& info);

    using HandleList = std::vector<std::unique_ptr<COvDeviceInfo>>;

    /// Never destroyed: a program that ends with cameras open waits for no thread.
    CPollingThread& m_polling = *std::make_unique<CPollingThread>().release();
    KnownList m_known;
    HandleList m_open;
    /// Taken off the open list by a thread that closes them. Their callbacks may
    /// still run, and the close waits for these, so it holds no lock of this class.
    HandleList m_closing;
    std::condition_variable_any m_closed;
    std::vector<int64_t> m_opening;
    /// An address is none of these any more.
    std::condition_variable_any m_opened;
    OVTLClass::CLock m_knownLock{OVTLClass::LockRank::KnownDevices};
    /// Of both lists of handles.
    OVTLClass::CLock m_openLock{OVTLClass::LockRank::Handles};
    OVTLClass::CLock m_openingLock{OVTLClass::LockRank::OpeningAddresses};
    OVTLClass::CLock m_updateLock{OVTLClass::LockRank::Search};
    /// A search that an opening starts reads it without the API lock.
    std::atomic<OvSearchMode> m_searchMode{OvSearchMode::WholeNetwork};
};
