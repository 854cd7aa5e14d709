// Files in a camera: what is refused, and what is told of it.

#include <array>

#include "NodeTest.h"
#include "support/FeatureCalls.h"
#include "support/FileFeatures.h"

namespace {

class NodeFiles : public NodeTest {
protected:
    using Transfer = OV_STATUS (*)(OV_DEV_HANDLE camera, const char* file);

    static OV_STATUS Read(OV_DEV_HANDLE camera, const char* file) {
        std::array<uint8_t, 4> bytes{};
        size_t size = bytes.size();
        return OvNodeReadFile(camera, file, 0, bytes.data(), &size);
    }
    static OV_STATUS Write(OV_DEV_HANDLE camera, const char* file) {
        const std::array<uint8_t, 4> bytes{1, 2, 3, 4};
        return OvNodeWriteFile(camera, file, bytes.data(), bytes.size());
    }
    static constexpr Transfer kTransfers[] = {&Read, &Write, &OvNodeDeleteFile};

    void DescribeFiles() { Describe(DescribeCamera(FileFeatures())); }
};

TEST_F(NodeFiles, NeedFileAccess) {
    for (const Transfer transfer : kTransfers) {
        ExpectFailure(transfer(camera, "UserSet"), OV_STATUS_NOT_IMPLEMENTED,
                      "The camera has no file access");
    }
}

TEST_F(NodeFiles, NeedACameraAndPointers) {
    DescribeFiles();
    for (const Transfer transfer : kTransfers) {
        ExpectFailure(transfer(nullptr, nullptr), OV_STATUS_INVALID_HANDLE,
                      "Invalid device handle");
        ExpectFailure(transfer(camera, nullptr), OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
    }
    size_t size = 4;
    EXPECT_EQ(OvNodeReadFile(camera, "UserSet", 0, nullptr, &size), OV_STATUS_INVALID_PARAMETER);
    uint8_t byte = 0;
    EXPECT_EQ(OvNodeReadFile(camera, "UserSet", 0, &byte, nullptr), OV_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(OvNodeWriteFile(camera, "UserSet", nullptr, 4), OV_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(size, 4U);
}

TEST_F(NodeFiles, AreTransferredByName) {
    DescribeFiles();
    for (const Transfer transfer : kTransfers) {
        EXPECT_OV_OK(transfer(camera, "UserSet"));
        EXPECT_EQ(transfer(camera, "Firmware"), OV_STATUS_INVALID_PARAMETER);
    }
}

TEST_F(NodeFiles, ThatTheCameraRefusesFailWithItsReason) {
    DescribeFiles();
    EXPECT_OV_OK(OvNodeSetSymbolic(Node("FileOperationStatus"), "Failure"));
    ExpectFailure(Read(camera, "UserSet"), OV_STATUS_ERROR,
                  "The camera doesn't open the file \"UserSet\": Failure");
    ExpectFailure(OvNodeDeleteFile(camera, "UserSet"), OV_STATUS_ERROR,
                  "The camera doesn't delete the file \"UserSet\": Failure");
}

TEST_F(NodeFiles, ThatTheCameraDoesntTakeWholeFail) {
    DescribeFiles();
    EXPECT_OV_OK(OvNodeSetInteger(Node("FileOperationResult"), 0));
    ExpectFailure(Write(camera, "UserSet"), OV_STATUS_ERROR,
                  "The camera took 0 of 4 bytes of the file \"UserSet\": Success");
}

TEST_F(NodeFiles, AreNotTransferredInACallbackOfAFeature) {
    DescribeFiles();
    struct Calls {
        OV_DEV_HANDLE camera;
        std::vector<OV_STATUS> statuses;
    } calls{camera, {}};
    OV_NODE_CALLBACK_HANDLE callback = nullptr;
    const OV_NODE_HANDLE node = Node("FileAccessLength");
    ASSERT_OV_OK(OvNodeRegisterCallback(
        node, &calls,
        [](OV_NODE_HANDLE, void* user) {
            auto& made = *static_cast<Calls*>(user);
            for (const Transfer transfer : kTransfers) {
                made.statuses.push_back(transfer(made.camera, "UserSet"));
            }
        },
        &callback));
    EXPECT_OV_OK(OvNodeInvalidate(node));
    EXPECT_EQ(calls.statuses, std::vector<OV_STATUS>(3, OV_STATUS_INVALID_CALL));
    EXPECT_OV_OK(OvNodeUnregisterCallback(node, callback));
    EXPECT_OV_OK(Read(camera, "UserSet"));
}

}  // namespace
