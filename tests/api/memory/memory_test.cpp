// Every allocation beneath a call is refused in turn, alone and with all that follow.

#include <array>
#include <functional>
#include <iostream>
#include <thread>

#include "OvINodes.h"
#include "support/AcquisitionTest.h"
#include "support/CallbackCounter.h"
#include "support/FailingMemory.h"
#include "support/StartableCamera.h"

namespace {

/// What is done with refused memory, and looked at afterwards.
struct Plan {
    std::function<void()> prepare = [] {};
    std::function<OV_STATUS()> action;
    std::function<void(OV_STATUS)> check;
};

class MemoryTest : public AcquisitionTest {
protected:
    ~MemoryTest() override {
        OVCloseLib();
        std::cout << "[  CASES   ] " << m_cases << '\n';
    }

    void RunShort(const Plan& plan, Shortage shortage) {
        bool isOver = false;
        for (size_t before = 0; !isOver && !HasFailure(); ++before) {
            SCOPED_TRACE(
                (shortage == Shortage::Once ? "refused once after " : "refused for good after ") +
                std::to_string(before));
            plan.prepare();
            OV_STATUS status = OV_STATUS_SUCCESS;
            {
                const FailingMemory scarce(before, shortage);
                status = plan.action();
                isOver = !FailingMemory::WasReached();
            }
            EXPECT_TRUE(!isOver || status == OV_STATUS_SUCCESS) << LastError::Get().text;
            plan.check(status);
            ++m_cases;
        }
    }

    void Run(const Plan& plan) {
        RunShort(plan, Shortage::Once);
        RunShort(plan, Shortage::Lasting);
    }

    void ExpectClosed(std::initializer_list<const char*> kinds) {
        for (const char* const kind : kinds) {
            EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
        }
    }

    void ExpectRoundOfFrames() {
        EXPECT_OV_OK(OVStreamOn(camera));
        producer.Trigger(0, 0, 1);
        EXPECT_OV_OK(OVQBuf(camera, Borrow()));
        EXPECT_OV_OK(OVStreamOff(camera));
        ExpectClosed({"Buffer", "Event", "Acquisition"});
    }

    void CloseAndOpenAgain() {
        EXPECT_OV_OK(OVCloseDevice(camera));
        ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }

private:
    unsigned m_cases = 0;
};

TEST_F(MemoryTest, AStartIsMadeOrUndone) {
    Run({.action = [this] { return OVStreamOn(camera); },
         .check =
             [this](OV_STATUS status) {
                 if (status == OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(OVStreamOff(camera));
                 }
                 ExpectClosed({"Buffer", "Event", "Acquisition"});
                 ExpectRoundOfFrames();
             }});
}

TEST_F(MemoryTest, AStartWithACallbackIsMadeOrUndone) {
    RegisterCallback();
    Run({.action = [this] { return OVStreamOn(camera); },
         .check =
             [this](OV_STATUS status) {
                 if (status == OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(OVStreamOff(camera));
                 }
                 ExpectClosed({"Buffer", "Event", "Acquisition"});
                 EXPECT_OV_OK(OVStreamOn(camera));
                 EXPECT_OV_OK(OVStreamOff(camera));
             }});
}

TEST_F(MemoryTest, AStopGoesToItsEnd) {
    Run({.prepare =
             [this] {
                 Start();
                 BorrowNew(2);
             },
         .action = [this] { return OVStreamOff(camera); },
         .check =
             [this](OV_STATUS) {
                 ExpectClosed({"Buffer", "Event", "Acquisition"});
                 ExpectRoundOfFrames();
             }});
}

TEST_F(MemoryTest, ACallbackForAnEventIsRegisteredOrNothingIs) {
    CallbackCounter counter;
    void* handle = nullptr;
    constexpr OV_FEATURE_ID kEvent = OV_FEATURE_EventExposureEndFrameID;
    const auto registerCallback = [&] {
        return OVRegisterFeatureCallback(camera, &counter, &CallbackCounter::OnEvent, kEvent,
                                         &handle);
    };
    Run({.prepare = [&] { handle = nullptr; },
         .action = registerCallback,
         .check =
             [&](OV_STATUS status) {
                 EXPECT_EQ(handle != nullptr, status == OV_STATUS_SUCCESS);
                 if (status != OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(registerCallback());
                 }
                 EXPECT_EQ(producer.OpenCount("Event"), 1);
                 const unsigned before = counter.events;
                 producer.FireExposureEnd(0, 0, 1);
                 CallbackCounter::Await(counter.events, before + 1);
                 EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, kEvent, handle));
                 CloseAndOpenAgain();
             }});
}

TEST_F(MemoryTest, ACallbackForAFeatureIsRegisteredOrNotAtAll) {
    static unsigned called = 0;
    void* handle = nullptr;
    const auto registerCallback = [&] {
        return OVRegisterFeatureCallback(
            camera, nullptr, [](OV_FEATURE_ID, void*) { ++called; }, OV_FEATURE_Width, &handle);
    };
    Run({.prepare = [&] { handle = nullptr; },
         .action = registerCallback,
         .check =
             [&](OV_STATUS status) {
                 called = 0;
                 EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 32));
                 EXPECT_EQ(called != 0, status == OV_STATUS_SUCCESS);
                 EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 64));
                 if (status != OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(registerCallback());
                 }
                 EXPECT_OV_OK(OVUnregisterFeatureCallback(camera, OV_FEATURE_Width, handle));
             }});
}

TEST_F(MemoryTest, ACallbackForTheLossIsRegisteredOrNothingIs) {
    CallbackCounter counter;
    void* handle = nullptr;
    const auto registerCallback = [&] {
        return OVRegisterDeviceOfflineCallback(camera, &counter, &CallbackCounter::OnLoss, &handle);
    };
    Run({.prepare = [&] { handle = nullptr; },
         .action = registerCallback,
         .check =
             [&](OV_STATUS status) {
                 if (status != OV_STATUS_SUCCESS) {
                     EXPECT_EQ(producer.OpenCount("Event"), 0);
                     EXPECT_OV_OK(registerCallback());
                 }
                 EXPECT_EQ(producer.OpenCount("Event"), 1);
                 CloseAndOpenAgain();
             }});
}

/// After a close the handle is valid still, and the camera closes, or it is closed.
TEST_F(MemoryTest, ACloseOfAStreamingCameraIsMadeOrLeavesTheHandle) {
    CallbackCounter counter;
    void* handle = nullptr;
    Run({.prepare =
             [&] {
                 ASSERT_OV_OK(OVRegisterDeviceOfflineCallback(camera, &counter,
                                                              &CallbackCounter::OnLoss, &handle));
                 ASSERT_OV_OK(OVRegisterFeatureCallback(camera, &counter, &CallbackCounter::OnEvent,
                                                        OV_FEATURE_EventExposureEndFrameID,
                                                        &handle));
                 Start();
                 BorrowNew(2);
             },
         .action = [this] { return OVCloseDevice(camera); },
         .check =
             [this](OV_STATUS status) {
                 if (status != OV_STATUS_SUCCESS && OVCloseDevice(camera) != OV_STATUS_SUCCESS) {
                     EXPECT_EQ(LastError::Get().status, OV_STATUS_INVALID_HANDLE);
                 }
                 ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
                 camera = Open();
                 ASSERT_NE(camera, nullptr);
             }});
}

TEST_F(MemoryTest, ACloseOfTheLibraryIsMadeOrCanBeRepeated) {
    Run({.prepare =
             [this] {
                 Start();
                 BorrowNew(1);
             },
         .action = [] { return OVCloseLib(); },
         .check =
             [this](OV_STATUS) {
                 EXPECT_OV_OK(OVCloseLib());
                 ExpectClosed({"Library", "System", "Interface", "Device", "Stream", "Buffer",
                               "Event", "Acquisition"});
                 OpenCameraTest::SetUp();
             }});
}

TEST_F(MemoryTest, NodesAreListedOrNoneIs) {
    size_t number = 0;
    Run({.prepare =
             [&] {
                 CloseAndOpenAgain();
                 number = 0;
             },
         .action = [&] { return OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, nullptr, &number); },
         .check =
             [&](OV_STATUS status) {
                 EXPECT_EQ(number != 0, status == OV_STATUS_SUCCESS);
                 size_t again = 0;
                 EXPECT_OV_OK(OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, nullptr, &again));
                 EXPECT_GT(again, 40U);
                 EXPECT_TRUE(number == 0 || number == again);
             }});
}

TEST_F(MemoryTest, ANodeIsFoundOrNot) {
    OV_NODE_HANDLE node = 0;
    Run({.prepare =
             [&] {
                 CloseAndOpenAgain();
                 node = 0;
             },
         .action = [&] { return OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Width", &node); },
         .check =
             [&](OV_STATUS status) {
                 EXPECT_EQ(node != 0, status == OV_STATUS_SUCCESS);
                 OV_NODE_HANDLE again = 0;
                 EXPECT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Width", &again));
                 EXPECT_TRUE(node == 0 || node == again);
                 int64_t width = 0;
                 EXPECT_OV_OK(OvNodeGetInteger(again, &width));
             }});
}

TEST_F(MemoryTest, ACallbackOfANodeIsRegisteredOrNotAtAll) {
    static unsigned called = 0;
    OV_NODE_CALLBACK_HANDLE handle = nullptr;
    OV_NODE_HANDLE node = 0;
    ASSERT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_INTERFACE, "InterfaceID", &node));
    const auto registerCallback = [&] {
        return OvNodeRegisterCallback(
            node, nullptr, [](OV_NODE_HANDLE, void*) { ++called; }, &handle);
    };
    Run({.prepare = [&] { handle = nullptr; },
         .action = registerCallback,
         .check =
             [&](OV_STATUS status) {
                 called = 0;
                 EXPECT_OV_OK(OvNodeInvalidate(node));
                 EXPECT_EQ(called != 0, status == OV_STATUS_SUCCESS);
                 if (status != OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(registerCallback());
                 }
                 EXPECT_OV_OK(OvNodeUnregisterCallback(node, handle));
             }});
}

/// A camera whose frames have a chunk, of which the library keeps a copy.
class ChunkMemoryTest : public MemoryTest {
protected:
    void SetUp() override {
        const std::string text =
            DescribeStartable(DescriptionXml::ChunkPortXml("Chunk", "A1", "Yes") +
                              DescribeRegister("ChunkValue", "0", "Chunk"));
        producer.SetDescription("Remote", "Chunks.xml", text.data(), text.size());
        producer.AddChunk(0, 0, 0xA1, 5, 4);
        MemoryTest::SetUp();
        Start();
    }
    bool IsReadable() {
        OV_NODE_HANDLE node = 0;
        int64_t value = 0;
        EXPECT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "ChunkValue", &node));
        const OV_STATUS status = OvNodeGetInteger(node, &value);
        EXPECT_TRUE(status == OV_STATUS_SUCCESS || status == OV_STATUS_INVALID_ACCESS) << status;
        return status == OV_STATUS_SUCCESS;
    }
};

TEST_F(ChunkMemoryTest, AFrameIsAttachedOrNoneIs) {
    producer.Trigger(0, 0, 1);
    OV_FRAME_BUFFER* const frame = Borrow();
    Run({.prepare = [&] { EXPECT_OV_OK(OvNodeDetachFrame(camera)); },
         .action = [&] { return OvNodeAttachFrame(camera, frame); },
         .check =
             [&](OV_STATUS status) {
                 EXPECT_EQ(IsReadable(), status == OV_STATUS_SUCCESS);
                 EXPECT_OV_OK(OvNodeAttachFrame(camera, frame));
                 EXPECT_TRUE(IsReadable());
             }});
}

TEST_F(ChunkMemoryTest, AFrameThatIsGivenBackIsDetached) {
    OV_FRAME_BUFFER* frame = nullptr;
    Run({.prepare =
             [&] {
                 producer.Trigger(0, 0, 1);
                 frame = Borrow();
                 EXPECT_OV_OK(OvNodeAttachFrame(camera, frame));
             },
         .action = [&] { return OVQBuf(camera, frame); },
         .check =
             [&](OV_STATUS status) {
                 if (status != OV_STATUS_SUCCESS) {
                     EXPECT_OV_OK(OVQBuf(camera, frame));
                 }
                 EXPECT_FALSE(IsReadable());
             }});
}

TEST_F(MemoryTest, APropertyIsReturnedOrNot) {
    OV_NODE_HANDLE node = 0;
    ASSERT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Width", &node));
    std::array<char, 64> text{};
    size_t size = 0;
    Run({.prepare =
             [&] {
                 text.fill('?');
                 size = text.size();
             },
         .action =
             [&] {
                 return OvNodeGetProperty(node, "Name", OV_NODE_PROPERTY_VALUE, text.data(), &size);
             },
         .check =
             [&](OV_STATUS status) {
                 EXPECT_EQ(std::string(text.data(), 5) == "Width", status == OV_STATUS_SUCCESS);
             }});
    Run({.prepare = [&] { size = 0; },
         .action = [&] { return OvNodeGetPropertyNames(node, nullptr, &size); },
         .check = [&](OV_STATUS status) { EXPECT_EQ(size != 0, status == OV_STATUS_SUCCESS); }});
}

TEST_F(MemoryTest, AFailureIsToldWithoutMemory) {
    int64_t value = 0;
    int32_t told = 0;
    size_t size = 0;
    OV_STATUS asked = OV_STATUS_SUCCESS;
    Run({.action =
             [&] {
                 const OV_STATUS status = OVGetInt(camera, OV_FEATURE_PixelFormat, &value);
                 asked = OVGetLastError(&told, nullptr, &size);
                 return status == OV_STATUS_ERROR_TYPE ? OV_STATUS_SUCCESS : status;
             },
         .check =
             [&](OV_STATUS status) {
                 EXPECT_EQ(asked, OV_STATUS_SUCCESS);
                 EXPECT_TRUE(status == OV_STATUS_SUCCESS || status == OV_STATUS_ERROR) << status;
             }});
}

TEST_F(MemoryTest, AThreadWithoutMemoryHasNoFailureAtFirst) {
    std::array<char, 64> text{};
    int32_t status = -1;
    OV_STATUS asked = OV_STATUS_ERROR;
    std::thread([&] {
        const FailingMemory scarce(0, Shortage::Lasting);
        size_t size = text.size();
        asked = OVGetLastError(&status, text.data(), &size);
    }).join();
    EXPECT_EQ(asked, OV_STATUS_SUCCESS);
    EXPECT_EQ(status, OV_STATUS_SUCCESS);
    EXPECT_STREQ(text.data(), "{0}{No error occurred}");
}

}  // namespace
