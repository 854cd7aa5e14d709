#pragma once
/// What happens at once, again and again.

#include "support/ApiTest.h"
#include "support/Beside.h"
#include "support/FrameCounter.h"
#include "support/RunRounds.h"

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

    static void Run(const std::function<void(unsigned round)>& round) { RunRounds(round); }

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
