#pragma once
/// The producer as a whole: whether it is initialised, and its one system module.

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

    /// The facts on the producer, also before `Init`.
    ProducerFacts Facts() const;

    /// Fails with -1004 if it is open already.
    void* OpenSystem();
    /// Closes the system module that has the handle.
    void CloseSystem(void* handle);

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<Session> m_session;
    std::shared_ptr<System> m_system;
};

}  // namespace OvProducer
