#include "framework/exports/Library.h"

#include <utility>

#include "Base/EachFrame.h"

namespace OvProducer {

OV_EACH_FRAME Library& Library::Instance() {
    static Library library;
    return library;
}

void Library::Init() {
    const std::lock_guard lock(m_mutex);
    if (m_session) {
        throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The producer is initialised already");
    }
    auto session = std::make_shared<Session>(m_handles);
    session->producer = MakeProducer();
    session->facts = session->producer->Facts();
    m_session = std::move(session);
    m_isInitialised.store(true, std::memory_order_release);
}

void Library::Close() {
    std::shared_ptr<Session> session;
    std::shared_ptr<System> system;
    {
        const std::lock_guard lock(m_mutex);
        session = std::exchange(m_session, nullptr);
        system = std::exchange(m_system, nullptr);
        m_isInitialised.store(false, std::memory_order_release);
    }
    if (!session) {
        ThrowNotInitialised();
    }
    if (system) {
        system->Close();
    }
    // What other threads were just opening.
    m_handles.RemoveAllOf(session.get());
}

void Library::ThrowNotInitialised() {
    throw Failure(GenTL::GC_ERR_NOT_INITIALIZED, "The producer isn't initialised");
}

std::shared_ptr<Session> Library::Current() const {
    const std::lock_guard lock(m_mutex);
    if (!m_session) {
        ThrowNotInitialised();
    }
    return m_session;
}

ProducerFacts Library::Facts() const {
    {
        const std::lock_guard lock(m_mutex);
        if (m_session) {
            return m_session->facts;
        }
    }
    return MakeProducer()->Facts();
}

void* Library::OpenSystem() {
    const std::shared_ptr<Session> session = Current();
    const std::lock_guard lock(m_mutex);
    if (m_session != session) {
        throw Failure(GenTL::GC_ERR_NOT_INITIALIZED, "The producer was closed meanwhile");
    }
    if (m_system) {
        throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The system is open already");
    }
    m_system = std::make_shared<System>(*session);
    return session->Add(m_system);
}

void Library::CloseSystem(void* handle) {
    const std::shared_ptr<System> system = Get<System>(handle);
    {
        const std::lock_guard lock(m_mutex);
        if (m_system != system) {
            throw Failure(GenTL::GC_ERR_INVALID_HANDLE, "The system is closed");
        }
        m_system = nullptr;
    }
    system->Close();
}

}  // namespace OvProducer
