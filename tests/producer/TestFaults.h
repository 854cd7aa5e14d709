/// @file
/// The faults that a test has set, and the record of the calls.
#ifndef OV_TEST_FAULTS_H
#define OV_TEST_FAULTS_H

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "Base/EachFrame.h"
#include "framework/Backend.h"

namespace OvTest {

using OvProducer::Function;

class Faults : public OvProducer::CallObserver {
public:
    void Enter(Function function) override;
    void Leave(Function function) override;
    void Ask(Function function, std::int32_t command) override;
    OV_EACH_FRAME bool OffersStack() override { return m_offersStack; }
    std::size_t ReportedSize(Function function, std::size_t size) override;

    void Reset();
    void FailCall(Function function, unsigned nth, GenTL::GC_ERROR code);
    void FailAfterCall(Function function, unsigned nth, GenTL::GC_ERROR code);
    void SkipCall(Function function, unsigned nth);
    void FailCommand(Function function, std::int32_t command, GenTL::GC_ERROR code);
    void LieAboutSize(Function function, std::int64_t delta);
    void DelayCall(Function function, unsigned milliseconds);
    void BlockCall(Function function, bool on);
    void Watch(bool on) { m_watching = on; }
    void OfferStack(bool on) { m_offersStack = on; }

    std::uint64_t CallCount(Function function) const;
    std::uint64_t SuccessCount(Function function) const;
    bool WaitForCalls(Function function, std::uint64_t count, unsigned milliseconds);
    std::string Log() const;
    void ClearLog();

private:
    struct Planned {
        unsigned calls;  ///< until the fault occurs; 0 for every call
        GenTL::GC_ERROR code;
    };
    struct State {
        std::uint64_t entered = 0;
        std::uint64_t succeeded = 0;
        std::vector<Planned> before;
        std::vector<Planned> after;
        std::vector<Planned> skipped;  ///< the code only says whether the fault occurs
        std::map<std::int32_t, GenTL::GC_ERROR> commands;
        std::int64_t sizeDelta = 0;
        unsigned delay = 0;
        bool blocked = false;
    };

    static GenTL::GC_ERROR Strike(std::vector<Planned>& planned);
    State& Of(Function function) { return m_states[static_cast<std::size_t>(function)]; }
    const State& Of(Function function) const {
        return m_states[static_cast<std::size_t>(function)];
    }

    std::atomic<bool> m_watching = true;
    std::atomic<bool> m_offersStack = false;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::array<State, OvProducer::kFunctionCount> m_states;
    std::string m_log;
};

}  // namespace OvTest

#endif
