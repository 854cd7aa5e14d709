#pragma once
/// The cameras that are description files, at the flat interface.

#include <map>
#include <string>
#include <vector>

#include "FrameOfFileCamera.h"
#include "ReferenceMap.h"
#include "support/ApiTest.h"
#include "support/DescriptionFolder.h"

/// Every camera of the producer beside the library: one for each file.
std::vector<std::string> FileCameras();

std::string ContentOf(const std::filesystem::path& file);

/// A test with the camera of its parameter open, which was just switched on. The
/// library and what was found out about the cameras stay for all tests.
class FileCamera : public ::testing::TestWithParam<std::string> {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();

    void SetUp() override;
    void TearDown() override;

    /// Another map of the camera's description, which never caches.
    ReferenceMap Reference() const { return {camera, FactoryOf(GetParam())}; }

    /// Those that live on the camera.
    std::vector<Feature> Features() const;
    Feature FeatureNamed(const std::string& name) const;

    /// Of what the camera's own description forbids: for people to look at.
    static void Tell(const std::string& what) { std::printf("  %s\n", what.c_str()); }

    OV_DEV_HANDLE camera = nullptr;

private:
    static GenApi::CNodeMapFactory& FactoryOf(const std::string& name);
    void Open();
    void SwitchOn();

    static std::map<std::string, GenApi::CNodeMapFactory> s_factories;
};
