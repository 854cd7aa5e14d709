// What the cache makes of folders that are full, of other users and of processes
// that died: a description is loaded all the same, it only isn't kept.

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "Base/Environment.h"
#include "Base/GlobalLock.h"
#include "CacheSupport.h"
#include "support/ZipWriter.h"

namespace EngineTest {

namespace {

constexpr uid_t kAnotherUser = 12345;

std::string LoadFailure(ECacheUsage_t usage) {
    return DescriptionOf<RuntimeException>(
        [&] { CNodeMapFactory(kDescription, usage).Preprocess(); });
}

/// The camera can be used, and those who insist on the cache are told.
void ExpectNotCached() {
    CNodeMapFactory factory(kDescription, CacheUsage_Automatic);
    EXPECT_EQ(MapOwner(factory.CreateNodeMap("Device", false)).ValueOf("A"), 1);
    EXPECT_TRUE(factory.IsPreprocessed()) << "it came from the description";
    EXPECT_EQ(LoadFailure(CacheUsage_ForceRead), kForcedRead);
    EXPECT_EQ(LoadFailure(CacheUsage_ForceWrite), kForcedWrite);
}

void ExpectCached() {
    CNodeMapFactory factory(kDescription, CacheUsage_ForceRead);
    EXPECT_EQ(MapOwner(factory.CreateNodeMap("Device", false)).ValueOf("A"), 1);
}

std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    return names;
}

/// Runs in a process of its own, whose failed expectations show in its status.
int StatusOf(const std::function<void()>& action) {
    const pid_t child = fork();
    if (child == 0) {
        action();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

void Give(const std::string& path, uid_t user) {
    ASSERT_EQ(chown(path.c_str(), user, static_cast<gid_t>(-1)), 0);
}

class CacheFault : public testing::Test {
protected:
    /// The name under which the description is kept, with nothing there yet.
    static std::string NameOfFile(const CacheFolder& folder) {
        Store(kDescription);
        std::string name = folder.File();
        fs::remove(name);
        fs::remove(name + ".sum");
        return name;
    }
    const CacheFolder m_Folder;
    const std::string m_File = NameOfFile(m_Folder);
};

/// Files and folders of somebody else, which only the administrator can make.
class CacheOfOthers : public CacheFault {
protected:
    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "only the administrator can give files to other users";
        }
    }
};

}  // namespace

// Files that can't be put in place.

TEST_F(CacheFault, AChecksumThatCannotBeReplacedMeansNotCached) {
    fs::create_directories(m_File + ".sum/full");
    ExpectNotCached();
    EXPECT_FALSE(fs::exists(m_File));
    EXPECT_FALSE(fs::exists(m_File + ".sum.tmp"));
}

TEST_F(CacheFault, AChecksumThatCannotBeWrittenMeansNotCached) {
    fs::create_directories(m_File + ".sum.tmp/full");
    ExpectNotCached();
    EXPECT_FALSE(fs::exists(m_File));
}

TEST_F(CacheFault, AChecksumThatCannotBeReadMeansNotCached) {
    Store(kDescription);
    fs::remove(m_File + ".sum");
    fs::create_directories(m_File + ".sum/full");
    ExpectNotCached();
}

TEST_F(CacheFault, AFileThatCannotBeWrittenMeansNotCached) {
    fs::create_directories(m_File + ".tmp/full");
    ExpectNotCached();
}

TEST_F(CacheFault, LeavesTheLockFreeWhateverFails) {
    fs::create_directories(m_File + ".tmp/full");
    ExpectNotCached();
    fs::remove_all(m_File + ".tmp");
    EXPECT_EQ(StatusOf([] {
                  Store(kDescription);
                  ExpectCached();
              }),
              0);
}

TEST_F(CacheFault, AFullDiskMeansNotCached) {
    // Room for nothing, for a part of the checksum, for the checksum and a part
    // of the file.
    for (const rlim_t room : {0UL, 8UL, 16UL, 100UL}) {
        EXPECT_EQ(StatusOf([room] {
                      std::signal(SIGXFSZ, SIG_IGN);
                      const rlimit limit{.rlim_cur = room, .rlim_max = room};
                      ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
                      ExpectNotCached();
                  }),
                  0)
            << room;
        EXPECT_FALSE(fs::exists(m_File));
        EXPECT_FALSE(fs::exists(m_File + ".tmp"));
        EXPECT_FALSE(fs::exists(m_File + ".sum.tmp"));
        fs::remove(m_File + ".sum");
    }
}

TEST_F(CacheFault, AFullDiskKeepsAFileThatIsThere) {
    Store(kDescription);
    const std::string bytes = BytesOf(m_File);
    EXPECT_EQ(StatusOf([] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{.rlim_cur = 100, .rlim_max = 100};
                  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
                  ExpectCached();
                  CNodeMapFactory(Description("B", 2), CacheUsage_Automatic).Preprocess();
              }),
              0);
    EXPECT_EQ(BytesOf(m_File), bytes);
    EXPECT_EQ(m_Folder.Files().size(), 1U);
}

// Links.

TEST_F(CacheFault, ALinkIsNotWrittenThrough) {
    const ScratchFolder elsewhere;
    const std::string victim = elsewhere.Write("victim", "mine");
    for (const char* const extension : {".tmp", ".sum.tmp", ".sum", ""}) {
        fs::create_symlink(victim, m_File + extension);
        Store(kDescription);
        EXPECT_EQ(BytesOf(victim), "mine") << extension;
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(m_File))) << extension;
        ExpectCached();
        fs::remove(m_File);
        fs::remove(m_File + ".sum");
    }
    EXPECT_THAT(NamesIn(m_Folder.Path()), testing::IsEmpty());
}

TEST_F(CacheFault, ALinkThatLeadsNowhereMakesNoFileThere) {
    const ScratchFolder elsewhere;
    for (const char* const extension : {".tmp", ".sum.tmp"}) {
        fs::create_symlink(elsewhere.Path() + "/new", m_File + extension);
    }
    Store(kDescription);
    EXPECT_TRUE(elsewhere.IsEmpty());
}

TEST_F(CacheFault, ALinkIsNotReadThrough) {
    Store(Description("A", 2));
    const ScratchFolder elsewhere;
    const std::string foreign = elsewhere.Path() + "/foreign";
    fs::rename(m_Folder.File(), foreign);
    fs::create_symlink(foreign, m_File);
    CNodeMapFactory factory(kDescription, CacheUsage_Automatic);
    EXPECT_EQ(MapOwner(factory.CreateNodeMap()).ValueOf("A"), 1);
}

TEST_F(CacheFault, AWriterReplacesWhatADeadOneLeft) {
    std::ofstream(m_File + ".tmp") << "a part";
    std::ofstream(m_File + ".sum.tmp") << "a part";
    Store(kDescription);
    ExpectCached();
    EXPECT_EQ(NamesIn(m_Folder.Path()).size(), 2U);
}

TEST_F(CacheFault, APipeInPlaceOfAFileKeepsNobodyWaiting) {
    ASSERT_EQ(mkfifo(m_File.c_str(), 0600), 0);
    EXPECT_EQ(LoadFailure(CacheUsage_Automatic), "Failed to read cache file '" + m_File + "'.");
}

// Other users.

TEST_F(CacheOfOthers, AFolderIsNotTrusted) {
    Store(kDescription);
    Give(m_Folder.Path(), kAnotherUser);
    ExpectNotCached();
    EXPECT_TRUE(CNodeMapFactory::ClearCache());
    EXPECT_TRUE(fs::exists(m_File)) << "nothing is touched in it";
    Give(m_Folder.Path(), geteuid());
    ExpectCached();
}

TEST_F(CacheOfOthers, AFileIsNotTrustedButReplaced) {
    Store(kDescription);
    Give(m_File, kAnotherUser);
    EXPECT_EQ(LoadFailure(CacheUsage_ForceRead), kForcedRead);
    CNodeMapFactory factory(kDescription, CacheUsage_Automatic);
    EXPECT_EQ(MapOwner(factory.CreateNodeMap("Device", false)).ValueOf("A"), 1);
    EXPECT_TRUE(factory.IsPreprocessed());
    ExpectCached();
    struct stat status {};
    ASSERT_EQ(stat(m_File.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, geteuid());
}

TEST_F(CacheOfOthers, TheAdministratorsFilesAreTrusted) {
    Store(kDescription);
    ASSERT_EQ(chmod(m_Folder.Path().c_str(), 0755), 0);
    EXPECT_EQ(StatusOf([] {
                  ASSERT_EQ(setuid(kAnotherUser), 0);
                  ExpectCached();
                  // The folder takes nothing from this user.
                  CNodeMapFactory(Description("B", 2), CacheUsage_Automatic).Preprocess();
              }),
              0);
    EXPECT_EQ(m_Folder.Files().size(), 1U);
}

// Processes that die.

TEST_F(CacheFault, AProcessThatDiesWithTheLockDoesNotStopTheNext) {
    // A description of its own, whose lock no other test can take over.
    const gcstring description = Description("A", getpid());
    Store(description);
    // The name's first eight digits are the hash with its low byte first.
    const std::string digits = fs::path(m_Folder.File()).filename().string().substr(2, 8);
    const auto hash = static_cast<uint32_t>(std::stoul(digits, nullptr, 16));
    const gcstring lockName =
        gcstring("GenICam_XML_") + std::to_string(__builtin_bswap32(hash)).c_str();
    EXPECT_EQ(StatusOf([&] {
                  GenICam_3_0_ORVANE::CGlobalLock lock(lockName);
                  _exit(lock.TryLock() ? 0 : 1);
              }),
              0);
    EXPECT_FALSE(GenICam_3_0_ORVANE::CGlobalLock(lockName).TryLock());
    CNodeMapFactory(description, CacheUsage_ForceRead).Preprocess();
    GenICam_3_0_ORVANE::CGlobalLock lock(lockName);
    EXPECT_TRUE(lock.TryLock()) << "it is as if nobody had died";
    lock.Unlock();
}

TEST_F(CacheFault, AProcessThatDiesWhileItClearsDoesNotStopTheNext) {
    Store(kDescription);
    const gcstring lockName = gcstring("GenICam_XML_") + fs::path(m_File).stem().string().c_str();
    EXPECT_EQ(StatusOf([&] {
                  GenICam_3_0_ORVANE::CGlobalLock lock(lockName);
                  _exit(lock.TryLock() ? 0 : 1);
              }),
              0);
    EXPECT_TRUE(CNodeMapFactory::ClearCache());
    EXPECT_FALSE(fs::exists(m_File));
}

// Names.

TEST(CacheUse, TakesAZippedFileNamedWithAVariableInEveryMode) {
    const ScratchFolder sources;
    const EnvironmentScope variable("OV_TEST_SOURCES", sources.Path());
    sources.Write("camera.zip", ZipOf(kDescription.c_str()));
    const CacheFolder folder;
    // The forced read comes when there is a file.
    for (const ECacheUsage_t usage :
         {CacheUsage_Ignore, CacheUsage_ForceWrite, CacheUsage_ForceRead, CacheUsage_Automatic}) {
        CNodeMapFactory factory(ContentType_ZippedXml, gcstring("$(OV_TEST_SOURCES)/camera.zip"),
                                usage);
        EXPECT_EQ(MapOwner(factory.CreateNodeMap()).ValueOf("A"), 1) << usage;
        EXPECT_EQ(folder.IsEmpty(), usage == CacheUsage_Ignore);
    }
    EXPECT_EQ(folder.Files().size(), 1U) << "with the name and without it, it is one file";
    const gcstring plain = (sources.Path() + "/camera.zip").c_str();
    CNodeMapFactory(ContentType_ZippedXml, plain, CacheUsage_ForceRead).Preprocess();
}

TEST(CacheUse, TellsOfAVariableThatIsNotSet) {
    const CacheFolder folder;
    CNodeMapFactory factory(ContentType_ZippedXml, gcstring("$(OV_TEST_NOT_SET)/camera.zip"),
                            CacheUsage_Automatic);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.Preprocess(); }),
              "Environment variable 'OV_TEST_NOT_SET' not found");
}

TEST(ClearCache, TakesTheNameOfTheFolderAsItIs) {
    for (const char* const name : {"[a]", "*", "?", "a[!b]*", "\\", "{a,b}", "~", "$(NO"}) {
        const ScratchFolder outer;
        const std::string path = outer.Path() + "/" + name;
        fs::create_directory(path);
        const EnvironmentScope scope("GENICAM_CACHE_V3_0", path + "/");
        Store(kDescription);
        EXPECT_EQ(NamesIn(path).size(), 2U) << name;
        EXPECT_TRUE(CNodeMapFactory::ClearCache()) << name;
        EXPECT_THAT(NamesIn(path), testing::IsEmpty()) << name;
    }
}

TEST(ClearCache, LeavesFoldersAloneThatThePatternOfItsNameMeets) {
    const ScratchFolder outer;
    for (const char* const name : {"[ab]", "a"}) {
        fs::create_directory(outer.Path() + "/" + name);
    }
    const EnvironmentScope other("GENICAM_CACHE_V3_0", outer.Path() + "/a");
    Store(kDescription);
    const EnvironmentScope pattern("GENICAM_CACHE_V3_0", outer.Path() + "/[ab]");
    EXPECT_TRUE(CNodeMapFactory::ClearCache());
    EXPECT_EQ(NamesIn(outer.Path() + "/a").size(), 2U);
}

}  // namespace EngineTest
