// The order of the checks: every pair of wrong arguments and states.

#include <string>
#include <vector>

#include "support/AcquisitionTest.h"

namespace {

constexpr uint64_t kTooFew = 3;
constexpr int64_t kMinimum = 4;

/// Something that is wrong with a call.
struct Fault {
    char letter;
    OV_STATUS status;
    std::string message;
};

/// What a call works on, and the letters of what is wrong with it.
struct AcquisitionArguments {
    OV_DEV_HANDLE camera = nullptr;
    std::string faults;
    OV_FRAME_BUFFER* lent = nullptr;

    bool Has(char fault) const { return faults.find(fault) != std::string::npos; }
};

/// In the faults, in the order of the checks: L library closed, H handle, P first
/// and Q second pointer, Z number 0 or array too small, B started, C callback
/// registered, N not started, O camera opened for reading only, M fewer buffers than
/// the producer needs, U a frame that isn't on loan.
struct AcquisitionCall {
    const char* name;
    const char* faults;
    OV_STATUS (*run)(const AcquisitionArguments& a);
};

const AcquisitionCall kAcquisitionCalls[] = {
    {"SetAcqusitionBufferNumber", "LHZBM",
     [](const AcquisitionArguments& a) {
         return OVSetAcqusitionBufferNumber(a.camera, a.Has('Z') ? 0 : kTooFew);
     }},
    {"GetAcqusitionBufferNumber", "LHZ",
     [](const AcquisitionArguments& a) {
         uint64_t number = 0;
         return OVGetAcqusitionBufferNumber(a.camera, a.Has('Z') ? nullptr : &number);
     }},
    {"RegisterCaptureCallback", "LHPB",
     [](const AcquisitionArguments& a) {
         return OVRegisterCaptureCallback(a.camera, nullptr, a.Has('P') ? nullptr : &IgnoreFrame);
     }},
    {"UnregisterCaptureCallback", "LHB",
     [](const AcquisitionArguments& a) { return OVUnregisterCaptureCallback(a.camera); }},
    {"StreamOn", "LHO", [](const AcquisitionArguments& a) { return OVStreamOn(a.camera); }},
    {"StreamOff", "LHO", [](const AcquisitionArguments& a) { return OVStreamOff(a.camera); }},
    {"FlushQueue", "LH", [](const AcquisitionArguments& a) { return OVFlushQueue(a.camera); }},
    {"GetImage", "LHPQCN",
     [](const AcquisitionArguments& a) {
         uint8_t pixels[kTestFrameSize] = {};
         OV_FRAME_DATA data{};
         data.pImgBuf = a.Has('Q') ? nullptr : pixels;
         return OVGetImage(a.camera, a.Has('P') ? nullptr : &data, kFrameTimeOut);
     }},
    {"DQBuf", "LPHCN",
     [](const AcquisitionArguments& a) {
         OV_FRAME_BUFFER* frame = nullptr;
         return OVDQBuf(a.camera, a.Has('P') ? nullptr : &frame, kFrameTimeOut);
     }},
    {"QBuf", "LHCNU",
     [](const AcquisitionArguments& a) {
         OV_FRAME_BUFFER stranger{};
         return OVQBuf(a.camera, a.Has('U') ? &stranger : a.lent);
     }},
    {"DQAllBufs", "LPQHCNZ",
     [](const AcquisitionArguments& a) {
         OV_FRAME_BUFFER* frames[5] = {};
         uint32_t count = 0;
         return OVDQAllBufs(a.camera, a.Has('P') ? nullptr : frames, a.Has('Z') ? 4 : 5,
                            a.Has('Q') ? nullptr : &count, kFrameTimeOut);
     }},
    {"QAllBufs", "LHCN", [](const AcquisitionArguments& a) { return OVQAllBufs(a.camera); }},
};

/// A call and the two things that are wrong with it; the same for one alone.
struct AcquisitionFaults {
    const AcquisitionCall* call;
    char first;
    char second;
};

std::vector<AcquisitionFaults> AllAcquisitionFaults() {
    std::vector<AcquisitionFaults> cases;
    for (const AcquisitionCall& call : kAcquisitionCalls) {
        const std::string faults = call.faults;
        for (size_t first = 0; first < faults.size(); ++first) {
            for (size_t second = first; second < faults.size(); ++second) {
                cases.push_back({&call, faults[first], faults[second]});
            }
        }
    }
    return cases;
}

class AcquisitionChecksTest : public AcquisitionTest {
protected:
    /// Brings camera and arguments into the state that has the faults.
    AcquisitionArguments Prepare(const AcquisitionCall& call, const std::string& faults) {
        AcquisitionArguments arguments{camera, faults};
        const bool hasState = std::string(call.faults).find('N') != std::string::npos;
        if (arguments.Has('C')) {
            RegisterCallback();
        }
        if (arguments.Has('B') || (hasState && !arguments.Has('N'))) {
            Start();
            producer.Trigger(0, 0, 1);
            const bool returns = std::string(call.name) == "QBuf" && !arguments.Has('C');
            arguments.lent = returns ? Borrow() : nullptr;
        }
        if (arguments.Has('O')) {
            ReopenForReading();
            arguments.camera = camera;
        }
        if (arguments.Has('M')) {
            producer.SetStreamNumber(0, 0, "AnnounceMinimum", kMinimum);
        }
        if (arguments.Has('H')) {
            arguments.camera = nullptr;
        }
        if (arguments.Has('L')) {
            EXPECT_OV_OK(OVCloseLib());
        }
        return arguments;
    }

    static Fault Describe(const std::string& call, char fault) {
        const bool isNumber = call.find("BufferNumber") != std::string::npos;
        const bool isRegister = call == "RegisterCaptureCallback";
        const Fault faults[] = {
            {'L', OV_STATUS_NOT_INIT_API, "Not init API"},
            {'H', OV_STATUS_INVALID_HANDLE, "Invalid device handle"},
            {'P', OV_STATUS_INVALID_PARAMETER, "NULL Pointer"},
            {'Q', OV_STATUS_INVALID_PARAMETER, "NULL Pointer"},
            isNumber ? Fault{'Z', OV_STATUS_INVALID_PARAMETER, "The input parameter invalid"}
                     : Fault{'Z', OV_STATUS_NEED_MORE_BUFFER,
                             "Size of OV_FRAME_DATA* array should be at least 5"},
            {'B', OV_STATUS_INVALID_CALL,
             isNumber     ? "Can't set acqusition buffer number  when acqusition"
             : isRegister ? "Can't register capture callback after start capture"
                          : "Can't unregister capture callback after start capture"},
            {'C', OV_STATUS_INVALID_CALL,
             "Can't call " + call + " after register capture callback"},
            {'N', OV_STATUS_INVALID_CALL, "Can't call " + call + " before start capture"},
            {'O', OV_STATUS_INVALID_ACCESS, "Can't start acquisition on read-only mode"},
            {'M', OV_STATUS_OUT_OF_RANGE, "Acquisition buffers is less than the minimum"},
            {'U', OV_STATUS_INVALID_PARAMETER, "Invalid OV_FRAME_BUFFER* parameter"},
        };
        for (const Fault& known : faults) {
            if (known.letter == fault) {
                return known;
            }
        }
        ADD_FAILURE() << "no fault " << fault;
        return {};
    }

private:
    void ReopenForReading() {
        ASSERT_OV_OK(OVCloseDevice(camera));
        OV_OPEN_PARAM param{};
        param.pszContent = "1";
        param.openMode = OV_OPEN_INDEX;
        param.accessMode = OV_ACCESS_READONLY;
        ASSERT_OV_OK(OVOpenDevice(&param, &camera));
    }
};

class AcquisitionChecks : public AcquisitionChecksTest,
                          public testing::WithParamInterface<AcquisitionFaults> {};

TEST_P(AcquisitionChecks, TheFirstOfTwoFaultsDecides) {
    const AcquisitionCall& call = *GetParam().call;
    const AcquisitionArguments arguments = Prepare(call, {GetParam().first, GetParam().second});
    const OV_STATUS status = call.run(arguments);
    const Fault expected = Describe(call.name, GetParam().first);
    ExpectFailure(status, expected.status, expected.message);
}

INSTANTIATE_TEST_SUITE_P(Pairs, AcquisitionChecks, testing::ValuesIn(AllAcquisitionFaults()),
                         [](const auto& test) {
                             return std::string(test.param.call->name) + test.param.first +
                                    test.param.second;
                         });

class AcquisitionCalls : public AcquisitionChecksTest,
                         public testing::WithParamInterface<AcquisitionCall> {};

TEST_P(AcquisitionCalls, PassWhenNothingIsWrong) {
    EXPECT_OV_OK(GetParam().run(Prepare(GetParam(), "")));
}

INSTANTIATE_TEST_SUITE_P(All, AcquisitionCalls, testing::ValuesIn(kAcquisitionCalls),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
