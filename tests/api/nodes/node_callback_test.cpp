// Callbacks of nodes.

#include <atomic>
#include <thread>

#include "NodeTest.h"

namespace {

/// What a callback was called with, and what it does.
struct Listener {
    std::atomic<unsigned> count{0};
    std::atomic<OV_NODE_HANDLE> node{0};
    std::atomic<OV_NODE_CALLBACK_HANDLE> own{nullptr};
    std::atomic<OV_STATUS> removed{1};
    std::atomic<OV_STATUS> closed{1};
    std::atomic<OV_STATUS> registered{1};
    OV_DEV_HANDLE camera = nullptr;
    int64_t value = 0;

    static void Count(OV_NODE_HANDLE hNode, void* user) {
        auto* const listener = static_cast<Listener*>(user);
        listener->node = hNode;
        ++listener->count;
    }
    static void RemoveItself(OV_NODE_HANDLE hNode, void* user) {
        auto* const listener = static_cast<Listener*>(user);
        listener->removed = OvNodeUnregisterCallback(hNode, listener->own);
        Count(hNode, user);
    }
    static void Close(OV_NODE_HANDLE hNode, void* user) {
        auto* const listener = static_cast<Listener*>(user);
        listener->closed = OVCloseDevice(listener->camera);
        Count(hNode, user);
    }
    static void Register(OV_NODE_HANDLE hNode, void* user) {
        auto* const listener = static_cast<Listener*>(user);
        OV_NODE_CALLBACK_HANDLE handle = nullptr;
        listener->registered = OvNodeRegisterCallback(hNode, user, &Count, &handle);
        listener->removed = OvNodeUnregisterCallback(hNode, listener->own);
        Count(hNode, user);
    }
    static void Read(OV_NODE_HANDLE hNode, void* user) {
        OvNodeGetInteger(hNode, &static_cast<Listener*>(user)->value);
        Count(hNode, user);
    }
    void Await(unsigned wanted) const {
        while (count < wanted) {
            std::this_thread::yield();
        }
    }
};

class NodeCallback : public NodeTest {
protected:
    ~NodeCallback() override { OVCloseLib(); }  // before `listener` goes

    OV_NODE_CALLBACK_HANDLE Listen(OV_NODE_HANDLE node, OvNodeCallback callback) {
        OV_NODE_CALLBACK_HANDLE handle = nullptr;
        EXPECT_OV_OK(OvNodeRegisterCallback(node, &listener, callback, &handle));
        EXPECT_NE(handle, nullptr);
        listener.own = handle;
        listener.camera = camera;
        return handle;
    }

    Listener listener;
};

TEST_F(NodeCallback, TellsItsNodeWhenThatIsWritten) {
    const OV_NODE_HANDLE width = Node("Width");
    Listen(width, &Listener::Count);
    EXPECT_OV_OK(OvNodeSetInteger(width, 32));
    EXPECT_EQ(listener.node, width);
    const unsigned before = listener.count;
    EXPECT_GE(before, 1U);
    EXPECT_OV_OK(OVSetInt(camera, OV_FEATURE_Width, 40));
    EXPECT_GT(listener.count, before);
}

TEST_F(NodeCallback, ReadsTheNewValue) {
    Listen(Node("Width"), &Listener::Read);
    EXPECT_OV_OK(OvNodeSetInteger(Node("Width"), 32));
    EXPECT_EQ(listener.value, 32);
}

TEST_F(NodeCallback, IsSilentAfterItsRemoval) {
    const OV_NODE_HANDLE width = Node("Width");
    OV_NODE_CALLBACK_HANDLE const handle = Listen(width, &Listener::Count);
    ExpectFailure(OvNodeUnregisterCallback(Node("Height"), handle), OV_STATUS_INVALID_HANDLE,
                  "Invalid node callback handle");
    EXPECT_OV_OK(OvNodeUnregisterCallback(width, handle));
    EXPECT_OV_OK(OvNodeSetInteger(width, 32));
    EXPECT_EQ(listener.count, 0U);
    ExpectFailure(OvNodeUnregisterCallback(width, handle), OV_STATUS_INVALID_HANDLE,
                  "Invalid node callback handle");
    ExpectFailure(OvNodeUnregisterCallback(width, nullptr), OV_STATUS_INVALID_HANDLE,
                  "Invalid node callback handle");
}

TEST_F(NodeCallback, MayRemoveItself) {
    Listen(Node("Width"), &Listener::RemoveItself);
    EXPECT_OV_OK(OvNodeSetInteger(Node("Width"), 32));
    EXPECT_EQ(listener.removed, OV_STATUS_SUCCESS);
    EXPECT_EQ(listener.count, 1U);
    EXPECT_OV_OK(OvNodeSetInteger(Node("Width"), 40));
    EXPECT_EQ(listener.count, 1U);
}

TEST_F(NodeCallback, MayNotCloseItsCamera) {
    Listen(Node("Width"), &Listener::Close);
    EXPECT_OV_OK(OvNodeSetInteger(Node("Width"), 32));
    EXPECT_EQ(listener.closed, OV_STATUS_INVALID_CALL);
    EXPECT_OV_OK(OvNodeSetInteger(Node("Width"), 40));
}

TEST_F(NodeCallback, OfAnEventMayNotCloseItsCamera) {
    Listen(Node("EventExposureEndFrameID"), &Listener::Close);
    producer.FireExposureEnd(0, 0, 1);
    listener.Await(1);
    EXPECT_EQ(listener.closed, OV_STATUS_INVALID_CALL);
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_F(NodeCallback, OfAnotherModuleMayNotCloseItsCamera) {
    const OV_NODE_HANDLE node = Node("InterfaceID", OV_NODE_MODULE_INTERFACE);
    Listen(node, &Listener::Close);
    EXPECT_OV_OK(OvNodeInvalidate(node));
    EXPECT_EQ(listener.closed, OV_STATUS_INVALID_CALL);
    EXPECT_OV_OK(OVCloseDevice(camera));
}

TEST_F(NodeCallback, HearsTheCamerasEvents) {
    const OV_NODE_HANDLE event = Node("EventExposureEndFrameID");
    Listen(event, &Listener::Read);
    producer.FireExposureEnd(0, 0, 3);
    listener.Await(3);
    EXPECT_EQ(listener.node, event);
    EXPECT_EQ(listener.value, 2);
}

TEST_F(NodeCallback, OfAnEventMayNotRegisterOrRemove) {
    Listen(Node("EventExposureEndFrameID"), &Listener::Register);
    producer.FireExposureEnd(0, 0, 1);
    listener.Await(1);
    EXPECT_EQ(listener.registered, OV_STATUS_INVALID_CALL);
    EXPECT_EQ(listener.removed, OV_STATUS_INVALID_CALL);
}

TEST_F(NodeCallback, OfAModuleThatStaysOpenEndsWithTheCamera) {
    const OV_NODE_HANDLE node = Node("InterfaceID", OV_NODE_MODULE_INTERFACE);
    Listen(node, &Listener::Count);
    EXPECT_OV_OK(OvNodeInvalidate(node));
    EXPECT_EQ(listener.count, 1U);
    ASSERT_OV_OK(OVCloseDevice(camera));
    camera = Open();
    EXPECT_OV_OK(OvNodeInvalidate(Node("InterfaceID", OV_NODE_MODULE_INTERFACE)));
    EXPECT_EQ(listener.count, 1U);
}

TEST_F(NodeCallback, IsRemovedByItsOwnCameraOnly) {
    ASSERT_OV_OK(OVCloseLib());
    producer.SetDeviceCount(0, 2);
    Init();
    ASSERT_EQ(Update(), 2U);
    camera = Open(1);
    OV_DEV_HANDLE const other = Open(2);
    OV_NODE_HANDLE others = 0;
    ASSERT_OV_OK(OvNodeFind(other, OV_NODE_MODULE_INTERFACE, "InterfaceID", &others));
    const OV_NODE_HANDLE own = Node("InterfaceID", OV_NODE_MODULE_INTERFACE);
    EXPECT_NE(own, others);
    OV_NODE_CALLBACK_HANDLE const handle = Listen(own, &Listener::Count);
    ExpectFailure(OvNodeUnregisterCallback(others, handle), OV_STATUS_INVALID_HANDLE,
                  "Invalid node callback handle");
    EXPECT_OV_OK(OvNodeInvalidate(others));
    EXPECT_EQ(listener.count, 1U);
    EXPECT_OV_OK(OvNodeUnregisterCallback(own, handle));
    EXPECT_OV_OK(OvNodeInvalidate(own));
    EXPECT_EQ(listener.count, 1U);
}

}  // namespace
