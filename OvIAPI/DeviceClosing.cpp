// From an open handle to a closed camera.

#include <algorithm>

#include "Acquisition.h"
#include "CallbackCheck.h"
#include "DeviceInfoFactory.h"
#include "TLClassMain/Agency.h"
#include "TLClassMain/DataStream.h"
#include "TLClassMain/Device.h"

using namespace OVTLClass;

namespace {

auto IsHandle(const COvDeviceInfo& info) {
    return [&info](const auto& handle) { return handle.get() == &info; };
}

constexpr std::initializer_list<CallbackKind> kRefused = {
    CallbackKind::Capture, CallbackKind::Event, CallbackKind::Offline, CallbackKind::Feature};

/// Goes to its end whatever fails: the handle is void afterwards.
void Close(COvDeviceInfo& info) {
    EndAcquisition(info);
    OV_RUN_LOGGED([&info] { info.GetStream()->DoCloseDataStream(); });
    OV_RUN_LOGGED([&info] { info.GetDevice()->DoCloseDevice(); });
}

}  // namespace

void CDeviceInfoFactory::CloseDevice(const COvDeviceInfo& info, const OvPlace& place) {
    CheckNotInCallback(*info.GetDevice(), "close device", kRefused, place);
    if (COvDeviceInfo* const handle = __BeginClosing(info)) {
        __Close(*handle);
    }
}

void CDeviceInfoFactory::CloseAllDevice(const OvPlace& place) {
    while (COvDeviceInfo* const last = __BeginClosingLast(place)) {
        __Close(*last);
    }
}

COvDeviceInfo* CDeviceInfoFactory::__BeginClosing(const COvDeviceInfo& info) {
    const CAutoLock lock(m_openLock);
    const auto found = std::find_if(m_open.begin(), m_open.end(), IsHandle(info));
    if (found == m_open.end()) {
        m_closed.wait(m_openLock, [&] {
            return std::none_of(m_closing.begin(), m_closing.end(), IsHandle(info));
        });
        return nullptr;
    }
    m_closing.push_back(std::move(*found));
    m_open.erase(found);
    return m_closing.back().get();
}

COvDeviceInfo* CDeviceInfoFactory::__BeginClosingLast(const OvPlace& place) {
    const CAutoLock lock(m_openLock);
    for (const auto& closing : m_closing) {
        CheckNotInCallback(*closing->GetDevice(), "close lib", kRefused, place);
    }
    if (m_open.empty()) {
        m_closed.wait(m_openLock, [this] { return m_closing.empty(); });
        return nullptr;
    }
    CheckNotInCallback(*m_open.back()->GetDevice(), "close lib", kRefused, place);
    return __BeginClosing(*m_open.back());
}

void CDeviceInfoFactory::__Close(COvDeviceInfo& info) {
    const CRollback ended([this, &info] { __EndClosing(info); });
    m_polling.Detach(info.GetPolling());
    Close(info);
}

void CDeviceInfoFactory::__EndClosing(const COvDeviceInfo& info) {
    const CAutoLock lock(m_openLock);
    m_closing.erase(std::find_if(m_closing.begin(), m_closing.end(), IsHandle(info)));
    m_closed.notify_all();
}
