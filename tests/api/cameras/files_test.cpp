// Files in a camera.

#include <array>
#include <string>
#include <thread>
#include <vector>

#include "CameraTest.h"
#include "OvINodes.h"

namespace {

class CameraFiles : public CameraTest {
protected:
    OV_STATUS Write(const std::string& name, const std::string& content) const {
        return OvNodeWriteFile(camera, name.c_str(),
                               reinterpret_cast<const uint8_t*>(content.data()), content.size());
    }
    /// Up to `size` bytes from an offset.
    std::string Read(const std::string& name, uint64_t offset, size_t size) const {
        std::string content(size, '\0');
        EXPECT_OV_OK(OvNodeReadFile(camera, name.c_str(), offset,
                                    reinterpret_cast<uint8_t*>(content.data()), &size));
        content.resize(size);
        return content;
    }
};

TEST_F(CameraFiles, AreWrittenAndReadBack) {
    // More than the camera's buffer holds, and not a whole number of words.
    std::string content;
    for (int i = 0; i < 10001; ++i) {
        content += static_cast<char>('A' + i % 26);
    }
    ASSERT_OV_OK(Write("UserFile", content));
    EXPECT_EQ(Read("UserFile", 0, content.size()), content);
    EXPECT_EQ(Read("UserFile", 0, 20000), content);
    EXPECT_EQ(Read("UserFile", 9990, 100), content.substr(9990));
    EXPECT_EQ(Read("UserFile", 0, 0), "");
    ASSERT_OV_OK(Write("UserFile", "short"));
    EXPECT_EQ(Read("UserFile", 0, 100), "short");
}

TEST_F(CameraFiles, AreDeleted) {
    ASSERT_OV_OK(Write("UserFile", "content"));
    EXPECT_OV_OK(OvNodeDeleteFile(camera, "UserFile"));
    ExpectFailure(OvNodeDeleteFile(camera, "UserFile"), OV_STATUS_ERROR,
                  "The camera doesn't delete the file \"UserFile\": Failure");
    size_t size = 4;
    uint8_t bytes[4] = {};
    ExpectFailure(OvNodeReadFile(camera, "UserFile", 0, bytes, &size), OV_STATUS_ERROR,
                  "The camera doesn't open the file \"UserFile\": Failure");
    EXPECT_EQ(size, 4U);
}

TEST_F(CameraFiles, ThatCantBeWrittenStayAsTheyAre) {
    const std::string before = Read("FactoryCalibration", 0, 100000);
    EXPECT_FALSE(before.empty());
    ExpectFailure(Write("FactoryCalibration", "mine"), OV_STATUS_ERROR,
                  "The camera doesn't open the file \"FactoryCalibration\": Failure");
    EXPECT_EQ(Read("FactoryCalibration", 0, 100000), before);
}

TEST_F(CameraFiles, ThatTheCameraDoesntKnowAreRefused) {
    EXPECT_EQ(Write("Nothing", "content"), OV_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(OvNodeDeleteFile(camera, "Nothing"), OV_STATUS_INVALID_PARAMETER);
}

TEST_F(CameraFiles, AreTransferredByOneThreadAtATime) {
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b', 'c'}) {
        threads.emplace_back([this, letter] {
            for (int round = 0; round < 10; ++round) {
                EXPECT_OV_OK(Write("UserFile", std::string(6000, letter)));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::string content = Read("UserFile", 0, 10000);
    ASSERT_EQ(content.size(), 6000U);
    EXPECT_EQ(content, std::string(6000, content[0]));
}

TEST_F(CameraFiles, AreNotTransferredInACallbackOfAFeature) {
    struct Called {
        OV_DEV_HANDLE camera;
        OV_STATUS status = OV_STATUS_SUCCESS;
        std::string message;
    } called{.camera = camera, .status = OV_STATUS_SUCCESS, .message = ""};
    OV_NODE_HANDLE width = 0;
    OV_NODE_CALLBACK_HANDLE handle = nullptr;
    ASSERT_OV_OK(OvNodeFind(camera, OV_NODE_MODULE_CAMERA, "Width", &width));
    const auto transfer = [](OV_NODE_HANDLE, void* user) {
        auto& told = *static_cast<Called*>(user);
        told.status = OvNodeDeleteFile(told.camera, "UserFile");
        told.message = LastError::Get().message;
    };
    ASSERT_OV_OK(OvNodeRegisterCallback(width, &called, transfer, &handle));
    EXPECT_OV_OK(OvNodeSetInteger(width, 128));
    EXPECT_EQ(called.status, OV_STATUS_INVALID_CALL);
    EXPECT_EQ(called.message, "Can't transfer a file in feature callback");
    EXPECT_OV_OK(OvNodeUnregisterCallback(width, handle));
}

TEST_F(CameraFiles, NeedPointers) {
    uint8_t byte = 0;
    size_t size = 1;
    for (const OV_STATUS status :
         {OvNodeReadFile(camera, nullptr, 0, &byte, &size),
          OvNodeReadFile(camera, "UserFile", 0, nullptr, &size),
          OvNodeReadFile(camera, "UserFile", 0, &byte, nullptr),
          OvNodeWriteFile(camera, nullptr, &byte, 1),
          OvNodeWriteFile(camera, "UserFile", nullptr, 1), OvNodeDeleteFile(camera, nullptr)}) {
        EXPECT_EQ(status, OV_STATUS_INVALID_PARAMETER);
        EXPECT_EQ(LastError::Get().message, "NULL Pointer");
    }
}

}  // namespace
