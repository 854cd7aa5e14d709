#pragma once
/// The producer as a whole: whether it is initialised, and its one system module.

#include <atomic>
#include <memory>
#include <mutex>

#include "framework/Module.h"
#include "framework/System.h"

namespace OvProducer {

class Library {
public:
    /// The one instance of a loaded producer file.
    static Library& Instance();

    /// Fails with -1004 if it is initialised already.
    void Init();
    /// Closes all modules. Fails with -1002 if it isn't initialised.
    void Close();

    /// Returns the session, which lives as long as the caller keeps the result. Fails
    /// with -1002 if there is none.
    std::shared_ptr<Session> Current() const;
    /// Returns the object of the handle, whose session lives at least as long. Takes no lock but
    /// the handle's own and counts nothing that other modules count: calls on several cameras
    /// would slow each other down. Fails with -1002 without a session and with -1006 for a handle
    /// that isn't that of such an object.
    template <typename T>
    std::shared_ptr<T> Get(const void* handle) const {
        if (!m_isInitialised.load(std::memory_order_acquire)) {
            ThrowNotInitialised();
        }
        return m_handles.Get<T>(handle);
    }

    /// The facts on the producer, also before `Init`.
    ProducerFacts Facts() const;

    /// Fails with -1004 if it is open already.
    void* OpenSystem();
    /// Closes the system module that has the handle.
    void CloseSystem(void* handle);

private:
    [[noreturn]] static void ThrowNotInitialised();

    /// Of all sessions, so that no call has to find out first which session it belongs to.
    HandleTable m_handles;
    mutable std::mutex m_mutex;
    std::atomic<bool> m_isInitialised = false;  ///< whether there is a session
    std::shared_ptr<Session> m_session;
    std::shared_ptr<System> m_system;
};

}  // namespace OvProducer
