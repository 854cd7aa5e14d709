// The known list: how it is made, and how it is shown.

#include <algorithm>
#include <cstring>

#include "Base/GCException.h"
#include "DeviceInfoFactory.h"
#include "DeviceReader.h"
#include "TLClassLoadTL/OvException.h"
#include "TLClassMain/TLManager.h"
#include "TLClassMain/UpdateAgency.h"

using namespace OVTLClass;

namespace {

constexpr unsigned kAutomaticTimeout = 200;
constexpr unsigned kWholeNetworkInterval = 1;

/// Zero-terminated copy of at most `limit` characters into a zeroed field.
template <size_t Size>
void CopyText(char (&field)[Size], const std::string& text, size_t limit) {
    static_assert(Size > 0);
    std::memcpy(field, text.c_str(), std::min({text.size(), limit, Size - 1}));
}

constexpr size_t kShortText = 31;
constexpr size_t kIdText = 64;
constexpr size_t kLongText = 128;

void Fill(OV_DEVICE_BASE_INFO& record, const COvDeviceInfo& info) {
    record = {};
    CopyText(record.szVendorName, info.vendorName, kShortText);
    CopyText(record.szModelName, info.modelName, kShortText);
    CopyText(record.szSN, info.serialNumber, kShortText);
    CopyText(record.szDisplayName, info.displayName, kLongText);
    CopyText(record.szDeviceID, info.deviceId, kIdText);
    CopyText(record.szUserID, info.GetUserId(), kIdText);
    record.accessStatus = info.GetAccessStatus();
    record.deviceClass = info.GetDeviceClass();
}

void Fill(OV_DEVICE_IP_INFO& record, const COvDeviceInfo& info) {
    record = {};
    CopyText(record.szDeviceID, info.deviceId, kIdText);
    CopyText(record.szMAC, info.deviceAddresses.macText, kShortText);
    CopyText(record.szIP, info.deviceAddresses.ipText, kShortText);
    CopyText(record.szSubnetMask, info.deviceAddresses.subnetMaskText, kShortText);
    CopyText(record.szGateway, info.deviceAddresses.gatewayText, kShortText);
    CopyText(record.szNICMAC, info.adapterAddresses.macText, kShortText);
    CopyText(record.szNICIP, info.adapterAddresses.ipText, kShortText);
    CopyText(record.szNICSubnetMask, info.adapterAddresses.subnetMaskText, kShortText);
    CopyText(record.szNICGateway, info.adapterAddresses.gatewayText, kShortText);
    CopyText(record.szNICDescription, info.adapterDescription, kLongText);
}

bool IsGev(const std::shared_ptr<ITL>& tl) {
    return std::dynamic_pointer_cast<CGevTL>(tl) != nullptr;
}

void SearchAll(const TLList& tls, OvSearchMode mode, unsigned timeout) {
    TLList others;
    std::remove_copy_if(tls.begin(), tls.end(), std::back_inserter(others), &IsGev);
    bool changed = false;
    CGevUpdateAgency gev(CTLQuery::QueryGevTLFromTLArray(tls));
    if (mode == OvSearchMode::LocalNetwork) {
        gev.DoUpdateInLocalNetwork(timeout, 0, changed);
    } else {
        gev.DoUpdateInWholeNetwork(timeout, kWholeNetworkInterval, changed);
    }
    CGenericUpdateAgency(others).DoUpdate(timeout, 0, changed);
}

}  // namespace

CDeviceInfoFactory::KnownList CDeviceInfoFactory::__CreateKnownDeviceList(unsigned timeout) {
    const CAutoLock lock(m_updateLock);
    try {
        const TLList tls = ITLManager::GetInstance()->DoGetTLList();
        SearchAll(tls, m_searchMode, timeout);
        KnownList list;
        for (const auto& tl : tls) {
            const OvDeviceInfoList devices = ReadDevicesOf(*tl);
            list.insert(list.end(), devices.begin(), devices.end());
        }
        return list;
    } catch (const CUnexpectedError& error) {
        OV_RAISE(CUnexpectedError, error.what());
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        OV_RAISE(CUnexpectedError, error.what());
    }
}

void CDeviceInfoFactory::UpdateDeviceList(uint32_t* count, unsigned timeout) {
    KnownList list = __CreateKnownDeviceList(timeout);
    const CAutoLock lock(m_knownLock);
    m_known.swap(list);
    if (count != nullptr) {
        *count = static_cast<uint32_t>(m_known.size());
    }
}

void CDeviceInfoFactory::__TryUpdate() {
    // A search that runs on another thread is not waited for: the caller goes
    // on with the list as it stands.
    if (!m_updateLock.TryLock()) {
        return;
    }
    const std::unique_ptr<CLock, void (*)(CLock*)> unlock(&m_updateLock,
                                                          [](CLock* lock) { lock->Unlock(); });
    uint32_t count = 0;
    try {
        UpdateDeviceList(&count, kAutomaticTimeout);
    } catch (const std::exception&) {
        throw std::exception();
    }
}

bool CDeviceInfoFactory::__IsKnownListEmpty() {
    const CAutoLock lock(m_knownLock);
    return m_known.empty();
}

void CDeviceInfoFactory::GetAllDeviceBaseInfo(OV_DEVICE_BASE_INFO* records, size_t* size,
                                              const OvPlace& place) {
    if (__IsKnownListEmpty()) {
        __TryUpdate();
    }
    const CAutoLock lock(m_knownLock);
    const size_t needed = m_known.size() * sizeof(OV_DEVICE_BASE_INFO);
    if (records != nullptr) {
        if (needed > *size) {
            *size = 0;
            OV_RAISE_AT(CNeedMoreBufferError, place, "Need more buffer for all device info");
        }
        for (size_t i = 0; i < m_known.size(); ++i) {
            Fill(records[i], *m_known[i]);
        }
    }
    *size = needed;
}

void CDeviceInfoFactory::GetDeviceIPInfo(uint32_t index, OV_DEVICE_IP_INFO& record,
                                         const OvPlace& place) {
    const CAutoLock lock(m_knownLock);
    if (index == 0 || index > m_known.size()) {
        OV_RAISE_AT(COutOfRangeError, place, "Index out of range");
    }
    const COvDeviceInfo& info = *m_known[index - 1];
    if (info.GetDeviceClass() != OV_DEVICE_CLASS_GEV) {
        OV_RAISE_AT(CInvalidParameterError, place, "The device is not GEV");
    }
    Fill(record, info);
}

void CDeviceInfoFactory::DeleteKnownList() {
    const CAutoLock lock(m_knownLock);
    m_known.clear();
}

void CDeviceInfoFactory::SetKnownUserId(const std::string& deviceId, const std::string& userId) {
    const CAutoLock lock(m_knownLock);
    const auto found =
        std::find_if(m_known.begin(), m_known.end(),
                     [&deviceId](const Known& known) { return known->deviceId == deviceId; });
    if (found != m_known.end()) {
        (*found)->SetUserId(userId);
    }
}
