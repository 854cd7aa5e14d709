#pragma once
/// What happens at once, again and again.
///
/// `OV_TEST_ROUNDS` sets the number of rounds, for runs of half an hour.

#include <cstdlib>
#include <functional>
#include <thread>

#include "support/ApiTest.h"
#include "support/FrameCounter.h"

/// A feature that comes with events.
constexpr OV_FEATURE_ID kEvent = OV_FEATURE_EventExposureEndFrameID;

/// Every call of one function of a producer waits at its entry, from the making
/// of this object to `Release` or its end.
class HeldCall {
public:
    HeldCall(TestProducer& producer, std::string function)
        : m_producer(producer),
          m_function(std::move(function)),
          m_before(producer.CallCount(m_function.c_str())) {
        m_producer.BlockCall(m_function.c_str());
    }
    HeldCall(const HeldCall&) = delete;
    HeldCall& operator=(const HeldCall&) = delete;
    ~HeldCall() { Release(); }

    /// Waits until that many calls have come.
    void WaitFor(uint64_t calls) {
        constexpr unsigned kMilliseconds = 60000;
        EXPECT_EQ(m_producer.WaitForCalls(m_function.c_str(), m_before + calls, kMilliseconds), 0)
            << m_function;
    }

    void Release() { m_producer.ReleaseCall(m_function.c_str()); }

private:
    TestProducer& m_producer;
    std::string m_function;
    uint64_t m_before;
};

/// A call on a thread of its own, and what it came to.
class Beside {
public:
    explicit Beside(const std::function<OV_STATUS()>& call)
        : m_thread([this, call] {
              m_status = call();
              m_text = LastError::Get().text;
          }) {}
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;
    ~Beside() { Join(); }

    OV_STATUS Join() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
        return m_status;
    }

    /// The thread's last error, after `Join`.
    const std::string& GetText() const { return m_text; }

private:
    OV_STATUS m_status = OV_STATUS_ERROR;
    std::string m_text;
    std::thread m_thread;
};

/// Two producers with two interfaces of two cameras each; the library is
/// initialised once and closed at the end.
class RoundsTest : public testing::Test {
protected:
    static constexpr unsigned kInterfaces = 2;
    static constexpr unsigned kDevices = 2;
    static constexpr uint32_t kCameras = 2 * kInterfaces * kDevices;

    RoundsTest();
    ~RoundsTest() override;

    void SetUp() override;

    /// Runs them all, or up to the first that fails.
    static void Run(const std::function<void(unsigned round)>& round);

    static uint32_t Update();
    /// The index of a camera on the list.
    static uint32_t IndexOf(const std::string& deviceId);
    static OV_DEV_HANDLE Open(const std::string& deviceId);
    /// Opens the camera and lets it deliver whenever a buffer is free.
    OV_DEV_HANDLE OpenRunning(TestProducer& producer, unsigned iface, unsigned device);
    /// What the producer calls that camera, which the other producer does too.
    static std::string IdOf(unsigned iface, unsigned device);
    void ExpectClosed(std::initializer_list<const char*> kinds);

    TestProducer gev{Path("OvGVTL.cti")};
    TestProducer custom{Path("KwTL.cti")};

private:
    static std::string Path(const char* name) { return std::string(OV_TEST_STAGE) + "/" + name; }
};
