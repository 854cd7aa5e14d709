// Every allocation beneath a call on a node is refused in turn.

#include <algorithm>
#include <array>
#include <future>
#include <string>
#include <vector>

#include "MemoryTest.h"
#include "OvINodes.h"
#include "support/FileFeatures.h"
#include "support/StartableCamera.h"

namespace {

/// What calls take and where they write.
struct NodeSubject {
    OV_DEV_HANDLE camera = nullptr;
    OV_NODE_HANDLE node = 0;
    OV_NODE_CALLBACK_HANDLE callback = nullptr;
    alignas(16) std::array<uint8_t, size_t{1} << 18> memory{};
    size_t size = 0;

    template <class T>
    T* Memory() {
        return reinterpret_cast<T*>(memory.data());
    }
};

struct NodeMemoryCall {
    const char* function;
    const char* node;
    OV_STATUS (*run)(NodeSubject& subject);
    /// What must be before the call; null for nothing.
    OV_STATUS (*prepare)(NodeSubject& subject) = nullptr;
    /// What the call leaves; null for nothing.
    OV_STATUS (*undo)(NodeSubject& subject) = nullptr;
};

void PrintTo(const NodeMemoryCall& call, std::ostream* stream) {
    *stream << call.function;
}

constexpr std::array<uint8_t, 4> kContent{1, 2, 3, 4};

void HearNothing(OV_NODE_HANDLE, void*) {}

OV_STATUS Listen(NodeSubject& s) {
    return OvNodeRegisterCallback(s.node, nullptr, &HearNothing, &s.callback);
}

OV_STATUS ListenNoMore(NodeSubject& s) {
    return OvNodeUnregisterCallback(s.node, s.callback);
}

OV_STATUS ReadFile(NodeSubject& s) {
    s.size = kContent.size();
    return OvNodeReadFile(s.camera, "UserSet", 0, s.Memory<uint8_t>(), &s.size);
}

#define OV_CALL(function, name, ...)                                           \
    {                                                                          \
#function, name, [](NodeSubject & s) { return function(__VA_ARGS__); } \
    }

const NodeMemoryCall kMemoryCalls[] = {
    OV_CALL(OvNodeFind, "Width", s.camera, OV_NODE_MODULE_CAMERA, "Width",
            s.Memory<OV_NODE_HANDLE>()),
    OV_CALL(OvNodeGetAll, "Width", s.camera, OV_NODE_MODULE_CAMERA, s.Memory<OV_NODE_HANDLE>(),
            &s.size),
    OV_CALL(OvNodeGetRelated, "Width", s.node, OV_NODE_RELATION_SOURCES, s.Memory<OV_NODE_HANDLE>(),
            &s.size),
    OV_CALL(OvNodeGetInfo, "Width", s.node, s.Memory<OV_NODE_INFO>()),
    OV_CALL(OvNodeGetAccess, "Width", s.node, s.Memory<OV_NODE_ACCESS>()),
    OV_CALL(OvNodeGetText, "DeviceUserID", s.node, OV_NODE_TEXT_TOOL_TIP, s.Memory<char>(),
            &s.size),
    OV_CALL(OvNodeGetXml, "Width", s.camera, OV_NODE_MODULE_CAMERA, s.Memory<char>(), &s.size),
    OV_CALL(OvNodeGetPropertyNames, "Width", s.node, s.Memory<char>(), &s.size),
    OV_CALL(OvNodeGetProperty, "Width", s.node, "pValue", OV_NODE_PROPERTY_VALUE, s.Memory<char>(),
            &s.size),
    OV_CALL(OvNodeInvalidate, "Width", s.node),
    OV_CALL(OvNodeGetAsText, "TriggerMode", s.node, s.Memory<char>(), &s.size),
    OV_CALL(OvNodeSetAsText, "Width", s.node, "32"),
    OV_CALL(OvNodeGetInteger, "Width", s.node, s.Memory<int64_t>()),
    OV_CALL(OvNodeSetInteger, "Width", s.node, 32),
    OV_CALL(OvNodeGetIntegerRange, "Width", s.node, s.Memory<OV_INT_RANGE>()),
    OV_CALL(OvNodeGetIntegerValues, "Width", s.node, s.Memory<int64_t>(), &s.size),
    OV_CALL(OvNodeGetFloat, "Gain", s.node, s.Memory<double>()),
    OV_CALL(OvNodeSetFloat, "Gain", s.node, 2),
    OV_CALL(OvNodeGetFloatRange, "ExposureTime", s.node, s.Memory<OV_FLOAT_RANGE>()),
    OV_CALL(OvNodeGetFloatValues, "ExposureTime", s.node, s.Memory<double>(), &s.size),
    OV_CALL(OvNodeGetBoolean, "ReverseX", s.node, s.Memory<bool>()),
    OV_CALL(OvNodeSetBoolean, "ReverseX", s.node, true),
    OV_CALL(OvNodeGetSymbolic, "TriggerMode", s.node, s.Memory<char>(), &s.size),
    OV_CALL(OvNodeSetSymbolic, "TriggerMode", s.node, "On"),
    OV_CALL(OvNodeGetNumber, "TriggerMode", s.node, s.Memory<int64_t>()),
    OV_CALL(OvNodeSetNumber, "TriggerMode", s.node, 1),
    OV_CALL(OvNodeGetString, "DeviceUserID", s.node, s.Memory<char>(), &s.size),
    OV_CALL(OvNodeSetString, "DeviceUserID", s.node, "a text that takes memory of its own"),
    OV_CALL(OvNodeGetStringMaxSize, "DeviceUserID", s.node, s.Memory<size_t>()),
    OV_CALL(OvNodeGetRegister, "UserData", s.node, s.Memory<uint8_t>(), &s.size),
    OV_CALL(OvNodeSetRegister, "UserData", s.node, kContent.data(), kContent.size()),
    OV_CALL(OvNodeGetRegisterPlace, "UserData", s.node, s.Memory<int64_t>(),
            s.Memory<int64_t>() + 1),
    OV_CALL(OvNodeExecute, "UserSetSave", s.node),
    OV_CALL(OvNodeIsDone, "UserSetSave", s.node, s.Memory<bool>()),
    {"OvNodeRegisterCallback", "Width", &Listen, nullptr, &ListenNoMore},
    {"OvNodeUnregisterCallback", "Width", &ListenNoMore, &Listen, nullptr},
    {"OvNodeReadFile", "Width", &ReadFile},
    OV_CALL(OvNodeWriteFile, "Width", s.camera, "UserSet", kContent.data(), kContent.size()),
    OV_CALL(OvNodeDeleteFile, "Width", s.camera, "UserSet"),
};

#undef OV_CALL

/// Calls that are refused memory write nothing, and succeed when they have it again.
class NodeMemoryTest : public MemoryTest, public testing::WithParamInterface<NodeMemoryCall> {
protected:
    void SetUp() override {
        MemoryTest::SetUp();
        DescribeFiles();
        subject.camera = camera;
        ASSERT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, GetParam().node, &subject.node));
    }

    void Prepare() {
        EXPECT_OV_OK(OvNodeInvalidate(subject.node));
        subject.memory.fill(kUntouched);
        subject.size = kSize;
        if (GetParam().prepare != nullptr) {
            EXPECT_OV_OK(GetParam().prepare(subject));
        }
    }
    void Undo() {
        if (GetParam().undo != nullptr) {
            EXPECT_OV_OK(GetParam().undo(subject));
        }
    }
    /// @return what the call writes
    std::vector<uint8_t> RunInPeace() {
        EXPECT_OV_OK(GetParam().run(subject));
        Undo();
        return {subject.memory.begin(), subject.memory.end()};
    }

    bool IsUntouched() const {
        return std::all_of(subject.memory.begin(), subject.memory.end(),
                           [](uint8_t byte) { return byte == kUntouched; });
    }

    static constexpr uint8_t kUntouched = 0x6E;
    static constexpr size_t kSize = (size_t{1} << 18) / sizeof(OV_NODE_HANDLE);
    NodeSubject subject;

private:
    /// Opens the camera with the features of files as well. Its memory says that each operation
    /// succeeds.
    void DescribeFiles() {
        size_t size = 0;
        ASSERT_OV_OK(OvNodeGetXml(camera, OV_NODE_MODULE_CAMERA, nullptr, &size));
        std::string description(size, '\0');
        ASSERT_OV_OK(OvNodeGetXml(camera, OV_NODE_MODULE_CAMERA, description.data(), &size));
        description.insert(description.find("</RegisterDescription>"), FileFeatures());
        description.resize(description.size() - 1);
        ASSERT_OV_OK(OVCloseDevice(camera));
        producer.SetDescription("Remote", "Files.xml", description.data(), description.size());
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }
};

TEST_P(NodeMemoryTest, IsDoneOrNothingIs) {
    Prepare();
    const std::vector<uint8_t> expected = RunInPeace();
    Run({.prepare = [this] { Prepare(); },
         .action = [this] { return GetParam().run(subject); },
         .check =
             [&](OV_STATUS status) {
                 if (status == OV_STATUS_SUCCESS) {
                     Undo();
                 } else {
                     EXPECT_EQ(status, OV_STATUS_ERROR) << LastError::Get().text;
                     EXPECT_TRUE(IsUntouched()) << "wrote although it failed";
                     EXPECT_EQ(RunInPeace(), expected);
                 }
             }});
}

INSTANTIATE_TEST_SUITE_P(All, NodeMemoryTest, testing::ValuesIn(kMemoryCalls),
                         [](const auto& call) { return std::string(call.param.function); });

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

TEST_F(ChunkMemoryTest, AFrameIsDetachedOrStays) {
    producer.Trigger(0, 0, 1);
    OV_FRAME_BUFFER* const frame = Borrow();
    Run({.prepare = [&] { EXPECT_OV_OK(OvNodeAttachFrame(camera, frame)); },
         .action = [&] { return OvNodeDetachFrame(camera); },
         .check =
             [&](OV_STATUS status) {
                 EXPECT_TRUE(status == OV_STATUS_SUCCESS || status == OV_STATUS_ERROR) << status;
                 EXPECT_OV_OK(OvNodeDetachFrame(camera));
                 EXPECT_FALSE(IsReadable());
             }});
}

/// A test whose capture callback is refused memory.
class CallbackMemoryTest : public ChunkMemoryTest {
protected:
    void SetUp() override {
        ChunkMemoryTest::SetUp();
        Stop();
        ASSERT_OV_OK(OVRegisterCaptureCallback(camera, this, [](OV_FRAME_CALLBACK_PARAM* frame) {
            static_cast<CallbackMemoryTest*>(frame->pUserParam)->RunWith(frame);
        }));
        Start();
    }
    void RunWith(const OV_FRAME_CALLBACK_PARAM* frame) {
        Run({.prepare = [&] { EXPECT_OV_OK(OvNodeDetachFrame(camera)); },
             .action = [&] { return OvNodeAttachCallbackFrame(camera, frame); },
             .check =
                 [&](OV_STATUS status) {
                     EXPECT_EQ(IsReadable(), status == OV_STATUS_SUCCESS);
                     EXPECT_OV_OK(OvNodeAttachCallbackFrame(camera, frame));
                     EXPECT_TRUE(IsReadable());
                 }});
        m_ran.set_value();
    }
    std::promise<void> m_ran;
};

TEST_F(CallbackMemoryTest, AFrameIsAttachedOrNoneIs) {
    producer.Trigger(0, 0, 1);
    m_ran.get_future().wait();
}

}  // namespace
