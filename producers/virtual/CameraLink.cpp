#include "virtual/CameraLink.h"

#include <utility>

#include "framework/Event.h"
#include "framework/Failure.h"

namespace OvVirtual {
namespace {

void Require(bool isUsable) {
    if (!isUsable) {
        throw OvProducer::Failure(GenTL::GC_ERR_CUSTOM_ID, "The camera is off the bus");
    }
}

}  // namespace

void CameraLink::Open(std::weak_ptr<OvProducer::EventSink> host) {
    Require(IsOnBus());
    const std::lock_guard lock(m_mutex);
    m_host = std::move(host);
    m_isLost = false;
}

void CameraLink::Close() {
    const std::lock_guard lock(m_mutex);
    m_host.reset();
    m_isLost = false;
}

bool CameraLink::IsOnBus() const {
    const std::lock_guard lock(m_mutex);
    return Clock::now() >= m_back;
}

bool CameraLink::IsLost() const {
    const std::lock_guard lock(m_mutex);
    return m_isLost;
}

void CameraLink::CheckUsable() const {
    Require(IsOnBus() && !IsLost());
}

void CameraLink::DropOff(std::chrono::milliseconds time) {
    std::shared_ptr<OvProducer::EventSink> host;
    {
        const std::lock_guard lock(m_mutex);
        m_isLost = true;
        m_back = Clock::now() + time;
        host = m_host.lock();
    }
    if (host) {
        host->Post(GenTL::EVENT_DEVICE_OFFLINE, {});
    }
}

void CameraLink::Send(CameraEvent event, uint64_t frame, uint64_t ticks) {
    std::shared_ptr<OvProducer::EventSink> host;
    {
        const std::lock_guard lock(m_mutex);
        host = m_isLost ? nullptr : m_host.lock();
    }
    if (host) {
        const EventItem item = MakeEventItem(event, frame, ticks);
        host->Post(GenTL::EVENT_REMOTE_DEVICE, OvProducer::MakeMessageEntry(EventId(event), item));
    }
}

}  // namespace OvVirtual
