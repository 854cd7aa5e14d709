// Settings of a camera that go into a file and come back.

#include <limits.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "support/AcquisitionTest.h"
#include "support/CommaLocale.h"
#include "support/SettingsCamera.h"

namespace {

constexpr uint64_t kOffset = 0x2000;
constexpr uint64_t kGainRaw = 0x2004;
constexpr int32_t kIoError = -1010;

const std::string kText = "Failed to resolve file name";

/// "Gain" holds tenths, whatever is written.
std::string DescribeTenths() {
    return DescribeSettings(DescribeNumber("Offset", kOffset, kStreamable) +
                            "<Converter Name=\"Gain\">" + kStreamable +
                            "<FormulaTo>FROM * 10</FormulaTo><FormulaFrom>TO / 10</FormulaFrom>"
                            "<pValue>GainRaw</pValue></Converter>" +
                            DescribeNumber("GainRaw", kGainRaw, ""));
}

/// A folder of its own for each test, gone with it.
class Folder {
public:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "config_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("No folder for the test");
        }
        m_path = name;
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string operator/(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

std::string Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return (std::ostringstream() << file.rdbuf()).str();
}

class ConfigFileTest : public OpenCameraTest {
protected:
    void SetUp() override {
        const std::string description = DescribeTenths();
        producer.SetDescription("Remote", "Settings.xml", description.data(), description.size());
        OpenCameraTest::SetUp();
    }

    void Put(uint64_t address, uint32_t value) const {
        producer.WriteMemory(0, 0, address, &value, sizeof value);
    }
    uint32_t At(uint64_t address) const {
        uint32_t value = 0;
        producer.ReadMemory(0, 0, address, &value, sizeof value);
        return value;
    }

    void Export() { ASSERT_OV_OK(OVExportConfigFile(camera, path.c_str())); }
    OV_STATUS Import(bool verify = false) {
        return OVImportConfigFile(camera, path.c_str(), verify);
    }
    /// Has the file say something else.
    void Replace(const std::string& from, const std::string& to) const {
        std::string text = Content(path);
        const size_t place = text.find(from);
        ASSERT_NE(place, std::string::npos) << text;
        text.replace(place, from.size(), to);
        std::ofstream(path, std::ios::binary) << text;
    }

    Folder folder;
    std::string path = folder / "camera.txt";
};

// The file.

TEST_F(ConfigFileTest, HasTheSettingsOfTheCamera) {
    Put(kOffset, 7);
    Put(kGainRaw, 25);
    Export();
    const std::string text = Content(path);
    EXPECT_EQ(text.find("FileVersion: 1.0\nDeviceModelName: Own Camera\n\n</-----"), 0U) << text;
    EXPECT_NE(text.find("\nOffset\t7\nGain\t2.5\n\n</-----"), std::string::npos) << text;
}

TEST_F(ConfigFileTest, ReplacesWhatWasThere) {
    std::ofstream(path) << std::string(100000, 'x');
    Export();
    EXPECT_EQ(Content(path).find('x', Content(path).find("Stream features")), std::string::npos);
    EXPECT_OV_OK(Import(true));
}

TEST_F(ConfigFileTest, BringsTheSettingsBack) {
    Put(kOffset, 7);
    Put(kGainRaw, 25);
    Export();
    Put(kOffset, 0);
    Put(kGainRaw, 0);
    EXPECT_OV_OK(Import(true));
    EXPECT_EQ(At(kOffset), 7U);
    EXPECT_EQ(At(kGainRaw), 25U);
}

TEST_F(ConfigFileTest, TakesExactlyTheBytesOfAPath) {
    for (const char* const name : {"\xE7\x9B\xB8\xE6\x9C\xBA.txt", "\xE9t\xE9.txt", "\xFF\xFE"}) {
        path = folder / name;
        Put(kOffset, 7);
        Export();
        EXPECT_TRUE(std::filesystem::exists(path));
        Put(kOffset, 0);
        EXPECT_OV_OK(Import(true));
        EXPECT_EQ(At(kOffset), 7U);
    }
}

TEST_F(ConfigFileTest, LeavesTheLocaleOfTheProcess) {
    const CommaLocale locale;
    path = folder / "\xE7\x9B\xB8\xE6\x9C\xBA.txt";
    Export();
    EXPECT_TRUE(CommaLocale::IsSet());
    EXPECT_OV_OK(Import(true));
    EXPECT_TRUE(CommaLocale::IsSet());
}

TEST_F(ConfigFileTest, TakesPathsAsLongAsTheSystemDoes) {
    std::string longPath = folder / "";
    while (longPath.size() < PATH_MAX - 10) {
        longPath += "./";
    }
    const std::string name(PATH_MAX - 1 - longPath.size(), 'n');
    EXPECT_OV_OK(OVExportConfigFile(camera, (longPath + name).c_str()));
    EXPECT_OV_OK(OVImportConfigFile(camera, (longPath + name).c_str(), true));
    ExpectFailure(OVExportConfigFile(camera, (longPath + name + "n").c_str()), OV_STATUS_ERROR,
                  "Can't open config file");
    ExpectFailure(OVImportConfigFile(camera, (longPath + name + "n").c_str(), true),
                  OV_STATUS_ERROR, "Can't open config file");
}

// What can go wrong.

TEST_F(ConfigFileTest, AnEmptyPathIsNoFileName) {
    ExpectFailure(OVExportConfigFile(camera, ""), OV_STATUS_ERROR, kText);
    ExpectFailure(OVImportConfigFile(camera, "", false), OV_STATUS_ERROR, kText);
}

TEST_F(ConfigFileTest, AFolderThatDoesNotExistIsFoundAfterTheWalkOverTheFeatures) {
    const uint64_t reads = producer.CallCount("GCReadPort");
    ExpectFailure(OVExportConfigFile(camera, (folder / "none/camera.txt").c_str()), OV_STATUS_ERROR,
                  "Can't open config file");
    EXPECT_GT(producer.CallCount("GCReadPort"), reads);
}

TEST_F(ConfigFileTest, AWalkThatFailsLeavesTheFileAsItWas) {
    std::ofstream(path) << "before";
    producer.FailCall("GCReadPort", 0, kIoError);
    EXPECT_EQ(OVExportConfigFile(camera, path.c_str()), kIoError);
    EXPECT_EQ(Content(path), "before");
}

TEST_F(ConfigFileTest, AFileThatDoesNotExistCannotBeOpened) {
    ExpectFailure(Import(), OV_STATUS_ERROR, "Can't open config file");
}

TEST_F(ConfigFileTest, AFolderIsNoFileOfSettings) {
    path = folder / "";
    EXPECT_EQ(Import(), OV_STATUS_ERROR);
    EXPECT_EQ(LastError::Get().text, "{-1}Invalid feature file format");
    ExpectFailure(OVExportConfigFile(camera, path.c_str()), OV_STATUS_ERROR,
                  "Can't open config file");
}

TEST_F(ConfigFileTest, AFileOfAnotherVersionOrModelIsRefused) {
    Export();
    Replace("FileVersion: 1.0", "FileVersion: 0.9");
    EXPECT_EQ(Import(), OV_STATUS_ERROR);
    EXPECT_EQ(LastError::Get().text,
              "{-1}The file with version 0.9 is not supported. Please select a file with version "
              "smaller than or equal to 1.0");
    Replace("FileVersion: 0.9", "FileVersion: 1.0");
    Replace("Own Camera", "Other Camera");
    EXPECT_EQ(Import(), OV_STATUS_ERROR);
    EXPECT_EQ(LastError::Get().text,
              "{-1}The device model(Other Camera) in file is not the same as that in the "
              "device(Own Camera)");
}

/// What is wrong with a file, and all that the last error says of it.
struct MalformedFile {
    const char* name;
    const char* from;
    const char* to;
    const char* text;
    bool isOfTheEngine = false;
};

const MalformedFile kMalformed[] = {
    {"AFifthPart", "Offset\t7\n", "Offset\t7\n</>more\n", "Invalid feature file format"},
    {"APartTooFew", "\n</", "\n< /", "Invalid feature file format"},
    {"NoVersion", "FileVersion", "Version", "Can not find FileVersion"},
    {"NoModel", "DeviceModelName:", "Device:", "Can not find DeviceModelName"},
    {"AnEmptyModel", "Own Camera", "", "Can not find DeviceModelName"},
    {"NoMark", "# {05D8C294-F295-4dfb-9D01-096BD04049F4}", "# nothing",
     "The stream is not a GenApi feature stream since it is missing the magic GUID in the first "
     "line",
     true},
    {"TheMarkOfSeveralBags", "{05D8C294-F295-4dfb-9D01-096BD04049F4}",
     "{4709CB3C-7322-4460-84C3-DA11DDA09939}",
     "The stream has been created using the CFeatureBagger class thus must be restored using the "
     "CFeatureBagger class as well",
     true},
};

class MalformedConfigFile : public ConfigFileTest,
                            public testing::WithParamInterface<MalformedFile> {};

TEST_P(MalformedConfigFile, IsRefusedWithItsTextAndChangesNothing) {
    Put(kOffset, 7);
    Export();
    Put(kOffset, 3);
    Replace(GetParam().from, GetParam().to);
    for (const bool verify : {false, true}) {
        EXPECT_EQ(Import(verify), OV_STATUS_ERROR);
        const LastError error = LastError::Get();
        EXPECT_EQ(error.status, OV_STATUS_ERROR);
        if (GetParam().isOfTheEngine) {
            EXPECT_EQ(error.text.find("{-1}{ImportFeaturesFromStream:line["), 0U) << error.text;
            EXPECT_EQ(error.message, GetParam().text);
        } else {
            EXPECT_EQ(error.text, std::string("{-1}") + GetParam().text);
        }
        EXPECT_EQ(At(kOffset), 3U);
    }
}

INSTANTIATE_TEST_SUITE_P(All, MalformedConfigFile, testing::ValuesIn(kMalformed),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(ConfigFileTest, OneBadLineLeavesTheOthersSet) {
    Export();
    Replace("Offset\t0\n", "Offset\t9\nNothing\t1\n");
    Replace("Gain\t0\n", "Gain\t3.5\n");
    ExpectFailure(Import(), OV_STATUS_ERROR, "Error while writing node: 'Nothing' not found ");
    EXPECT_EQ(At(kOffset), 9U);
    EXPECT_EQ(At(kGainRaw), 35U);
}

TEST_F(ConfigFileTest, TheTextsOfAllFailuresFollowOneAnother) {
    Export();
    Replace("Offset\t0\n", "One\t1\nTwo\t2\n");
    ExpectFailure(Import(), OV_STATUS_ERROR,
                  "Error while writing node: 'One' not found "
                  "Error while writing node: 'Two' not found ");
}

TEST_F(ConfigFileTest, AValueThatTheCameraRoundsFailsTheVerificationAlone) {
    Export();
    Replace("Gain\t0\n", "Gain\t1.23\n");
    EXPECT_OV_OK(Import(false));
    EXPECT_EQ(At(kGainRaw), 12U);
    ExpectFailure(Import(true), OV_STATUS_ERROR,
                  "Error while verifying node 'Gain'. Expected '1.23', but found '1.2'");
    EXPECT_EQ(At(kGainRaw), 12U);
}

TEST_F(ConfigFileTest, ALostCameraFailsEachFeature) {
    Export();
    producer.LoseDevice(0, 0);
    EXPECT_EQ(Import(), OV_STATUS_ERROR);
    EXPECT_NE(LastError::Get().text.find("Error while writing node 'Offset'"), std::string::npos);
    EXPECT_NE(LastError::Get().text.find("Error while writing node 'Gain'"), std::string::npos);
    EXPECT_EQ(OVExportConfigFile(camera, path.c_str()), OV_STATUS_OFFLINE);
}

TEST_F(ConfigFileTest, CallsWithoutAFeatureGoOnBesideAnExport) {
    const uint64_t before = producer.CallCount("GCReadPort");
    producer.BlockCall("GCReadPort");
    std::atomic<OV_STATUS> exported{OV_STATUS_ERROR};
    std::thread other([&] { exported = OVExportConfigFile(camera, path.c_str()); });
    ASSERT_EQ(producer.WaitForCalls("GCReadPort", before + 1, 60000), 0);
    uint32_t value = 5;
    size_t size = sizeof value;
    EXPECT_OV_OK(OVWriteRemoteDevicePort(camera, kOffset, &value, &size));
    EXPECT_OV_OK(OVGetAllDeviceBaseInfo(nullptr, &size));
    OV_EVENT_CALLBACK_HANDLE handle = nullptr;
    EXPECT_OV_OK(OVRegisterDeviceOfflineCallback(
        camera, nullptr, [](void*) {}, &handle));
    EXPECT_OV_OK(OVUnregisterDeviceOfflineCallback(camera, handle));
    producer.ReleaseCall("GCReadPort");
    other.join();
    EXPECT_EQ(exported, OV_STATUS_SUCCESS);
    EXPECT_NE(Content(path).find("\nOffset\t5\n"), std::string::npos);
}

TEST_F(AcquisitionTest, ConfigFilesAreNotTouchedWhileAcquiring) {
    const Folder folder;
    const std::string path = folder / "camera.txt";
    ASSERT_OV_OK(OVExportConfigFile(camera, path.c_str()));
    std::ofstream(path) << "no settings";
    Start();
    ExpectFailure(OVImportConfigFile(camera, path.c_str(), false), OV_STATUS_INVALID_CALL,
                  "Can't import config file after start capture");
    ExpectFailure(OVExportConfigFile(camera, path.c_str()), OV_STATUS_INVALID_CALL,
                  "Can't export config file after start capture");
    EXPECT_EQ(Content(path), "no settings");
    Stop();
}

// The order of the checks: every pair of wrong arguments and states.

/// In the faults, in the order of the checks: L library closed, H handle, P
/// pointer, A acquiring, E empty path, O a file that can't be opened, F a file
/// without settings.
struct FileCall {
    const char* name;
    const char* faults;
};

const FileCall kExport = {"Export", "LHPAEO"};
const FileCall kImport = {"Import", "LHPAEOF"};

struct FileFaults {
    const FileCall* call;
    char first;
    char second;
};

std::vector<FileFaults> AllFileFaults() {
    std::vector<FileFaults> cases;
    for (const FileCall* const call : {&kExport, &kImport}) {
        const std::string faults = call->faults;
        for (size_t first = 0; first < faults.size(); ++first) {
            for (size_t second = first; second < faults.size(); ++second) {
                cases.push_back({call, faults[first], faults[second]});
            }
        }
    }
    return cases;
}

class ConfigFileChecks : public AcquisitionTest, public testing::WithParamInterface<FileFaults> {
protected:
    bool Has(char fault) const { return GetParam().first == fault || GetParam().second == fault; }
    bool IsExport() const { return GetParam().call == &kExport; }

    OV_STATUS Run() {
        const std::string good = folder / "camera.txt";
        std::ofstream(good) << (Has('F') ? "no settings" : "");
        const std::string path = Has('E') ? "" : Has('O') ? folder / "none/camera.txt" : good;
        const char* const text = Has('P') ? nullptr : path.c_str();
        if (Has('A')) {
            Start();
        }
        if (Has('L')) {
            EXPECT_OV_OK(OVCloseLib());
        }
        const OV_DEV_HANDLE handle = Has('H') ? nullptr : camera;
        return IsExport() ? OVExportConfigFile(handle, text)
                          : OVImportConfigFile(handle, text, true);
    }

    void ExpectFault(OV_STATUS status) const {
        switch (GetParam().first) {
            case 'L':
                return ExpectFailure(status, OV_STATUS_NOT_INIT_API, "Not init API");
            case 'H':
                return ExpectFailure(status, OV_STATUS_INVALID_HANDLE, "Invalid device handle");
            case 'P':
                return ExpectFailure(status, OV_STATUS_INVALID_PARAMETER, "NULL Pointer");
            case 'A':
                return ExpectFailure(status, OV_STATUS_INVALID_CALL,
                                     IsExport() ? "Can't export config file after start capture"
                                                : "Can't import config file after start capture");
            case 'E':
                return ExpectFailure(status, OV_STATUS_ERROR, kText);
            case 'O':
                return ExpectFailure(status, OV_STATUS_ERROR, "Can't open config file");
            default:
                EXPECT_EQ(status, OV_STATUS_ERROR);
                EXPECT_EQ(LastError::Get().text, "{-1}Invalid feature file format");
        }
    }

    Folder folder;
};

TEST_P(ConfigFileChecks, TheFirstOfTwoFaultsDecides) {
    ExpectFault(Run());
}

INSTANTIATE_TEST_SUITE_P(Pairs, ConfigFileChecks, testing::ValuesIn(AllFileFaults()),
                         [](const auto& test) {
                             return std::string(test.param.call->name) + test.param.first +
                                    test.param.second;
                         });

}  // namespace
