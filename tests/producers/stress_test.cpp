/// @file
/// Several threads at one producer: nothing may be lost, stuck or broken.
#include <atomic>
#include <thread>
#include <vector>

#include "TestProducerFixture.h"

namespace {

using Stress = TestProducerTest;

TEST_F(Stress, FetchersShareTheFramesOfAFreeRunningStream) {
    camera.OpenStream();
    control.SetFreeRunning(0, 0, 1);
    camera.Start(6, kFrameSize);
    std::atomic<int> left = 600;
    std::atomic<int> failures = 0;
    {
        std::vector<std::jthread> fetchers;
        fetchers.reserve(3);
        for (int i = 0; i < 3; ++i) {
            fetchers.emplace_back([&] {
                while (left.fetch_sub(1) > 0) {
                    GenTL::S_EVENT_NEW_BUFFER data{};
                    failures += camera.GetFrame(data) == 0 ? 0 : 1;
                    camera.BufferInfo<std::uint64_t>(data.BufferHandle, GenTL::BUFFER_INFO_FRAMEID);
                    failures += api.DSQueueBuffer(camera.stream, data.BufferHandle) == 0 ? 0 : 1;
                }
            });
        }
    }
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(camera.StreamInfo<std::uint64_t>(GenTL::STREAM_INFO_NUM_UNDERRUN), 0U);
}

TEST_F(Stress, StartAndStopWhileOthersWaitAndFlush) {
    camera.OpenStream();
    control.SetFreeRunning(0, 0, 1);
    camera.RegisterNewBuffer();
    camera.Announce(4, kFrameSize);
    std::atomic<bool> over = false;
    {
        std::jthread fetcher([&] {
            while (!over) {
                GenTL::S_EVENT_NEW_BUFFER data{};
                if (camera.GetFrame(data, 1) == 0) {
                    // A flush may have queued it already.
                    api.DSQueueBuffer(camera.stream, data.BufferHandle);
                }
            }
        });
        std::jthread flusher([&] {
            while (!over) {
                for (const GenTL::ACQ_QUEUE_TYPE operation : {2, 1, 4, 3, 0, 2}) {
                    api.DSFlushQueue(camera.stream, operation);
                }
            }
        });
        for (int round = 0; round < 60; ++round) {
            EXPECT_EQ(api.DSStartAcquisition(camera.stream, 0, GenTL::GENTL_INFINITE), 0);
            api.EventKill(camera.event);
            EXPECT_EQ(api.DSStopAcquisition(camera.stream, round % 2), 0);
        }
        over = true;
    }
    EXPECT_EQ(api.DSFlushQueue(camera.stream, GenTL::ACQ_QUEUE_ALL_DISCARD), 0);
    for (const GenTL::BUFFER_HANDLE buffer : camera.buffers) {
        EXPECT_EQ(api.DSRevokeBuffer(camera.stream, buffer, nullptr, nullptr), 0);
    }
}

/// Closes what `close` does under a thread that reads and one that waits for frames. Both shall end
/// with the code of a closed module.
template <typename Close>
void CloseUnderCalls(const GenTLApi& api, const OpenCamera& opened, Close close) {
    const auto isOfAClosedOne = [](GenTL::GC_ERROR code) {
        return code == GenTL::GC_ERR_INVALID_HANDLE || code == GenTL::GC_ERR_NOT_INITIALIZED;
    };
    std::atomic<bool> over = false;
    std::jthread reader([&] {
        while (!over) {
            std::uint32_t value = 0;
            std::size_t size = sizeof value;
            const GenTL::GC_ERROR code = api.GCReadPort(opened.port, 0x400, &value, &size);
            EXPECT_TRUE(code == GenTL::GC_ERR_SUCCESS || isOfAClosedOne(code)) << code;
            api.DSGetInfo(opened.stream, GenTL::STREAM_INFO_NUM_QUEUED, nullptr, nullptr, &size);
        }
    });
    std::jthread waiter([&] {
        GenTL::S_EVENT_NEW_BUFFER data{};
        const GenTL::GC_ERROR code = opened.GetFrame(data, GenTL::GENTL_INFINITE);
        EXPECT_TRUE(code == GenTL::GC_ERR_ABORT || isOfAClosedOne(code)) << code;
    });
    EXPECT_EQ(close(), 0);
    over = true;
}

TEST_F(Stress, ClosingUnderOtherCallsEndsThemWithACode) {
    for (int round = 0; round < 20; ++round) {
        OpenCamera opened(api);
        opened.OpenStream();
        opened.RegisterNewBuffer();
        CloseUnderCalls(api, opened, [&] { return api.DevClose(opened.device); });
    }
}

TEST_F(Stress, ClosingTheProducerUnderOtherCallsEndsThemWithACode) {
    for (int round = 0; round < 20; ++round) {
        OpenCamera opened(api);
        opened.OpenStream();
        opened.RegisterNewBuffer();
        CloseUnderCalls(api, opened, [&] { return api.GCCloseLib(); });
        opened.library = false;
    }
}

TEST_F(Stress, OneCameraIsReadWhileAnotherComesAndGoes) {
    control.SetDeviceCount(0, 2);
    camera.OpenDevice();
    std::atomic<bool> over = false;
    std::atomic<int> failures = 0;
    {
        std::jthread reader([&] {
            while (!over) {
                std::uint32_t width = 0;
                std::size_t size = sizeof width;
                const GenTL::GC_ERROR code = api.GCReadPort(camera.port, 0x400, &width, &size);
                failures += code == 0 && width == 64 ? 0 : 1;
            }
        });
        for (int round = 0; round < 100; ++round) {
            GenTL::DEV_HANDLE device = nullptr;
            GenTL::PORT_HANDLE port = nullptr;
            std::uint32_t width = 0;
            std::size_t size = sizeof width;
            EXPECT_EQ(api.IFOpenDevice(camera.iface, "TestCamera0_1", 4, &device), 0);
            EXPECT_EQ(api.DevGetPort(device, &port), 0);
            EXPECT_EQ(api.GCReadPort(port, 0x400, &width, &size), 0);
            EXPECT_EQ(api.DevClose(device), 0);
            EXPECT_EQ(api.GCReadPort(port, 0x400, &width, &size), GenTL::GC_ERR_INVALID_HANDLE);
        }
        over = true;
    }
    EXPECT_EQ(failures, 0);
}

}  // namespace
