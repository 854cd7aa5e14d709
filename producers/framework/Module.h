#pragma once
/// The base of all modules: a port, and events.

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "framework/Backend.h"
#include "framework/Event.h"
#include "framework/Handles.h"
#include "framework/Port.h"

namespace OvProducer {

/// What lives from `GCInitLib` to `GCCloseLib`, and as long as one of its objects is in use.
struct Session : std::enable_shared_from_this<Session> {
    explicit Session(HandleTable& table) : handles(table) {}

    /// Gives the object a handle. The session lives at least as long as the object.
    void* Add(const std::shared_ptr<Object>& object) {
        return handles.Add(object, shared_from_this());
    }

    HandleTable& handles;
    std::unique_ptr<ProducerBackend> producer;
    ProducerFacts facts;
};

/// An object with a port.
class PortObject : public Object {
public:
    virtual const Port& GetPort() const = 0;
    PortObject* AsPortObject() final { return this; }
};

/// Time-out of a list update that a feature starts, in milliseconds.
inline constexpr uint64_t kFeatureUpdateTimeout = 200;

/// A module of the tree. Its handle is invalid as soon as its close begins. A call that
/// is under way then may still use the object.
class Module : public PortObject {
public:
    Module(Session& session, PortFacts facts) : m_session(session), m_port(std::move(facts)) {}

    const Port& GetPort() const override { return m_port; }

    /// Fails with -1004 if the event is registered already, with -1003 if the module
    /// doesn't have it.
    std::shared_ptr<Event> RegisterEvent(GenTL::EVENT_TYPE type);
    /// Fails with -1009 if the event isn't registered.
    void UnregisterEvent(GenTL::EVENT_TYPE type);
    /// Adds an entry to the event's queue if the event is registered.
    void PostEvent(GenTL::EVENT_TYPE type, std::span<const std::byte> entry);

protected:
    Session& GetSession() const { return m_session; }
    Port& GetOwnPort() { return m_port; }

    virtual bool OffersEvent(GenTL::EVENT_TYPE type) const = 0;
    virtual std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE type);
    /// Ends an event, whose handle has been removed already.
    virtual void EndEvent(Event& event) { event.Close(); }

    /// Removes the module's handle and ends its events.
    void Retire();

private:
    Session& m_session;
    Port m_port;
    std::mutex m_eventMutex;
    std::map<GenTL::EVENT_TYPE, std::shared_ptr<Event>> m_events;
};

/// Returns the number that the transport layer type has in the module descriptions.
int64_t TlTypeNumber(const std::string& tlType);

/// Adds the four address registers of a GigE Vision module, eight bytes each.
void AddAddressRegisters(RegisterSpace& registers, uint64_t address,
                         const std::function<NetworkAddress()>& read);

}  // namespace OvProducer
