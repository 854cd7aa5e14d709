// Start, end and last error.

#include <atomic>
#include <thread>

#include "support/ApiTest.h"

namespace {

constexpr const char* kNoError = "{0}{No error occurred}";

TEST(LibVersion, NeedsNoInitialisation) {
    EXPECT_STREQ(OVGetLibVersion(), "1.0.2106.9081");
}

TEST(GetLastError, OnAThreadThatNeverFailedIsNoError) {
    std::thread([] {
        char text[64] = {};
        size_t size = sizeof(text);
        int32_t status = -1;
        EXPECT_EQ(OVGetLastError(&status, text, &size), OV_STATUS_SUCCESS);
        EXPECT_EQ(status, 0);
        EXPECT_STREQ(text, kNoError);
        EXPECT_EQ(size, 23U);
    }).join();
}

TEST(GetLastError, WithoutATextGivesTheSizeWithTheTerminator) {
    size_t size = 0;
    EXPECT_EQ(OVGetLastError(nullptr, nullptr, &size), OV_STATUS_SUCCESS);
    EXPECT_EQ(size, 23U);
}

TEST(GetLastError, WithABufferOneByteTooSmallGivesSizeZero) {
    char text[64] = {};
    size_t size = 22;
    int32_t status = -1;
    EXPECT_EQ(OVGetLastError(&status, text, &size), OV_STATUS_NEED_MORE_BUFFER);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(status, 0) << "the status is told all the same";
    EXPECT_STREQ(text, "");
}

TEST(GetLastError, WithoutASizeIsAnInvalidParameterAndLeavesTheRecord) {
    int32_t status = 7;
    EXPECT_EQ(OVGetLastError(&status, nullptr, nullptr), OV_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(status, 7);
    EXPECT_EQ(LastError::Get().text, kNoError);
}

class LibraryTest : public ApiTest {};

TEST_F(LibraryTest, InitAndCloseAreNotCounted) {
    EXPECT_OV_OK(OVInitLib());
    EXPECT_OV_OK(OVInitLib());
    EXPECT_EQ(producer.CallCount("GCInitLib"), 1U);
    EXPECT_OV_OK(OVCloseLib());
    EXPECT_EQ(producer.OpenCount("Library"), 0);
    EXPECT_OV_OK(OVCloseLib());
}

/// What a call on a thread of its own comes to, while the first one is held.
class LibraryBesideTest : public LibraryTest {
protected:
    void RunBoth(const char* held, OV_STATUS (*call)()) {
        producer.BlockCall(held);
        std::atomic<OV_STATUS> first{OV_STATUS_ERROR};
        std::atomic<OV_STATUS> second{OV_STATUS_ERROR};
        const uint64_t before = producer.CallCount(held);
        std::thread firstThread([&] { first = call(); });
        ASSERT_EQ(producer.WaitForCalls(held, before + 1, 60000), 0);
        std::thread secondThread([&] { second = call(); });
        EXPECT_EQ(producer.WaitForCalls(held, before + 2, 20), -1) << "it waits";
        producer.ReleaseCall(held);
        firstThread.join();
        secondThread.join();
        EXPECT_EQ(first, OV_STATUS_SUCCESS);
        EXPECT_EQ(second, OV_STATUS_SUCCESS);
        EXPECT_EQ(producer.CallCount(held), before + 1);
    }
};

TEST_F(LibraryBesideTest, ASecondInitWaitsAndSucceeds) {
    RunBoth("GCInitLib", &OVInitLib);
    EXPECT_EQ(producer.OpenCount("Library"), 1);
}

TEST_F(LibraryBesideTest, ASecondCloseWaitsAndSucceeds) {
    Init();
    RunBoth("GCCloseLib", &OVCloseLib);
    EXPECT_EQ(producer.OpenCount("Library"), 0);
}

TEST_F(LibraryTest, CloseWithoutInitIsFine) {
    EXPECT_OV_OK(OVCloseLib());
}

TEST_F(LibraryTest, CanBeInitialisedAgainAfterAClose) {
    Init();
    EXPECT_OV_OK(OVCloseLib());
    Init();
    EXPECT_EQ(Update(), 1U);
}

TEST_F(LibraryTest, TextHoldsStatusFunctionLineAndMessage) {
    Init();
    EXPECT_EQ(OVOpenDeviceByIndex(1, nullptr), OV_STATUS_INVALID_PARAMETER);
    const LastError error = LastError::Get();
    EXPECT_EQ(error.text.find("{-5}{OVOpenDeviceByIndex:line["), 0U) << error.text;
    EXPECT_EQ(error.message, "NULL Pointer");
}

TEST_F(LibraryTest, AFailureStaysAfterALaterSuccess) {
    Init();
    EXPECT_EQ(OVOpenDeviceByIndex(0, nullptr), OV_STATUS_INVALID_PARAMETER);
    Update();
    EXPECT_EQ(LastError::Get().status, OV_STATUS_INVALID_PARAMETER);
}

TEST_F(LibraryTest, AFailureOnOneThreadLeavesAnothersRecord) {
    Init();
    std::thread([] {
        EXPECT_EQ(OVOpenDeviceByIndex(1, nullptr), OV_STATUS_INVALID_PARAMETER);
        EXPECT_EQ(LastError::Get().status, OV_STATUS_INVALID_PARAMETER);
    }).join();
    EXPECT_EQ(LastError::Get().text, kNoError);
}

TEST_F(LibraryTest, CloseResetsTheThreadsRecord) {
    Init();
    EXPECT_EQ(OVOpenDeviceByIndex(1, nullptr), OV_STATUS_INVALID_PARAMETER);
    EXPECT_OV_OK(OVCloseLib());
    EXPECT_EQ(LastError::Get().text, kNoError);
}

TEST_F(LibraryTest, ProducersStatusGoesOutUnchanged) {
    producer.FailCall("TLOpen", 1, -1010);
    EXPECT_EQ(OVInitLib(), -1010);
    EXPECT_EQ(LastError::Get().status, -1010);
}

TEST_F(LibraryTest, AccessDeniedNamesTheVerifier) {
    producer.FailCall("TLOpen", 1, -1005);
    EXPECT_EQ(OVInitLib(), OV_STATUS_INVALID_ACCESS);
    const LastError error = LastError::Get();
    EXPECT_EQ(error.text.find("{-8}{ThrowExceptionIfFailed:line["), 0U) << error.text;
    EXPECT_EQ(error.message.find("Access denied:"), 0U);
}

TEST_F(LibraryTest, AFailingLastErrorKeepsTheStatusAndTellsSo) {
    producer.FailCall("TLOpen", 1, -1010);
    producer.FailCall("GCGetLastError", 0, -1001);
    ExpectFailure(OVInitLib(), -1010, "Failed to get last error description");
}

}  // namespace
