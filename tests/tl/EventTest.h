#pragma once
/// An open camera whose events come.

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>

#include "TLClassDevice/Device.h"
#include "TLClassStream/DataStream.h"
#include "TLClassSupport/EventCallback.h"
#include "TransportTest.h"

namespace OVTLClass {

/// Runs a function of the test once the camera is gone.
class OfflineCallback : public IDeviceOfflineCallback {
public:
    explicit OfflineCallback(std::function<void()> function) : m_function(std::move(function)) {}
    IDeviceOfflineCallback* Clone() const override { return new OfflineCallback(m_function); }
    void operator()() override { m_function(); }

private:
    std::function<void()> m_function;
};

class EventTest : public ProducerTest {
protected:
    void SetUp() override {
        device = InitDevice();
        Open();
        producer.ClearLog();
    }
    /// No callback of a test outlives the test.
    void TearDown() override { device->DoCloseDevice(); }

    void Open() { device->DoOpenDevice(3); }

    void* RegisterOffline(std::function<void()> function) {
        return device->DoRegisterDeviceOfflineCallback(OfflineCallback(std::move(function)));
    }
    void RegisterOfflineCounter() {
        RegisterOffline([this] { ++called; });
    }

    template <class Condition>
    static void Await(const Condition& condition) {
        while (!condition()) {
            std::this_thread::yield();
        }
    }
    void AwaitCalled(unsigned count) {
        Await([&] { return called >= count; });
    }
    void AwaitCalls(const char* function, uint64_t count) {
        EXPECT_EQ(producer.WaitForCalls(function, count, 60000), 0) << function;
    }

    /// The calls since the log was cleared that are among those.
    std::vector<std::string> CallsAmong(const std::vector<std::string>& wanted) const {
        std::vector<std::string> calls = producer.Log();
        std::erase_if(calls, [&](const std::string& call) {
            return std::find(wanted.begin(), wanted.end(), call) == wanted.end();
        });
        return calls;
    }

    std::shared_ptr<IDevice> device;
    std::atomic<unsigned> called{0};
};

}  // namespace OVTLClass
