// Which numbers are handles, and for how long.

#include <thread>

#include "NodeTest.h"

namespace {

constexpr const char* kInvalid = "Invalid node handle: it never was one, or its camera is closed";

class NodeHandle : public NodeTest {
protected:
    static void ExpectInvalid(OV_NODE_HANDLE node) {
        int64_t value = 7;
        ExpectFailure(OvNodeGetInteger(node, &value), OV_STATUS_INVALID_HANDLE, kInvalid);
        EXPECT_EQ(value, 7);
    }
};

TEST_F(NodeHandle, AnyOtherNumberIsRefused) {
    const OV_NODE_HANDLE width = Node("Width");
    for (const OV_NODE_HANDLE garbage :
         {OV_NODE_HANDLE{0}, OV_NODE_HANDLE{1}, ~OV_NODE_HANDLE{0}, width + 1, width + 4096,
          width + (OV_NODE_HANDLE{1} << 32), width - (OV_NODE_HANDLE{1} << 32),
          width ^ (OV_NODE_HANDLE{1} << 63)}) {
        SCOPED_TRACE(garbage);
        ExpectInvalid(garbage);
    }
}

TEST_F(NodeHandle, EndsWithItsCamera) {
    const OV_NODE_HANDLE width = Node("Width");
    const OV_NODE_HANDLE system = Node("TLType", OV_NODE_MODULE_SYSTEM);
    ASSERT_OV_OK(OVCloseDevice(camera));
    ExpectInvalid(width);
    ExpectInvalid(system);
}

TEST_F(NodeHandle, OfAClosedCameraIsNotThatOfTheNextOne) {
    const auto before = All();
    ASSERT_OV_OK(OVCloseDevice(camera));
    camera = Open();
    const auto after = All();
    ASSERT_EQ(before.size(), after.size());
    for (size_t i = 0; i < before.size(); ++i) {
        EXPECT_NE(before[i], after[i]);
        ExpectInvalid(before[i]);
    }
    EXPECT_EQ(Names(after)[0], "Root");
}

TEST_F(NodeHandle, IsRefusedBeforeTheLibraryIsOpen) {
    const OV_NODE_HANDLE width = Node("Width");
    ASSERT_OV_OK(OVCloseLib());
    int64_t value = 7;
    ExpectFailure(OvNodeGetInteger(width, &value), OV_STATUS_NOT_INIT_API, "Not init API");
    ASSERT_OV_OK(OVInitLib());
    ExpectInvalid(width);
}

TEST_F(NodeHandle, IsTheSameOnAllThreads) {
    constexpr unsigned kThreads = 4;
    std::vector<std::vector<OV_NODE_HANDLE>> found(kThreads);
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            for (const char* const name : {"Width", "Height", "Gain", "PixelFormat"}) {
                OV_NODE_HANDLE node = 0;
                EXPECT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, name, &node));
                found[i].push_back(node);
            }
            const auto all = All();
            found[i].insert(found[i].end(), all.begin(), all.end());
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (unsigned i = 1; i < kThreads; ++i) {
        EXPECT_EQ(found[i], found[0]);
    }
}

}  // namespace
