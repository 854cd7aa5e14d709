#include "framework/exports/Library.h"

#include <utility>

namespace OvProducer {

Library& Library::Instance() {
    static Library library;
    return library;
}

void Library::Init() {
    const std::lock_guard lock(m_mutex);
    if (m_session) {
        throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The producer is initialised already");
    }
    auto session = std::make_shared<Session>();
    session->producer = MakeProducer();
    session->facts = session->producer->Facts();
    m_session = std::move(session);
}

void Library::Close() {
    std::shared_ptr<Session> session;
    std::shared_ptr<System> system;
    {
        const std::lock_guard lock(m_mutex);
        session = std::exchange(m_session, nullptr);
        system = std::exchange(m_system, nullptr);
    }
    if (!session) {
        throw Failure(GenTL::GC_ERR_NOT_INITIALIZED, "The producer isn't initialised");
    }
    if (system) {
        system->Close();
    }
}

std::shared_ptr<Session> Library::Current() const {
    const std::lock_guard lock(m_mutex);
    if (!m_session) {
        throw Failure(GenTL::GC_ERR_NOT_INITIALIZED, "The producer isn't initialised");
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
    return session->handles.Add(m_system);
}

void Library::CloseSystem(void* handle) {
    const std::shared_ptr<System> system = Current()->handles.Get<System>(handle);
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
