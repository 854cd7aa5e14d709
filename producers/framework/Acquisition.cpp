#include "framework/Acquisition.h"

#include <exception>
#include <string>

#include "Base/UserLog.h"

namespace OvProducer {

void Acquisition::Start(uint64_t frames) {
    const std::lock_guard lock(m_control);
    if (m_grabbing) {
        throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The acquisition runs already");
    }
    // The last run may have ended by its frame count.
    EndRun();
    m_engine.Begin();
    m_pool.ResetCounters();
    m_abort = std::stop_source();
    m_grabbing = true;
    m_thread =
        std::jthread([this, abort = m_abort.get_token(), frames](const std::stop_token& stop) {
            RunEngine({stop, abort, frames});
            m_grabbing = false;
        });
}

void Acquisition::Stop(bool kill) {
    {
        const std::lock_guard lock(m_control);
        if (!m_thread.joinable()) {
            throw Failure(GenTL::GC_ERR_RESOURCE_IN_USE, "The acquisition doesn't run");
        }
    }
    Halt(kill);
}

void Acquisition::Halt(bool kill) {
    const std::lock_guard lock(m_control);
    if (kill) {
        m_abort.request_stop();
    }
    EndRun();
}

void Acquisition::RunEngine(const EngineRun& run) {
    try {
        m_engine.Run(m_pool, run);
    } catch (const std::exception& failure) {
        ProducerLog().Write("Producer", GenICam_3_0_ORVANE::LogError,
                            std::string("The acquisition has ended: ") + failure.what());
    }
}

void Acquisition::EndRun() {
    if (m_thread.joinable()) {
        m_thread.request_stop();
        m_thread.join();
        m_engine.End();
    }
}

}  // namespace OvProducer
