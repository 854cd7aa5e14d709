#include "framework/Module.h"

#include <utility>

namespace OvProducer {

std::shared_ptr<Event> Module::RegisterEvent(GenTL::EVENT_TYPE type) {
    if (!OffersEvent(type)) {
        throw Failure(GenTL::GC_ERR_NOT_IMPLEMENTED,
                      "The module doesn't offer event type " + std::to_string(type));
    }
    const std::lock_guard lock(m_eventMutex);
    if (m_events.contains(type)) {
        throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The event is registered already");
    }
    std::shared_ptr<Event> event = MakeEvent(type);
    m_session.Add(event);
    m_events.emplace(type, event);
    return event;
}

void Module::UnregisterEvent(GenTL::EVENT_TYPE type) {
    std::shared_ptr<Event> event;
    {
        const std::lock_guard lock(m_eventMutex);
        const auto found = m_events.find(type);
        if (found == m_events.end()) {
            throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "The event isn't registered");
        }
        event = std::move(found->second);
        m_events.erase(found);
    }
    m_session.handles.Remove(event->Handle());
    EndEvent(*event);
}

void Module::PostEvent(GenTL::EVENT_TYPE type, std::span<const std::byte> entry) {
    const std::lock_guard lock(m_eventMutex);
    const auto found = m_events.find(type);
    if (found != m_events.end()) {
        if (auto* queued = dynamic_cast<QueuedEvent*>(found->second.get())) {
            queued->Post(entry);
        }
    }
}

std::shared_ptr<Event> Module::MakeEvent(GenTL::EVENT_TYPE type) {
    return std::make_shared<QueuedEvent>(type);
}

void Module::Retire() {
    m_session.handles.Remove(Handle());
    std::map<GenTL::EVENT_TYPE, std::shared_ptr<Event>> events;
    {
        const std::lock_guard lock(m_eventMutex);
        events.swap(m_events);
    }
    for (const auto& [type, event] : events) {
        m_session.handles.Remove(event->Handle());
        EndEvent(*event);
    }
}

int64_t TlTypeNumber(const std::string& tlType) {
    constexpr std::pair<const char*, int64_t> numbers[] = {
        {GenTL::TLTYPE_MIXED, 0}, {GenTL::TLTYPE_CUSTOM, 1}, {GenTL::TLTYPE_GEV, 2},
        {GenTL::TLTYPE_U3V, 3},   {GenTL::TLTYPE_CL, 4},     {GenTL::TLTYPE_CLHS, 5},
        {GenTL::TLTYPE_CXP, 6},
    };
    for (const auto& [name, number] : numbers) {
        if (tlType == name) {
            return number;
        }
    }
    return 1;
}

void AddAddressRegisters(RegisterSpace& registers, uint64_t address,
                         const std::function<NetworkAddress()>& read) {
    constexpr int64_t NetworkAddress::*fields[] = {&NetworkAddress::mac, &NetworkAddress::ip,
                                                   &NetworkAddress::mask, &NetworkAddress::gateway};
    for (const auto field : fields) {
        registers.AddInteger(address, 8, [read, field] { return read().*field; });
        address += 8;
    }
}

}  // namespace OvProducer
