#include "TestFaults.h"

#include <chrono>
#include <thread>

#include "Base/EachFrame.h"
#include "framework/Failure.h"

namespace OvTest {
namespace {

void ThrowPlanned(Function function, GenTL::GC_ERROR code) {
    if (code != GenTL::GC_ERR_SUCCESS) {
        throw OvProducer::Failure(
            code, "Planned failure of " + std::string(OvProducer::NameOf(function)));
    }
}

}  // namespace

GenTL::GC_ERROR Faults::Strike(std::vector<Planned>& planned) {
    GenTL::GC_ERROR code = GenTL::GC_ERR_SUCCESS;
    std::erase_if(planned, [&](Planned& fault) {
        if (fault.calls > 1) {
            --fault.calls;
            return false;
        }
        code = fault.code;
        return fault.calls == 1;
    });
    return code;
}

OV_EACH_FRAME void Faults::Enter(Function function) {
    if (!m_watching) {
        return;
    }
    std::unique_lock lock(m_mutex);
    State& state = Of(function);
    ++state.entered;
    m_log.append(OvProducer::NameOf(function)).push_back('\n');
    m_changed.notify_all();
    m_changed.wait(lock, [&] { return !state.blocked; });
    const GenTL::GC_ERROR code = Strike(state.before);
    const bool isSkipped = Strike(state.skipped) != GenTL::GC_ERR_SUCCESS;
    const unsigned delay = state.delay;
    lock.unlock();
    std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    ThrowPlanned(function, code);
    if (isSkipped) {
        throw OvProducer::Failure(GenTL::GC_ERR_SUCCESS, "");
    }
}

OV_EACH_FRAME void Faults::Leave(Function function) {
    if (!m_watching) {
        return;
    }
    std::unique_lock lock(m_mutex);
    State& state = Of(function);
    const GenTL::GC_ERROR code = Strike(state.after);
    state.succeeded += code == GenTL::GC_ERR_SUCCESS ? 1 : 0;
    lock.unlock();
    ThrowPlanned(function, code);
}

OV_EACH_FRAME void Faults::Ask(Function function, std::int32_t command) {
    if (!m_watching) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    const State& state = Of(function);
    const auto found = state.commands.find(command);
    if (found != state.commands.end()) {
        ThrowPlanned(function, found->second);
    }
}

std::size_t Faults::ReportedSize(Function function, std::size_t size) {
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(static_cast<std::int64_t>(size) + Of(function).sizeDelta);
}

void Faults::Reset() {
    m_watching = true;
    m_offersStack = false;
    const std::lock_guard lock(m_mutex);
    m_states = {};
    m_log.clear();
    m_changed.notify_all();
}

void Faults::FailCall(Function function, unsigned nth, GenTL::GC_ERROR code) {
    const std::lock_guard lock(m_mutex);
    Of(function).before.push_back({nth, code});
}

void Faults::FailAfterCall(Function function, unsigned nth, GenTL::GC_ERROR code) {
    const std::lock_guard lock(m_mutex);
    Of(function).after.push_back({nth, code});
}

void Faults::SkipCall(Function function, unsigned nth) {
    const std::lock_guard lock(m_mutex);
    Of(function).skipped.push_back({nth, GenTL::GC_ERR_ERROR});
}

void Faults::FailCommand(Function function, std::int32_t command, GenTL::GC_ERROR code) {
    const std::lock_guard lock(m_mutex);
    Of(function).commands[command] = code;
}

void Faults::LieAboutSize(Function function, std::int64_t delta) {
    const std::lock_guard lock(m_mutex);
    Of(function).sizeDelta = delta;
}

void Faults::DelayCall(Function function, unsigned milliseconds) {
    const std::lock_guard lock(m_mutex);
    Of(function).delay = milliseconds;
}

void Faults::BlockCall(Function function, bool on) {
    const std::lock_guard lock(m_mutex);
    Of(function).blocked = on;
    m_changed.notify_all();
}

std::uint64_t Faults::CallCount(Function function) const {
    const std::lock_guard lock(m_mutex);
    return Of(function).entered;
}

std::uint64_t Faults::SuccessCount(Function function) const {
    const std::lock_guard lock(m_mutex);
    return Of(function).succeeded;
}

bool Faults::WaitForCalls(Function function, std::uint64_t count, unsigned milliseconds) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                              [&] { return Of(function).entered >= count; });
}

std::string Faults::Log() const {
    const std::lock_guard lock(m_mutex);
    return m_log;
}

void Faults::ClearLog() {
    const std::lock_guard lock(m_mutex);
    m_log.clear();
}

}  // namespace OvTest
