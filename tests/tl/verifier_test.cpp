// From a producer's status to an exception or a log line.

#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

constexpr const char* kPlanned = "Planned failure of TLOpen";

/// A started producer whose calls fail as wanted.
class Verifier : public ProducerTest {
protected:
    Verifier() : lib(Staged(m_fileName)) { lib.GCInitLib(); }
    ~Verifier() override { lib.GCCloseLib(); }

    /// Lets the next call of a function fail and returns its status.
    int32_t Fail(int32_t code) {
        producer.FailCall("TLOpen", 1, code);
        void* handle = nullptr;
        return lib.TLOpen(&handle);
    }
    /// Verifies as line 77 of "caller.cpp" would.
    void Verify(int32_t status) { ThrowExceptionIfFailed(status, lib, "caller.cpp", 77, "Caller"); }

    template <class Error>
    void ExpectFromCaller(int32_t code, const std::string& message) {
        const Error error = Raised<Error>([&] { Verify(Fail(code)); });
        EXPECT_EQ(error.GetDescription(), message);
        EXPECT_EQ(error.GetFile(), "caller.cpp");
        EXPECT_EQ(error.GetLine(), 77);
        EXPECT_EQ(error.GetFunction(), "Caller");
    }

    template <class Error>
    void ExpectFromVerifier(int32_t code, const std::string& message) {
        const Error error = Raised<Error>([&] { Verify(Fail(code)); });
        EXPECT_EQ(error.GetDescription(), message);
        EXPECT_THAT(error.GetFile(), ::testing::EndsWith("GenTLErrrorCodeVerifier.cpp"));
        EXPECT_EQ(error.GetFunction(), "ThrowExceptionIfFailed");
        EXPECT_EQ(std::string(error.what()), "{ThrowExceptionIfFailed:line[" +
                                                 std::to_string(error.GetLine()) + "]}{" + message +
                                                 "}");
    }

    const CGenTLLib lib;
};

TEST_F(Verifier, RaisesNothingForASuccess) {
    EXPECT_NO_THROW(Verify(0));
    EXPECT_EQ(producer.CallCount("GCGetLastError"), 0U);
}

TEST_F(Verifier, TellsAMissingCallWithoutAskingTheProducer) {
    const auto error = Raised<CUnexpectedError>([&] { Verify(-1); });
    EXPECT_EQ(error.GetStatus(), -1);
    EXPECT_STREQ(error.what(), "{Caller:line[77]}{The TL library is not complete}");
    EXPECT_EQ(producer.CallCount("GCGetLastError"), 0U);
}

TEST_F(Verifier, PutsAWordBeforeADeniedAccess) {
    ExpectFromVerifier<CInvalidAccessError>(GenTL::GC_ERR_ACCESS_DENIED,
                                            std::string("Access denied:") + kPlanned);
}

TEST_F(Verifier, TakesTheCustomCodeForALostDevice) {
    ExpectFromVerifier<CDeviceOfflineError>(-10000, kPlanned);
}

TEST_F(Verifier, NamesTheCallerOfATimeout) {
    ExpectFromCaller<CTimeoutError>(GenTL::GC_ERR_TIMEOUT, kPlanned);
}

TEST_F(Verifier, NamesItselfForAnInvalidParameter) {
    ExpectFromVerifier<CInvalidParameterError>(GenTL::GC_ERR_INVALID_PARAMETER, kPlanned);
}

TEST_F(Verifier, NamesItselfForWhatIsNotImplemented) {
    ExpectFromVerifier<CNotImplementedError>(GenTL::GC_ERR_NOT_IMPLEMENTED, kPlanned);
}

class VerifierOfOtherCodes : public Verifier, public ::testing::WithParamInterface<int32_t> {};

TEST_P(VerifierOfOtherCodes, CarriesTheCodeItself) {
    ExpectFromCaller<CUnexpectedError>(GetParam(), kPlanned);
    EXPECT_EQ(Raised<CUnexpectedError>([&] { Verify(Fail(GetParam())); }).GetStatus(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Codes, VerifierOfOtherCodes,
                         ::testing::Values(GenTL::GC_ERR_ERROR, GenTL::GC_ERR_NOT_INITIALIZED,
                                           GenTL::GC_ERR_IO, GenTL::GC_ERR_ABORT, -10001, -2, 1));

TEST_F(Verifier, KeepsTheClassWhenTheTextCannotBeHad) {
    producer.FailCall("GCGetLastError", 0, GenTL::GC_ERR_ERROR);
    EXPECT_RAISES(CTimeoutError, "Failed to get last error description",
                  Verify(Fail(GenTL::GC_ERR_TIMEOUT)));
    EXPECT_RAISES(CInvalidAccessError, "Access denied:Failed to get last error description",
                  Verify(Fail(GenTL::GC_ERR_ACCESS_DENIED)));
}

TEST_F(Verifier, KeepsTheStatusWhenTheTextCannotBeHad) {
    producer.FailCall("GCGetLastError", 0, GenTL::GC_ERR_ERROR);
    EXPECT_UNEXPECTED(GenTL::GC_ERR_IO, "Failed to get last error description",
                      Verify(Fail(GenTL::GC_ERR_IO)));
}

using LastErrorDescription = Verifier;

TEST_F(LastErrorDescription, IsTheProducersText) {
    Fail(GenTL::GC_ERR_IO);
    EXPECT_EQ(CGenTLError::GetLastErrorDescription(lib), kPlanned);
}

TEST_F(LastErrorDescription, FailsWithTheCallForTheText) {
    Fail(GenTL::GC_ERR_IO);
    producer.FailCall("GCGetLastError", 2, GenTL::GC_ERR_ERROR);
    EXPECT_EQ(CGenTLError::GetLastErrorDescription(lib), "Failed to get last error description");
    EXPECT_EQ(CGenTLError::GetLastErrorDescription(lib), kPlanned);
}

TEST_F(LastErrorDescription, EndsAtTheZeroOfATextThatIsShorterThanTold) {
    Fail(GenTL::GC_ERR_IO);
    producer.LieAboutSize("GCGetLastError", 100);
    EXPECT_EQ(CGenTLError::GetLastErrorDescription(lib), kPlanned);
}

TEST_F(LastErrorDescription, FailsForATextThatIsLongerThanTold) {
    Fail(GenTL::GC_ERR_IO);
    producer.LieAboutSize("GCGetLastError", -10);
    EXPECT_EQ(CGenTLError::GetLastErrorDescription(lib), "Failed to get last error description");
}

TEST_F(LastErrorDescription, FailsForASizeThatNoMemoryHolds) {
    Fail(GenTL::GC_ERR_IO);
    producer.LieAboutSize("GCGetLastError", -1000);
    EXPECT_EQ(CGenTLError::GetLastErrorDescription(lib), "Failed to get last error description");
}

TEST(LastErrorDescriptionOfAnEmptyLibrary, Fails) {
    const CGenTLLib lib(Staged("Empty.cti"));
    EXPECT_EQ(CGenTLError::GetLastErrorDescription(lib), "Failed to get last error description");
}

using StatusLog = Verifier;

TEST_F(StatusLog, HoldsNothingForASuccess) {
    const LogCapture log;
    LogIfFailed(0, lib, "caller.cpp", 77, "Caller");
    EXPECT_THAT(log.Lines(), ::testing::IsEmpty());
}

TEST_F(StatusLog, HoldsThePlaceAndTheProducersText) {
    const LogCapture log;
    LogIfFailed(Fail(GenTL::GC_ERR_TIMEOUT), lib, "caller.cpp", 77, "Caller");
    EXPECT_THAT(log.Lines(),
                ::testing::ElementsAre(std::string("caller.cpp(77):'Caller':") + kPlanned));
}

TEST_F(StatusLog, TellsAMissingCall) {
    const LogCapture log;
    LogIfFailed(-1, lib, "caller.cpp", 77, "Caller");
    EXPECT_THAT(log.Lines(),
                ::testing::ElementsAre("caller.cpp(77):'Caller':The TL library is not complete"));
}

}  // namespace
}  // namespace OVTLClass
