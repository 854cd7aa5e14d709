// Faults of files of settings, and of the camera's registers past its features.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "FaultMatrix.h"
#include "support/SettingsCamera.h"

namespace {

constexpr uint64_t kOffset = 0x2000;
constexpr uint64_t kGain = 0x2004;
constexpr uint64_t kFree = 0x3000;

/// A note of an import on one feature.
std::string WritingOf(const std::string& node) {
    return "Error while writing node '" + node + "': {";
}
std::string ReadingOf(const std::string& node) {
    return "Error while verifying the value of node '" + node + "': {";
}

class ConfigFaultTest : public FaultMatrix {
protected:
    ~ConfigFaultTest() override { std::filesystem::remove(path); }

    void SetUp() override {
        std::string name =
            (std::filesystem::temp_directory_path() / "config_fault_XXXXXX").string();
        const int file = mkstemp(name.data());
        ASSERT_NE(file, -1);
        close(file);
        path = name;
    }

    void OpenCamera() {
        const std::string description =
            DescribeSettings(DescribeNumber("Offset", kOffset, kStreamable) +
                             DescribeNumber("Gain", kGain, kStreamable));
        Faulty().SetDescription("Remote", "Settings.xml", description.data(), description.size());
        Init();
        ASSERT_EQ(Update(), 1U);
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }

    void SetContent(const std::string& text) const {
        std::ofstream(path, std::ios::binary) << text;
    }
    std::string GetContent() const {
        std::ifstream file(path, std::ios::binary);
        return (std::ostringstream() << file.rdbuf()).str();
    }

    void Put(uint64_t address, uint32_t value) {
        Faulty().WriteMemory(0, 0, address, &value, sizeof value);
    }
    uint32_t At(uint64_t address) {
        uint32_t value = 0;
        Faulty().ReadMemory(0, 0, address, &value, sizeof value);
        return value;
    }

    /// A file with 7 and 9, and a camera that has neither.
    void PrepareImport() {
        OpenCamera();
        Put(kOffset, 7);
        Put(kGain, 9);
        ASSERT_OV_OK(OVExportConfigFile(camera, path.c_str()));
        Put(kOffset, 0);
        Put(kGain, 0);
    }

    void RunImport(const Steps& steps, bool verify) {
        Run({.steps = steps,
             .prepare = [this] { PrepareImport(); },
             .action = [=, this] { return OVImportConfigFile(camera, path.c_str(), verify); },
             .check =
                 [=, this](const Fault& fault) {
                     EXPECT_NE(LastError::Get().text.find("]}{" + fault.step.why),
                               std::string::npos);
                     // What fails once is written by the verification.
                     const bool isWrite = fault.step.call == "GCWritePort" && !verify;
                     EXPECT_EQ(At(kOffset), isWrite && fault.nth == 1 ? 0U : 7U);
                     EXPECT_EQ(At(kGain), isWrite && fault.nth == 2 ? 0U : 9U);
                 },
             .again =
                 [=, this] {
                     EXPECT_OV_OK(OVImportConfigFile(camera, path.c_str(), verify));
                     EXPECT_EQ(At(kOffset), 7U);
                     EXPECT_EQ(At(kGain), 9U);
                 }});
    }

    /// A call on the camera's registers beneath which one call of the producer is.
    void RunPort(const char* producerCall, const std::function<OV_STATUS(void*, size_t*)>& call) {
        uint32_t value = 0;
        size_t size = 0;
        Run({.steps = {{producerCall, 1, Fate::Raised, ""}},
             .prepare =
                 [&] {
                     OpenCamera();
                     Put(kFree, 0x11);
                     value = 0x22;
                     size = sizeof value;
                 },
             .action = [&] { return call(&value, &size); },
             .check =
                 [&](const Fault&) {
                     EXPECT_EQ(value, 0x22U);
                     EXPECT_EQ(At(kFree), 0x11U);
                 },
             .again =
                 [&] {
                     size = sizeof value;
                     EXPECT_OV_OK(call(&value, &size));
                     EXPECT_EQ(size, sizeof value);
                     EXPECT_EQ(value, At(kFree));
                 }});
    }

    OV_DEV_HANDLE camera = nullptr;
    std::string path;
};

TEST_P(ConfigFaultTest, AnExportThatFailsLeavesTheFile) {
    Run({.steps = {{"GCReadPort", 2, Fate::Raised, ""}},
         .prepare =
             [this] {
                 OpenCamera();
                 SetContent("before");
             },
         .action = [this] { return OVExportConfigFile(camera, path.c_str()); },
         .check = [this](const Fault&) { EXPECT_EQ(GetContent(), "before"); },
         .again =
             [this] {
                 EXPECT_OV_OK(OVExportConfigFile(camera, path.c_str()));
                 EXPECT_EQ(GetContent().find("FileVersion: 1.0\n"), 0U);
                 EXPECT_OV_OK(OVImportConfigFile(camera, path.c_str(), true));
             }});
}

TEST_P(ConfigFaultTest, AnImportNotesWhatFailsAndLoadsTheRest) {
    RunImport({{"GCWritePort", 1, Fate::NotedByImport, WritingOf("Offset")},
               {"GCWritePort", 1, Fate::NotedByImport, WritingOf("Gain")}},
              false);
}

TEST_P(ConfigFaultTest, AVerificationNotesWhatFailsAndLoadsTheRest) {
    RunImport({{"GCWritePort", 1, Fate::NotedByImport, WritingOf("Offset")},
               {"GCWritePort", 1, Fate::NotedByImport, WritingOf("Gain")},
               {"GCWritePort", 1, Fate::NotedByImport, WritingOf("Offset")},
               {"GCReadPort", 1, Fate::NotedByImport, ReadingOf("Offset")},
               {"GCWritePort", 1, Fate::NotedByImport, WritingOf("Gain")},
               {"GCReadPort", 1, Fate::NotedByImport, ReadingOf("Gain")}},
              true);
}

TEST_P(ConfigFaultTest, ReadOfRegistersRaises) {
    RunPort("GCReadPort", [this](void* buffer, size_t* size) {
        return OVReadRemoteDevicePort(camera, kFree, buffer, size);
    });
}

TEST_P(ConfigFaultTest, WriteOfRegistersRaises) {
    RunPort("GCWritePort", [this](void* buffer, size_t* size) {
        return OVWriteRemoteDevicePort(camera, kFree, buffer, size);
    });
}

INSTANTIATE_TEST_SUITE_P(Producers, ConfigFaultTest, testing::ValuesIn(kDifferentKinds),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
