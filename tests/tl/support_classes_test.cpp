// The platform layer of the transport model: event, thread, lock, text, log.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/OvLog.h"
#include "TLClassSupport/OvString.h"
#include "TLClassSupport/VxEvent.h"
#include "TLClassSupport/VxThread.h"

namespace OVTLClass {
namespace {

TEST(Event, WaitZeroOnAnUnsetEventIsFalse) {
    CVxEvent event;
    EXPECT_FALSE(event.Wait(0));
}

TEST(Event, WaitZeroOnASetEventIsTrueOnce) {
    CVxEvent event;
    event.SetEvent();
    EXPECT_TRUE(event.Wait(0));
    EXPECT_FALSE(event.Wait(0));
}

TEST(Event, ResetTakesBackEverySignal) {
    CVxEvent event;
    event.SetEvent();
    event.SetEvent();
    event.ResetEvent();
    EXPECT_FALSE(event.Wait(0));
}

TEST(Event, WaitEndsWhenAnotherThreadSignals) {
    CVxEvent event;
    std::thread signaller([&event] { event.SetEvent(); });
    EXPECT_TRUE(event.Wait(60000));
    signaller.join();
}

void* WaitForRelease(void* release) {
    static_cast<CVxEvent*>(release)->Wait(60000);
    return nullptr;
}

TEST(Thread, RunOnARunningThreadStartsNothing) {
    CVxEvent release;
    CVxThread thread;
    ASSERT_TRUE(thread.Run(&release, &WaitForRelease, 50));
    EXPECT_FALSE(thread.Run(&release, &WaitForRelease, 50));
    release.SetEvent();
    thread.Destory();
}

TEST(Thread, RunWithoutAFunctionIsFalse) {
    CVxThread thread;
    EXPECT_FALSE(thread.Run(nullptr, nullptr, 50));
    EXPECT_FALSE(thread.IsRunning());
}

TEST(Thread, HasNoIdentityBeforeTheFirstRun) {
    const CVxThread thread;
    EXPECT_EQ(thread.GetCurrentObjThreadID(), 0U);
}

void* StoreOwnIdentity(void* identity) {
    *static_cast<pthread_t*>(identity) = CVxThread::PthreadSelf();
    return nullptr;
}

TEST(Thread, KeepsTheIdentityOfAnEndedThread) {
    pthread_t identity = 0;
    CVxThread thread;
    ASSERT_TRUE(thread.Run(&identity, &StoreOwnIdentity, 0));
    thread.Destory();
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_EQ(thread.GetCurrentObjThreadID(), identity);
}

TEST(Thread, AnEndedThreadDoesNotRunBeforeItIsJoined) {
    CVxEvent release;
    CVxThread thread;
    ASSERT_TRUE(thread.Run(&release, &WaitForRelease, 0));
    EXPECT_TRUE(thread.IsRunning());
    release.SetEvent();
    while (thread.IsRunning()) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(thread.Run(&release, &WaitForRelease, 0));
    release.SetEvent();
}

TEST(Thread, HasNoIdentityWhileTheNextStarts) {
    // The system reuses the identity of an ended thread for the next one of the process.
    constexpr int kRounds = 2000;
    CVxThread thread;
    pthread_t identity = 0;
    for (int round = 0; round < kRounds; ++round) {
        ASSERT_TRUE(thread.Run(&identity, &StoreOwnIdentity, 0));
        thread.Destory();
        std::atomic<bool> isStarted{false};
        std::atomic<bool> looksLikeIt{false};
        std::thread other([&] {
            while (!isStarted) {
                const bool runs = thread.IsRunning();
                if (runs && thread.GetCurrentObjThreadID() == CVxThread::PthreadSelf()) {
                    looksLikeIt = true;
                }
            }
        });
        ASSERT_TRUE(thread.Run(&identity, &StoreOwnIdentity, 0));
        isStarted = true;
        other.join();
        thread.Destory();
        ASSERT_FALSE(looksLikeIt) << "round " << round;
    }
}

TEST(Lock, IsRecursiveAndKeepsOtherThreadsOut) {
    CLock lock;
    lock.Lock();
    EXPECT_TRUE(lock.TryLock());
    bool taken = true;
    std::thread other([&] { taken = lock.TryLock(); });
    other.join();
    EXPECT_FALSE(taken);
    lock.Unlock();
    lock.Unlock();
}

TEST(SplitString, KeepsTheEmptyPieceBetweenTwoPatterns) {
    EXPECT_EQ(COvString::SplitString("a;;b", ";"), (std::vector<std::string>{"a", "", "b"}));
}

TEST(Lock, RaisesWhenItIsNotHeld) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer takes the very try for an error";
#endif
    CLock lock;
    try {
        lock.Unlock();
        ADD_FAILURE() << "nothing was raised";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "CLock::Lock() failed");
    }
}

TEST(SplitString, KeepsEmptyPiecesAtBothEnds) {
    EXPECT_EQ(COvString::SplitString(";a;", ";"), (std::vector<std::string>{"", "a", ""}));
    EXPECT_EQ(COvString::SplitString(";", ";"), (std::vector<std::string>{"", ""}));
}

TEST(SplitString, WithoutThePatternIsTheWholeText) {
    EXPECT_EQ(COvString::SplitString("a b", ";"), (std::vector<std::string>{"a b"}));
}

TEST(SplitString, OfAnEmptyTextIsEmpty) {
    EXPECT_TRUE(COvString::SplitString("", ";").empty());
}

TEST(SplitString, FindsPatternsOfSeveralCharacters) {
    EXPECT_EQ(COvString::SplitString("a--b", "--"), (std::vector<std::string>{"a", "b"}));
}

TEST(MsgComposer, CutsALongMessageTo1023Characters) {
    const std::string text(2000, 'x');
    EXPECT_EQ(COvString::MsgComposer("%s", text.c_str()), std::string(1023, 'x'));
}

TEST(AddressText, PutsTheTopByteFirst) {
    EXPECT_EQ(COvString::ConvertInt32ToIPString(static_cast<int32_t>(0xC0A80A01)), "192.168.10.1");
    EXPECT_EQ(COvString::ConvertInt64ToMACString(0x00AABBCCDDEEFFL), "AA-BB-CC-DD-EE-FF");
    EXPECT_EQ(COvString::ConvertInt32ToIPString(0), "0.0.0.0");
    EXPECT_EQ(COvString::ConvertInt32ToIPString(-1), "255.255.255.255");
    EXPECT_EQ(COvString::ConvertInt64ToMACString(-1), "FF-FF-FF-FF-FF-FF");
    EXPECT_EQ(COvString::ConvertInt64ToMACString(0x123400000000000AL), "00-00-00-00-00-0A");
}

TEST(Exception, TextHoldsFunctionLineAndMessage) {
    const CTimeoutError error("late", "file.cpp", 12, "Wait");
    EXPECT_STREQ(error.what(), "{Wait:line[12]}{late}");
}

TEST(Exception, TextIsTheMessageAloneInEveryOtherForm) {
    const CTimeoutError error("late", "file.cpp", 12, "Wait");
    COvException::m_emLogInfoFormat = 1;
    EXPECT_STREQ(error.what(), "{late}");
    COvException::m_emLogInfoFormat = 2;
}

TEST(Exception, UnexpectedErrorCarriesMinusOneUnlessToldOtherwise) {
    EXPECT_EQ(CUnexpectedError("x", "f", 1, "g").GetStatus(), -1);
    EXPECT_EQ(CUnexpectedError("x", "f", 1, "g", -1010).GetStatus(), -1010);
}

TEST(Log, DropsTextWhenItGoesNowhere) {
    COvLog log;
    log.SetOutputNoWhere();
    log.WriteLog("lost");
    EXPECT_EQ(log.GetPendingLineCount(), 0U);
}

TEST(Log, KeepsAllLinesWhileThePathCannotBeWritten) {
    COvLog log;
    log.SetLogFilePath("/nonexistent-folder/log.txt");
    for (int i = 0; i < 50; ++i) {
        log.WriteLog(std::string(100, 'x'));
    }
    EXPECT_EQ(log.GetPendingLineCount(), 50U);
    log.SetOutputNoWhere();
}

TEST(Log, KeepsTheLastTenThousandLines) {
    COvLog log;
    log.DisableTimeStamp();
    for (int i = 0; i < 10003; ++i) {
        log.WriteLog("line " + std::to_string(i));
    }
    EXPECT_EQ(log.GetPendingLineCount(), 10000U);
    const std::string path = ::testing::TempDir() + "ovlog-last-" + std::to_string(getpid());
    log.SetLogFilePath(path);
    log.Flush();
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    EXPECT_EQ(line, "line 3");
    EXPECT_EQ(log.GetPendingByteCount(), 0U);
    std::remove(path.c_str());
}

TEST(Log, IgnoresAnUnknownOutputType) {
    COvLog log;
    log.SetOutputType(3);
    log.WriteLog("kept");
    EXPECT_EQ(log.GetPendingLineCount(), 1U);
}

TEST(Log, WritesToTheOutputAtOnce) {
    COvLog log;
    log.DisableTimeStamp();
    log.SetOutputToDebugWindow();
    ::testing::internal::CaptureStdout();
    log.WriteLog("line");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "line\n");
    EXPECT_EQ(log.GetPendingLineCount(), 0U);
}

TEST(Log, IsOneForTheProcess) {
    EXPECT_EQ(&COvLog::GetInstance(), &COvLog::GetInstance());
}

TEST(Log, HasNoPathUnlessToldOne) {
    COvLog log;
    EXPECT_EQ(log.GetLogFilePath(), "");
    log.SetLogFilePath("/nonexistent-folder/log.txt");
    EXPECT_EQ(log.GetLogFilePath(), "/nonexistent-folder/log.txt");
}

TEST(Log, TakesMessagesFromSeveralThreads) {
    COvLog log;
    const auto writeOften = [&log] {
        for (int i = 0; i < 200; ++i) {
            log.WriteLog("line");
        }
    };
    std::thread other(writeOften);
    writeOften();
    other.join();
    EXPECT_EQ(log.GetPendingLineCount(), 400U);
    log.SetOutputNoWhere();
}

class LogFile : public ::testing::Test {
protected:
    std::string Content() const {
        std::ifstream file(m_path);
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }
    void TearDown() override { std::remove(m_path.c_str()); }

    std::string m_path = ::testing::TempDir() + "ovlog-" + std::to_string(getpid()) + ".txt";
};

TEST_F(LogFile, TakesLinesOnceMoreThan1023BytesWait) {
    COvLog log;
    log.DisableTimeStamp();
    log.SetLogFilePath(m_path);
    log.WriteLog(std::string(1023, 'a'));
    EXPECT_EQ(Content(), "");
    log.WriteLog("b");
    EXPECT_EQ(Content(), std::string(1023, 'a') + "\nb\n");
    EXPECT_EQ(log.GetPendingLineCount(), 0U);
    EXPECT_EQ(log.GetPendingByteCount(), 0U);
}

TEST_F(LogFile, TakesPendingLinesWhenTheOutputChanges) {
    COvLog log;
    log.DisableTimeStamp();
    log.SetLogFilePath(m_path);
    log.WriteLog("line");
    log.SetOutputNoWhere();
    EXPECT_EQ(Content(), "line\n");
}

TEST_F(LogFile, KeepsLinesOfAnEarlierLog) {
    for (const char* const text : {"first", "second"}) {
        COvLog log;
        log.DisableTimeStamp();
        log.SetLogFilePath(m_path);
        log.WriteLog(text);
    }
    EXPECT_EQ(Content(), "first\nsecond\n");
}

TEST_F(LogFile, StartsEachLineWithTheTime) {
    COvLog log;
    log.SetLogFilePath(m_path);
    log.WriteLog("line");
    log.Flush();
    EXPECT_THAT(Content(), ::testing::MatchesRegex(
                               "[0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+\\.[0-9]+ line\n"));
}

}  // namespace
}  // namespace OVTLClass
