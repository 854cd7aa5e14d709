#pragma once
/// What all modules have in common: a port, and events.

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "framework/Backend.h"
#include "framework/Event.h"
#include "framework/Handles.h"
#include "framework/Port.h"

namespace OvProducer {

/// What lives from `GCInitLib` to `GCCloseLib`.
struct Session {
    std::unique_ptr<ProducerBackend> producer;
    ProducerFacts facts;
    HandleTable handles;
};

/// Anything with a port.
class PortObject : public Object {
public:
    virtual const Port& GetPort() const = 0;
};

/// A module of the tree. Its handle is void once `Close` began; a call that is
/// under way then still finds a whole object.
class Module : public PortObject {
public:
    Module(Session& session, PortFacts facts) : m_session(session), m_port(std::move(facts)) {}

    const Port& GetPort() const override { return m_port; }

    /// -1004 when it is registered, -1003 when the module doesn't offer it.
    std::shared_ptr<Event> RegisterEvent(GenTL::EVENT_TYPE type);
    /// -1009 when it isn't registered.
    void UnregisterEvent(GenTL::EVENT_TYPE type);
    /// Queues an entry if the event is registered; for events with a queue.
    void PostEvent(GenTL::EVENT_TYPE type, std::span<const std::byte> entry);

protected:
    Session& GetSession() const { return m_session; }
    Port& GetOwnPort() { return m_port; }

    virtual bool OffersEvent(GenTL::EVENT_TYPE type) const = 0;
    virtual std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE type);
    /// Ends an event; its handle is void already.
    virtual void EndEvent(Event& event) { event.Close(); }

    /// Voids the module's handle and ends its events.
    void Retire();

private:
    Session& m_session;
    Port m_port;
    std::mutex m_eventMutex;
    std::map<GenTL::EVENT_TYPE, std::shared_ptr<Event>> m_events;
};

/// The type's number in the module descriptions.
int64_t TlTypeNumber(const std::string& tlType);

/// The four address registers of a GigE Vision module, eight bytes each.
void AddAddressRegisters(RegisterSpace& registers, uint64_t address,
                         const std::function<NetworkAddress()>& read);

}  // namespace OvProducer
