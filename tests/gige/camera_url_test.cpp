#include <gtest/gtest.h>

#include <cstdint>

#include "gige/protocol/CameraUrl.h"

namespace {

using namespace OvGige;
using Place = CameraUrl::Place;

CameraUrl InCamera(const char* name, uint64_t address, uint64_t size) {
    return {.place = Place::Camera, .fileName = name, .path = {}, .address = address, .size = size};
}

TEST(CameraUrlText, NamesAFileInTheCamerasMemory) {
    EXPECT_EQ(ParseCameraUrl("Local:Camera.zip;F000;2B39"), InCamera("Camera.zip", 0xF000, 0x2B39));
}

TEST(CameraUrlText, IsReadAsCamerasWriteIt) {
    const CameraUrl expected = InCamera("Camera.zip", 0xF000, 0x2B39);
    for (const char* text :
         {"local:Camera.zip;f000;2b39", "LOCAL:Camera.zip;0xF000;0X2B39",
          "Local:Camera.zip; F000; 2B39", "Local:///Camera.zip;F000;2B39",
          "Local:Camera.zip;F000;2B39?SchemaVersion=1.1.0", " Local:Camera.zip ;F000;2B39 ",
          "Local:folder\\Camera.zip;F000;2B39"}) {
        EXPECT_EQ(ParseCameraUrl(text), expected) << text;
    }
}

TEST(CameraUrlText, NamesAFileOfThisMachine) {
    const auto url = ParseCameraUrl("File:///opt/camera/Camera.xml");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->place, Place::Host);
    EXPECT_EQ(url->path, "/opt/camera/Camera.xml");
    EXPECT_EQ(url->fileName, "Camera.xml");
    EXPECT_EQ(ParseCameraUrl("file:Camera.xml")->path, "Camera.xml");
}

TEST(CameraUrlText, NamesAFileOnTheWeb) {
    const auto url = ParseCameraUrl("http://example.com/Camera.zip?SchemaVersion=1.1.0");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->place, Place::Web);
    EXPECT_EQ(url->path, "http://example.com/Camera.zip");
    EXPECT_EQ(url->fileName, "Camera.zip");
}

TEST(CameraUrlText, IsNoneWithoutAFile) {
    for (const char* text :
         {"", "Camera.zip", "Local:", "Local:Camera.zip", "Local:Camera.zip;F000",
          "Local:;F000;2B39", "Local:Camera.zip;F000;0", "Local:Camera.zip;G000;2B39",
          "Local:Camera.zip;F000;2B39G", "Local:Camera.zip;10000000000000000;1",
          "File:", "File:folder/", "ftp://example.com/Camera.zip", "http://"}) {
        EXPECT_FALSE(ParseCameraUrl(text)) << text;
    }
}

}  // namespace
