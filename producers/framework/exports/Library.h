#pragma once
/// The producer as a whole: initialised or not, and its one system module.

#include <memory>
#include <mutex>

#include "framework/Module.h"
#include "framework/System.h"

namespace OvProducer {

class Library {
public:
    /// One per loaded producer file.
    static Library& Instance();

    /// -1004 when it is initialised.
    void Init();
    /// Closes all that is open; -1002 when it isn't initialised.
    void Close();

    /// The session, which the caller keeps for as long as it works with it;
    /// -1002 when there is none.
    std::shared_ptr<Session> Current() const;

    /// Facts on the producer, also before `Init`.
    ProducerFacts Facts() const;

    /// -1004 when it is open.
    void* OpenSystem();
    /// Closes the module behind the handle.
    void CloseSystem(void* handle);

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<Session> m_session;
    std::shared_ptr<System> m_system;
};

}  // namespace OvProducer
