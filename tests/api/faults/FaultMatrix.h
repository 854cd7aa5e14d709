#pragma once
/// Every GenTL call beneath a call of the interface fails in turn, with every
/// code.

#include <functional>
#include <set>

#include "Bystander.h"
#include "Steps.h"
#include "support/ApiTest.h"

/// One of the three producers, all of which are beside the library.
struct ProducerKind {
    const char* fileName;
    size_t place;  ///< in the order in which the library takes them
    bool isGev;
    /// Whether its word counts for the shape of a frame.
    bool knowsShapes;
};
inline constexpr ProducerKind kAllKinds[] = {
    {"OvGVTL.cti", 0, true, true}, {"OvU3VTL.cti", 1, false, true}, {"KwTL.cti", 2, false, false}};
/// Those that differ in more than their place.
inline constexpr ProducerKind kDifferentKinds[] = {kAllKinds[0], kAllKinds[2]};

std::string NameOf(const ProducerKind& kind);
void PrintTo(const ProducerKind& kind, std::ostream* out);

/// One call that fails once.
struct Fault {
    Step step;
    unsigned nth = 1;
    int32_t code = 0;
    bool afterWork = false;  ///< the producer does the work and then reports a failure
    bool mute = false;       ///< and has no text for it
    Outcome expected;

    std::string Describe() const;
};

/// What to make fail, and what to look at.
struct FaultPlan {
    Steps steps;
    std::function<void()> prepare;
    std::function<OV_STATUS()> action;
    /// The state after the action.
    std::function<void(const Fault&)> check = [](const Fault&) {};
    /// The later attempt, without a fault.
    std::function<void()> again;
    /// Calls of the delivery thread, which come in no fixed order.
    std::set<std::string> elsewhere = {};
    /// Each call also fails after it has done its work, for actions that close or remove
    /// something.
    bool failsAfterWork = false;
};

/// The three producers, and the driver of the matrix. Only the faulty one has an
/// interface and a camera: the first to end an update stops the others, and calls
/// that come in no fixed order can't be counted.
class FaultMatrix : public testing::TestWithParam<ProducerKind> {
protected:
    FaultMatrix();
    ~FaultMatrix() override;

    /// Runs the plan for each call, and for each code with the first and the last of calls alike.
    void Run(const FaultPlan& plan);
    /// Runs the plan with calls that fail as often as they are made.
    void RunPersistent(const FaultPlan& plan);

    /// For the report of cases, from tests that drive their own.
    void CountCase() { ++m_cases; }

    /// The producer whose calls fail.
    TestProducer& Faulty() { return *m_producers[GetParam().place]; }
    bool IsGev() const { return GetParam().isGev; }
    /// The questions about the first frame of a buffer: its place and size, and the
    /// technology as a text in two calls; state, bytes, time stamp and number; the shape.
    unsigned FactsOfAFirstFrame() const { return 4 + 4 + (GetParam().knowsShapes ? 5 : 0); }

    void Init() { ASSERT_OV_OK(OVInitLib()); }
    uint32_t Update();
    OV_DEV_HANDLE Open();
    /// "TLParamsLocked" in the memory of the faulty producer's camera.
    uint32_t ParamsLocked();
    void ExpectClosed(std::initializer_list<const char*> kinds);
    /// Ends the session, also in a producer whose own end failed.
    void CloseLib();

private:
    void Begin(const FaultPlan& plan);
    void End();
    std::vector<std::string> CallsOf(const FaultPlan& plan);
    void RunOne(const FaultPlan& plan, const Fault& fault);
    void ExpectOutcome(OV_STATUS status, const Outcome& expected, const LastError& before);
    void ExpectEachOpenIsClosedOnce();
    void ResetAll();
    void ReportCases() const;

    std::vector<std::unique_ptr<TestProducer>> m_producers;
    Bystander m_bystander;
    size_t m_threads = 0;
    uint64_t m_closesByTest = 0;
    unsigned m_cases = 0;
};
