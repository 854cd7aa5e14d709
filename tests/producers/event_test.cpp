/// @file
/// Waiting for events, and what ends a wait.
#include <atomic>
#include <thread>
#include <vector>

#include "TestProducerFixture.h"

namespace {

class Events : public TestProducerTest {
protected:
    Events() { camera.OpenStream(); }

    GenTL::EVENT_HANDLE Register(void* source, GenTL::EVENT_TYPE type) {
        GenTL::EVENT_HANDLE event = nullptr;
        EXPECT_EQ(api.GCRegisterEvent(source, type, &event), 0);
        return event;
    }

    GenTL::GC_ERROR Get(GenTL::EVENT_HANDLE event, std::uint64_t timeout) {
        std::byte buffer[2048];
        std::size_t size = sizeof buffer;
        return api.EventGetData(event, buffer, &size, timeout);
    }

    template <typename T>
    T EventInfo(GenTL::EVENT_HANDLE event, GenTL::EVENT_INFO_CMD command) {
        return GenTLApi::Number<T>([&](auto* type, void* out, std::size_t* size) {
            return api.EventGetInfo(event, command, type, out, size);
        });
    }

    /// Starts threads that wait without a limit and waits until they are there.
    void StartWaiters(GenTL::EVENT_HANDLE event, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            waiters.emplace_back([this, event] {
                results[Get(event, GenTL::GENTL_INFINITE) == GenTL::GC_ERR_ABORT ? 0 : 1] += 1;
                ++ended;
            });
        }
        ASSERT_EQ(control.WaitForCalls("EventGetData", count, 10000), 0);
    }

    void WaitForEnded(std::size_t count) {
        while (ended < count) {
            std::this_thread::yield();
        }
    }

    std::atomic<std::size_t> ended = 0;
    std::atomic<std::size_t> results[2] = {0, 0};  ///< aborted, others
    std::vector<std::jthread> waiters;
};

TEST_F(Events, TimeoutZeroTestsAndReturns) {
    EXPECT_EQ(Get(Register(camera.stream, GenTL::EVENT_NEW_BUFFER), 0), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(Events, WaitEndsWithItsTimeout) {
    EXPECT_EQ(Get(Register(camera.stream, GenTL::EVENT_NEW_BUFFER), 20), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(Events, LongestTimeoutDoesNotOverflow) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    control.FireExposureEnd(0, 0, 1);
    EXPECT_EQ(Get(event, GenTL::GENTL_INFINITE - 1), 0);
}

TEST_F(Events, SecondRegistrationIsRefused) {
    Register(camera.stream, GenTL::EVENT_NEW_BUFFER);
    GenTL::EVENT_HANDLE event = nullptr;
    EXPECT_EQ(api.GCRegisterEvent(camera.stream, GenTL::EVENT_NEW_BUFFER, &event),
              GenTL::GC_ERR_RESOURCE_IN_USE);
}

TEST_F(Events, TypeMustFitTheModule) {
    GenTL::EVENT_HANDLE event = nullptr;
    EXPECT_EQ(api.GCRegisterEvent(camera.device, GenTL::EVENT_NEW_BUFFER, &event),
              GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(api.GCRegisterEvent(camera.stream, GenTL::EVENT_DEVICE_OFFLINE, &event),
              GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(api.GCRegisterEvent(camera.system, GenTL::EVENT_ERROR, &event),
              GenTL::GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(event, nullptr);
}

TEST_F(Events, ProducerMayNotOfferTheOfflineEvent) {
    control.OfferEvent(GenTL::EVENT_DEVICE_OFFLINE, 0);
    GenTL::EVENT_HANDLE event = nullptr;
    EXPECT_EQ(api.GCRegisterEvent(camera.device, GenTL::EVENT_DEVICE_OFFLINE, &event),
              GenTL::GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(Events, UnregisteringWhatIsNotRegisteredIsRefused) {
    EXPECT_EQ(api.GCUnregisterEvent(camera.stream, GenTL::EVENT_NEW_BUFFER),
              GenTL::GC_ERR_INVALID_PARAMETER);
}

TEST_F(Events, EntriesFromBeforeTheRegistrationAreNotKept) {
    control.FireExposureEnd(0, 0, 1);
    EXPECT_EQ(Get(Register(camera.device, GenTL::EVENT_REMOTE_DEVICE), 0), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(Events, KillEndsExactlyOneWait) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    StartWaiters(event, 2);
    ASSERT_EQ(api.EventKill(event), 0);
    WaitForEnded(1);
    control.FireExposureEnd(0, 0, 1);
    WaitForEnded(2);
    EXPECT_EQ(results[0], 1U);
    EXPECT_EQ(results[1], 1U);
}

TEST_F(Events, KillWithoutAWaitIsRemembered) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    ASSERT_EQ(api.EventKill(event), 0);
    EXPECT_EQ(Get(event, GenTL::GENTL_INFINITE), GenTL::GC_ERR_ABORT);
    EXPECT_EQ(Get(event, 0), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(Events, KillLeavesTheQueueAlone) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    control.FireExposureEnd(0, 0, 2);
    ASSERT_EQ(api.EventKill(event), 0);
    EXPECT_EQ(Get(event, 0), GenTL::GC_ERR_ABORT);
    EXPECT_EQ(EventInfo<std::size_t>(event, GenTL::EVENT_NUM_IN_QUEUE), 2U);
    EXPECT_EQ(Get(event, 0), 0);
}

TEST_F(Events, UnregisteringEndsAllWaits) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    StartWaiters(event, 3);
    ASSERT_EQ(api.GCUnregisterEvent(camera.device, GenTL::EVENT_REMOTE_DEVICE), 0);
    WaitForEnded(3);
    EXPECT_EQ(results[0] + results[1], 3U);
    EXPECT_EQ(Get(event, 0), GenTL::GC_ERR_INVALID_HANDLE);
}

TEST_F(Events, UnregisteringDiscardsWhatIsQueued) {
    Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    control.FireExposureEnd(0, 0, 2);
    ASSERT_EQ(api.GCUnregisterEvent(camera.device, GenTL::EVENT_REMOTE_DEVICE), 0);
    EXPECT_EQ(Get(Register(camera.device, GenTL::EVENT_REMOTE_DEVICE), 0), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(Events, ClosingTheModuleEndsTheWait) {
    camera.RegisterNewBuffer();
    StartWaiters(camera.event, 1);
    ASSERT_EQ(api.DSClose(camera.stream), 0);
    WaitForEnded(1);
    EXPECT_EQ(results[0] + results[1], 1U);
}

TEST_F(Events, ClosingTheLibraryEndsTheWait) {
    StartWaiters(Register(camera.device, GenTL::EVENT_DEVICE_OFFLINE), 1);
    ASSERT_EQ(api.GCCloseLib(), 0);
    camera.library = false;
    WaitForEnded(1);
}

TEST_F(Events, OtherCallsGoOnDuringAWait) {
    camera.RegisterNewBuffer();
    camera.Announce(1, kFrameSize);
    StartWaiters(camera.event, 1);
    EXPECT_EQ(api.DSQueueBuffer(camera.stream, camera.buffers[0]), 0);
    EXPECT_EQ(camera.ReadRegister<std::uint32_t>(0x400), 64U);
    EXPECT_EQ(api.EventKill(camera.event), 0);
    WaitForEnded(1);
}

TEST_F(Events, EachEntryGoesToOneWaiter) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    StartWaiters(event, 4);
    control.FireExposureEnd(0, 0, 4);
    WaitForEnded(4);
    EXPECT_EQ(results[1], 4U);
    EXPECT_EQ(EventInfo<std::size_t>(event, GenTL::EVENT_NUM_IN_QUEUE), 0U);
    EXPECT_EQ(EventInfo<std::uint64_t>(event, GenTL::EVENT_NUM_FIRED), 4U);
}

TEST_F(Events, FlushDropsAllEntries) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    control.FireExposureEnd(0, 0, 5);
    EXPECT_EQ(EventInfo<std::size_t>(event, GenTL::EVENT_NUM_IN_QUEUE), 5U);
    ASSERT_EQ(api.EventFlush(event), 0);
    EXPECT_EQ(Get(event, 0), GenTL::GC_ERR_TIMEOUT);
}

TEST_F(Events, FloodBeyondTheQueueIsDropped) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    control.FireExposureEnd(0, 0, 5000);
    EXPECT_EQ(EventInfo<std::size_t>(event, GenTL::EVENT_NUM_IN_QUEUE), 1024U);
}

TEST_F(Events, ShortBufferLeavesTheEntry) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    control.FireExposureEnd(0, 0, 1);
    std::byte buffer[4];
    std::size_t size = sizeof buffer;
    EXPECT_EQ(api.EventGetData(event, buffer, &size, 0), GenTL::GC_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(Get(event, 0), 0);
}

TEST_F(Events, NullBufferThrowsTheEntryAway) {
    camera.Start(2, kFrameSize);
    control.Trigger(0, 0, 2);
    std::size_t size = 0;
    ASSERT_EQ(api.EventGetData(camera.event, nullptr, &size, 10000), 0);
    EXPECT_EQ(camera.NextFrame(), camera.buffers[1]);
}

TEST_F(Events, RemoteMessageGivesNumberAndPayload) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_REMOTE_DEVICE);
    const char payload[] = "payload";
    control.FireRemoteEvent(0, 0, 0x9A01, payload, sizeof payload);
    std::byte raw[2048];
    std::size_t rawSize = sizeof raw;
    ASSERT_EQ(api.EventGetData(event, raw, &rawSize, 0), 0);
    EXPECT_LE(rawSize, EventInfo<std::size_t>(event, GenTL::EVENT_SIZE_MAX));
    const auto part = [&](GenTL::EVENT_DATA_INFO_CMD command) {
        return [&, command](auto* type, void* out, std::size_t* size) {
            return api.EventGetDataInfo(event, raw, rawSize, command, type, out, size);
        };
    };
    EXPECT_EQ(GenTLApi::Number<std::uint64_t>(part(GenTL::EVENT_DATA_NUMID)), 0x9A01U);
    EXPECT_EQ(GenTLApi::Text(part(GenTL::EVENT_DATA_ID)), "9A01");
    EXPECT_EQ(GenTLApi::Text(part(GenTL::EVENT_DATA_VALUE)), "payload");
}

TEST_F(Events, InvalidateNamesItsFeature) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_FEATURE_INVALIDATE);
    control.FireInvalidate(0, 0, "Width");
    char raw[64];
    std::size_t rawSize = sizeof raw;
    ASSERT_EQ(api.EventGetData(event, raw, &rawSize, 0), 0);
    EXPECT_EQ(GenTLApi::Text([&](auto* type, void* out, std::size_t* size) {
                  return api.EventGetDataInfo(event, raw, rawSize, GenTL::EVENT_DATA_ID, type, out,
                                              size);
              }),
              "Width");
}

TEST_F(Events, NewBufferEntryCanBeTakenApart) {
    camera.Start(1, kFrameSize);
    control.Trigger(0, 0, 1);
    GenTL::S_EVENT_NEW_BUFFER data{};
    ASSERT_EQ(camera.GetFrame(data), 0);
    const auto part = [&](GenTL::EVENT_DATA_INFO_CMD command) {
        return GenTLApi::Number<void*>([&](auto* type, void* out, std::size_t* size) {
            return api.EventGetDataInfo(camera.event, &data, sizeof data, command, type, out, size);
        });
    };
    EXPECT_EQ(part(GenTL::EVENT_DATA_ID), data.BufferHandle);
    EXPECT_EQ(part(GenTL::EVENT_DATA_VALUE), data.pUserPointer);
    EXPECT_EQ(EventInfo<std::size_t>(camera.event, GenTL::EVENT_SIZE_MAX), sizeof data);
}

TEST_F(Events, OfflineEventNeedsNoBuffer) {
    const GenTL::EVENT_HANDLE event = Register(camera.device, GenTL::EVENT_DEVICE_OFFLINE);
    control.LoseDevice(0, 0);
    std::size_t size = 0;
    EXPECT_EQ(api.EventGetData(event, nullptr, &size, GenTL::GENTL_INFINITE), 0);
}

}  // namespace
