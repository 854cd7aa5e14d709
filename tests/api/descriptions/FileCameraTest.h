#pragma once
/// The cameras that are description files, at the flat interface.

#include <cstdio>
#include <fstream>
#include <iterator>

#include "ReferenceMap.h"
#include "support/ApiTest.h"
#include "support/DescriptionFolder.h"

/// Every camera of the producer beside the library: each file over each memory.
inline std::vector<std::string> FileCameras() {
    std::vector<std::string> files{"BuiltIn"};
    for (const auto& file : FilesOfDescriptionFolder()) {
        files.push_back(file.stem());
    }
    std::vector<std::string> cameras;
    for (const std::string& file : files) {
        for (const char* const fill : {"Small", "Ones", "Noise"}) {
            cameras.push_back(file + "-" + fill);
        }
    }
    return cameras;
}

inline std::string ContentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A test with the camera of its parameter open, which was just switched on.
class FileCameraTest : public ::testing::TestWithParam<std::string> {
protected:
    static constexpr int64_t kPayloadSize = 4096;

    ~FileCameraTest() override { OVCloseLib(); }

    void SetUp() override {
        ASSERT_OV_OK(OVInitLib());
        uint32_t count = 0;
        ASSERT_OV_OK(OVUpdateDeviceList(&count, 1000));
        ASSERT_EQ(count, FileCameras().size());
        Open();
        SwitchOn();
        // Nothing is cached of what was there before.
        ASSERT_OV_OK(OVCloseDevice(camera));
        Open();
    }

    void Open() {
        const OV_OPEN_PARAM key{GetParam().c_str(), OV_OPEN_SN, OV_ACCESS_EXCLUSIVE};
        ASSERT_OV_OK(OVOpenDevice(&key, &camera));
    }

    /// What the camera's file says.
    static std::string Description() {
        const std::string file = GetParam().substr(0, GetParam().rfind('-'));
        const char* const folder = std::getenv("OV_TEST_DESCRIPTIONS");
        return ContentOf(file == "BuiltIn" ? std::filesystem::path(OV_SOURCE_FOLDER) /
                                                 "tests/api/descriptions/producer/SmallCamera.xml"
                                           : std::filesystem::path(folder) / (file + ".xml"));
    }

    /// Those that live on a module.
    std::vector<Feature> FeaturesOf(OV_FEATURE_LEVEL level) const {
        std::vector<Feature> features;
        for (const FeatureRow& row : kFeatureRows) {
            if ((row.id & OV_FEATURE_LEVEL_MASK) == level) {
                features.emplace_back(camera, row);
            }
        }
        return features;
    }
    Feature FeatureNamed(const std::string& name) const {
        return {camera, *std::find_if(std::begin(kFeatureRows), std::end(kFeatureRows),
                                      [&](const FeatureRow& row) { return row.name == name; })};
    }

    /// Of what the camera's own description forbids: for people to look at.
    static void Tell(const std::string& what) { std::printf("  %s\n", what.c_str()); }

    OV_DEV_HANDLE camera = nullptr;
    /// Features that made-up limits leave no value.
    std::set<std::string> illegal;

private:
    void SwitchOn() {
        ReferenceMap reference(camera, Description());
        illegal = reference.PowerUp();
        reference.SetPayloadSize(kPayloadSize);
    }
};

#define OV_FOR_EACH_FILE_CAMERA(suite)                                         \
    INSTANTIATE_TEST_SUITE_P(Files, suite, ::testing::ValuesIn(FileCameras()), \
                             [](const auto& file) { return TestNameOf(file.param); })
