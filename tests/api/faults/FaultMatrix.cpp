#include "FaultMatrix.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <map>

namespace {

struct Pair {
    const char* kind;
    const char* open;
    const char* close;
    /// Whether a close that failed is tried again.
    bool isRepeated = false;
};
constexpr const char* kLibrary = "Library";
constexpr Pair kPairs[] = {
    {kLibrary, "GCInitLib", "GCCloseLib"},
    {"System", "TLOpen", "TLClose"},
    {"Interface", "TLOpenInterface", "IFClose"},
    {"Device", "IFOpenDevice", "DevClose"},
    {"Stream", "DevOpenDataStream", "DSClose"},
    {"Buffer", "DSAnnounceBuffer", "DSRevokeBuffer", true},
    {"Event", "GCRegisterEvent", "GCUnregisterEvent"},
    {"Acquisition", "DSStartAcquisition", "DSStopAcquisition", true},
};

std::vector<std::string> Expand(const Steps& steps) {
    std::vector<std::string> calls;
    for (const Step& step : steps) {
        calls.insert(calls.end(), step.count, step.call);
    }
    return calls;
}

/// A kill is repeated until the thread that it is for has ended, however long that
/// takes.
void DropRepeatedKills(std::vector<std::string>& calls) {
    const auto isRepeated = [](const std::string& call, const std::string& next) {
        return call == "EventKill" && next == call;
    };
    calls.erase(std::unique(calls.begin(), calls.end(), isRepeated), calls.end());
}

/// The calls of a function that fails for good, as one step: that of the first
/// whose failure is noticed.
Step FirstNoticed(const Steps& steps, const std::string& call, int32_t code) {
    const auto isNoticed = [&](const Step& step) {
        return step.call == call && OutcomeOf(step, code, true).status != OV_STATUS_SUCCESS;
    };
    const auto found = std::find_if(steps.begin(), steps.end(), isNoticed);
    return found == steps.end() ? Step{call, 1, Fate::Swallowed, "every one is passed over"}
                                : *found;
}

std::vector<int32_t> AllFaultsOf(const std::string& call) {
    std::vector<int32_t> codes;
    std::copy_if(std::begin(kFaultCodes), std::end(kFaultCodes), std::back_inserter(codes),
                 [&call](int32_t code) { return IsFault(call, code); });
    return codes;
}

std::vector<int32_t> OneFaultOf(const std::string& call, size_t turn) {
    const std::vector<int32_t> codes = AllFaultsOf(call);
    return {codes[turn % codes.size()]};
}

}  // namespace

std::string NameOf(const ProducerKind& kind) {
    const std::string fileName = kind.fileName;
    return fileName.substr(0, fileName.find('.'));
}

void PrintTo(const ProducerKind& kind, std::ostream* out) {
    *out << NameOf(kind);
}

std::string Fault::Describe() const {
    return step.call + " " + std::to_string(nth) + " with " + std::to_string(code) +
           (afterWork ? " after its work" : "") + (mute ? " without a text" : "") + " " + step.why;
}

FaultMatrix::FaultMatrix() {
    for (const ProducerKind& kind : kAllKinds) {
        m_producers.push_back(
            std::make_unique<TestProducer>(std::string(OV_TEST_STAGE) + "/" + kind.fileName));
    }
    ResetAll();
    // What a process starts once, it keeps.
    EXPECT_OV_OK(OVInitLib());
    EXPECT_OV_OK(OVCloseLib());
    m_threads = ThreadCount();
}

FaultMatrix::~FaultMatrix() {
    OVCloseLib();
    ResetAll();
    ReportCases();
}

void FaultMatrix::ReportCases() const {
    RecordProperty("cases", static_cast<int>(m_cases));
    std::cout << "[  CASES   ] " << m_cases << '\n';
}

void FaultMatrix::ResetAll() {
    for (const auto& producer : m_producers) {
        producer->Reset();
        producer->SetInterfaceCount(0);
    }
    Faulty().SetInterfaceCount(1);
    // An adapter with an address is searched by a thread of its own.
    Faulty().SetInterfaceNumber(0, "IP", 0x0A010201);
    m_closesByTest = 0;
}

uint32_t FaultMatrix::Update() {
    uint32_t count = 0;
    EXPECT_OV_OK(OVUpdateDeviceList(&count, 1000));
    return count;
}

OV_DEV_HANDLE FaultMatrix::Open() {
    OV_DEV_HANDLE handle = nullptr;
    EXPECT_OV_OK(OVOpenDeviceByIndex(1, &handle));
    return handle;
}

uint32_t FaultMatrix::ParamsLocked() {
    constexpr uint64_t kAddress = 0x418;
    uint32_t value = 0xFFFFFFFF;
    Faulty().ReadMemory(0, 0, kAddress, &value, sizeof value);
    return value;
}

void FaultMatrix::ExpectClosed(std::initializer_list<const char*> kinds) {
    for (const char* const kind : kinds) {
        EXPECT_EQ(Faulty().OpenCount(kind), 0) << kind;
    }
}

void FaultMatrix::Begin(const FaultPlan& plan) {
    ResetAll();
    plan.prepare();
}

void FaultMatrix::End() {
    CloseLib();
    ExpectThreads(m_threads);
    ExpectEachOpenIsClosedOnce();
}

void FaultMatrix::CloseLib() {
    EXPECT_OV_OK(OVCloseLib());
    if (Faulty().OpenCount(kLibrary) != 0) {
        ++m_closesByTest;
        Faulty().Function<int32_t (*)()>("GCCloseLib")();
    }
}

/// What a close that failed leaves open is the producer's affair; the library
/// owes it one close for each open.
void FaultMatrix::ExpectEachOpenIsClosedOnce() {
    for (const auto& producer : m_producers) {
        for (const Pair& pair : kPairs) {
            const bool isHelped = producer.get() == &Faulty() && pair.kind == kLibrary;
            const uint64_t opens = producer->SuccessCount(pair.open);
            const uint64_t closes =
                producer->CallCount(pair.close) - (isHelped ? m_closesByTest : 0);
            if (pair.isRepeated) {
                EXPECT_GE(closes, opens) << pair.kind;
                EXPECT_LE(producer->SuccessCount(pair.close), opens) << pair.kind;
            } else {
                EXPECT_EQ(closes, opens) << pair.kind;
            }
        }
    }
}

std::vector<std::string> FaultMatrix::CallsOf(const FaultPlan& plan) {
    Begin(plan);
    Faulty().ClearLog();
    EXPECT_OV_OK(plan.action());
    std::vector<std::string> calls = Faulty().Log();
    std::erase_if(calls,
                  [&plan](const std::string& call) { return plan.elsewhere.contains(call); });
    DropRepeatedKills(calls);
    End();
    return calls;
}

void FaultMatrix::Run(const FaultPlan& plan) {
    std::vector<std::string> expected = Expand(plan.steps);
    DropRepeatedKills(expected);
    ASSERT_EQ(CallsOf(plan), expected);
    std::map<std::string, unsigned> nth;
    for (const Step& step : plan.steps) {
        for (unsigned i = 0; i < step.count; ++i) {
            ++nth[step.call];
            // Between the first and the last of calls alike, each fails with one of the codes.
            const bool isOuter = i == 0 || i + 1 == step.count;
            for (const int32_t code : isOuter ? AllFaultsOf(step.call) : OneFaultOf(step.call, i)) {
                RunOne(plan, {step, nth[step.call], code, false, false, OutcomeOf(step, code)});
            }
            constexpr int32_t kAnyCode = -1010;
            RunOne(plan, {step, nth[step.call], kAnyCode, false, true,
                          OutcomeOf(step, kAnyCode, false, true)});
            if (plan.failsAfterWork) {
                RunOne(plan,
                       {step, nth[step.call], kAnyCode, true, false, OutcomeOf(step, kAnyCode)});
            }
        }
    }
}

void FaultMatrix::RunPersistent(const FaultPlan& plan) {
    std::set<std::string> calls;
    for (const Step& step : plan.steps) {
        calls.insert(step.call);
    }
    for (const std::string& call : calls) {
        for (const int32_t code : AllFaultsOf(call)) {
            const Step step = FirstNoticed(plan.steps, call, code);
            RunOne(plan, {step, 0, code, false, false, OutcomeOf(step, code, true)});
        }
    }
}

void FaultMatrix::RunOne(const FaultPlan& plan, const Fault& fault) {
    SCOPED_TRACE(fault.Describe());
    CountCase();
    Begin(plan);
    TestProducer& faulty = Faulty();
    const char* const call = fault.step.call.c_str();
    const uint64_t callsBefore = faulty.CallCount(call);
    (fault.afterWork ? faulty.FailAfterCall : faulty.FailCall)(call, fault.nth, fault.code);
    if (fault.mute) {
        faulty.FailCall("GCGetLastError", 0, fault.code);
    }
    const LastError before = LastError::Get();
    ExpectOutcome(plan.action(), fault.expected, before);
    EXPECT_GE(faulty.CallCount(call), callsBefore + fault.nth) << "the fault never struck";
    m_bystander.ExpectUntouched();
    plan.check(fault);
    if (fault.nth != 0) {
        plan.again();
    }
    End();
}

void FaultMatrix::ExpectOutcome(OV_STATUS status, const Outcome& expected,
                                const LastError& before) {
    const LastError error = LastError::Get();
    EXPECT_EQ(status, expected.status) << error.text;
    if (expected.status == OV_STATUS_SUCCESS) {
        EXPECT_EQ(error.text, before.text) << "a success leaves the record";
        return;
    }
    EXPECT_EQ(error.status, expected.status);
    const std::string begin = "{" + std::to_string(expected.status) + "}" + expected.place;
    EXPECT_EQ(error.text.substr(0, begin.size()), begin);
    EXPECT_TRUE(error.text.ends_with(expected.ending))
        << error.text << " doesn't end with " << expected.ending;
}
