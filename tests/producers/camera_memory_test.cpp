/// @file
/// What a virtual camera remembers from one process to the next.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "GenTLApi.h"
#include "virtual/CameraMemory.h"

using namespace OvVirtual;

namespace fs = std::filesystem;

namespace {

class Folder {
public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "ov-memory-XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { fs::remove_all(m_path); }

    const fs::path& Path() const { return m_path; }

private:
    fs::path m_path;
};

std::string ReadAll(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

CameraState Changed() {
    CameraState state = FactoryState(true);
    state.userId = "line \"3\"\nback \\ left";
    state.userSetDefault = 2;
    state.selectors.balance = 2;
    state.selectors.fileOperation = 4;
    state.settings.exposure = 41;
    state.settings.width = 640;
    state.settings.offsetX = 64;
    state.settings.balance[1] = 65535;
    auto table = std::make_shared<LookUpTable>(*state.settings.lut);
    (*table)[17] = kTopLevel;
    state.settings.lut = table;
    state.userSets[1].gain = 240;
    state.userSets[2].binningX = 2;
    state.userSets[2].width = 1224;
    state.userFile.emplace({std::byte{0x00}, std::byte{0x0A}, std::byte{0xFF}});
    return state;
}

class CameraMemoryTest : public testing::Test {
protected:
    Folder folder;
    CameraMemory memory{folder.Path() / "sub" / "VC"};
};

TEST_F(CameraMemoryTest, GivesBackAllThatItWasGiven) {
    const CameraState state = Changed();
    ASSERT_TRUE(memory.Store(state));
    const auto loaded = memory.Load(true);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(ToText(*loaded), ToText(state));
    EXPECT_EQ(loaded->userId, state.userId);
    EXPECT_EQ(loaded->selectors.balance, 2);
    EXPECT_EQ(loaded->selectors.fileOperation, 4);
    EXPECT_EQ(loaded->settings.exposure, 41);
    EXPECT_EQ((*loaded->settings.lut)[17], kTopLevel);
    EXPECT_EQ(loaded->userSets[1].gain, 240);
    EXPECT_EQ(loaded->userSets[2].binningX, 2);
    EXPECT_EQ(loaded->userFile, state.userFile);
}

TEST_F(CameraMemoryTest, TellsAnEmptyUserFileFromNone) {
    CameraState state = Changed();
    state.userFile->clear();
    EXPECT_EQ(StateFromText(ToText(state), true)->userFile, CameraFiles::Content());
    state.userFile.reset();
    EXPECT_EQ(StateFromText(ToText(state), true)->userFile, std::nullopt);
}

TEST_F(CameraMemoryTest, RefusesBytesThatAreNone) {
    std::string text = ToText(Changed());
    const size_t bytes = text.find("000aff");
    ASSERT_NE(bytes, std::string::npos);
    for (const char* wrong : {"000agf", "0-1aff", "000af ", "000aff0"}) {
        std::string changed = text;
        EXPECT_FALSE(StateFromText(changed.replace(bytes, 6, wrong), true)) << wrong;
    }
}

TEST_F(CameraMemoryTest, LeavesOneFileForTheUserAlone) {
    ASSERT_TRUE(memory.Store(Changed()));
    ASSERT_TRUE(memory.Store(FactoryState(true)));
    const fs::path sub = folder.Path() / "sub";
    EXPECT_EQ(std::distance(fs::directory_iterator(sub), {}), 1);
    EXPECT_EQ(fs::status(sub).permissions(), fs::perms::owner_all);
}

TEST_F(CameraMemoryTest, KnowsThatAnotherProcessHasChangedTheFile) {
    CameraMemory other{folder.Path() / "sub" / "VC"};
    ASSERT_TRUE(memory.Store(Changed()));
    EXPECT_TRUE(other.IsNewer());
    ASSERT_TRUE(other.Load(true));
    EXPECT_FALSE(other.IsNewer());
    ASSERT_TRUE(memory.Store(FactoryState(true)));
    EXPECT_TRUE(other.IsNewer());
}

TEST_F(CameraMemoryTest, WritesNothingThatTheFileHasAlready) {
    CameraMemory other{folder.Path() / "sub" / "VC"};
    ASSERT_TRUE(memory.Store(Changed()));
    ASSERT_TRUE(other.Load(true));
    ASSERT_TRUE(memory.Store(Changed()));
    EXPECT_FALSE(other.IsNewer());
    ASSERT_TRUE(other.Store(FactoryState(true)));
    // What the file had when it was last looked at is what counts.
    ASSERT_TRUE(memory.Load(true));
    ASSERT_TRUE(memory.Store(Changed()));
    EXPECT_EQ(ToText(*other.Load(true)), ToText(Changed()));
}

TEST_F(CameraMemoryTest, IsEmptyBeforeTheFirstStore) {
    EXPECT_FALSE(memory.Load(true));
    EXPECT_FALSE(CameraMemory("").Load(true));
    EXPECT_TRUE(CameraMemory("").Store(Changed()));
}

TEST_F(CameraMemoryTest, TellsThatTheFolderCannotBeMade) {
    std::ofstream(folder.Path() / "sub") << "a file";
    EXPECT_FALSE(memory.Store(Changed()));
    EXPECT_EQ(ReadAll(folder.Path() / "sub"), "a file");
}

TEST_F(CameraMemoryTest, RefusesAFileThatIsCutOffAnywhere) {
    const std::string text = ToText(Changed());
    for (size_t length = 0; length + 1 < text.size();
         length += length < 1000 || length + 100 > text.size() ? 1 : 997) {
        EXPECT_FALSE(StateFromText(text.substr(0, length), true)) << length;
    }
}

TEST_F(CameraMemoryTest, RefusesWhatTheRegistersWouldRefuse) {
    const auto refuses = [](auto change, bool color = true) {
        CameraState state = Changed();
        change(state);
        return !StateFromText(ToText(state), color);
    };
    EXPECT_FALSE(refuses([](CameraState&) {}));
    EXPECT_TRUE(refuses([](CameraState& s) { s.settings.exposure = 39; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.settings.width = 642; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.settings.offsetX = 2448; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.settings.pixelFormat = 7; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.settings.testPattern = 1000; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.userSets[1].binningX = 3; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.userSets[2].balance[0] = -1; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.userSetDefault = 3; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.selectors.userSet = 3; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.selectors.lutIndex = -1; }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.userId = std::string(65, 'x'); }));
    EXPECT_FALSE(refuses([](CameraState& s) { s.userFile->resize(CameraFiles::kUserFileMax); }));
    EXPECT_TRUE(refuses([](CameraState& s) { s.userFile->resize(CameraFiles::kUserFileMax + 1); }));
    EXPECT_TRUE(refuses([](CameraState&) {}, false)) << "a mosaic in a camera without filter";
    EXPECT_FALSE(StateFromText(ToText(Changed()) + "1", true));
}

/// Two libraries one after the other, as two processes would have them.
class RememberingCamera : public testing::Test {
protected:
    RememberingCamera() { setenv("OV_VIRTUAL_STATE", folder.Path().c_str(), 1); }
    ~RememberingCamera() override { setenv("OV_VIRTUAL_STATE", "off", 1); }

    template <typename Do>
    void WithCamera(Do run) {
        const GenTLApi api(OV_TEST_VIRTUAL_PRODUCER);
        OpenCamera camera(api);
        camera.OpenDevice();
        run(camera);
        api.DevClose(camera.device);
    }

    static constexpr std::uint64_t kExposure = 0x430;
    Folder folder;
};

TEST_F(RememberingCamera, KeepsASettingForTheNextProcess) {
    WithCamera([](OpenCamera& camera) { camera.WriteRegister(kExposure, std::uint32_t{4242}); });
    WithCamera([](OpenCamera& camera) {
        EXPECT_EQ(camera.ReadRegister<std::uint32_t>(kExposure), 4242U);
    });
}

TEST_F(RememberingCamera, KeepsEachSelectorForTheNextProcess) {
    for (const SelectorRegister& entry : SelectorRegisters()) {
        const auto last = static_cast<std::uint32_t>(entry.max);
        WithCamera([&](OpenCamera& camera) { camera.WriteRegister(entry.address, last); });
        WithCamera([&](OpenCamera& camera) {
            EXPECT_EQ(camera.ReadRegister<std::uint32_t>(entry.address), last) << entry.address;
        });
    }
}

TEST_F(RememberingCamera, SelectsNothingAfterAReset) {
    constexpr std::uint64_t reset = 0x20C;
    WithCamera([&](OpenCamera& camera) {
        for (const SelectorRegister& entry : SelectorRegisters()) {
            camera.WriteRegister(entry.address, static_cast<std::uint32_t>(entry.max));
        }
        camera.WriteRegister(reset, std::uint32_t{1});
        for (const SelectorRegister& entry : SelectorRegisters()) {
            EXPECT_EQ(camera.ReadRegister<std::uint32_t>(entry.address), 0U) << entry.address;
        }
    });
}

TEST_F(RememberingCamera, StartsFromTheFactoryWhenTheFileIsDamaged) {
    WithCamera([](OpenCamera& camera) { camera.WriteRegister(kExposure, std::uint32_t{4242}); });
    std::ofstream(folder.Path() / "VC000001") << "no state";
    WithCamera([](OpenCamera& camera) {
        EXPECT_EQ(camera.ReadRegister<std::uint32_t>(kExposure), 20000U);
    });
}

}  // namespace
