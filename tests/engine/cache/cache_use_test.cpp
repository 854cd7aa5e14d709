// When a description is read from the cache, when it is written, and under which
// name.

#include <sys/stat.h>

#include <algorithm>

#include "Base/GlobalLock.h"
#include "CacheSupport.h"

namespace EngineTest {

namespace {

/// A description that can be merged into another.
gcstring Injectable(const std::string& name) {
    return Description(IntegerXml(name) + "<Port Name=\"Device\" MergePriority=\"-1\"/>");
}

/// The name under which a factory keeps its description: one that is made where
/// there is a folder.
template <class Make>
std::string NameUnder(const Make& make) {
    const CacheFolder folder;
    CNodeMapFactory factory = make();
    factory.Preprocess();
    const auto files = folder.Files();
    EXPECT_EQ(files.size(), 1U);
    return files.at(0);
}

std::string NameWithInjected(const std::vector<gcstring>& injected) {
    return NameUnder([&] {
        CNodeMapFactory factory(kDescription, CacheUsage_Automatic);
        for (const gcstring& description : injected) {
            factory.AddInjectionData(CNodeMapFactory(description));
        }
        return factory;
    });
}

std::string NameOfSubtree(const char* node, bool renameToRoot) {
    const CacheFolder folder;
    CNodeMapFactory factory(
        Description("<Category Name=\"Foo\"><pFeature>A</pFeature></Category>" + IntegerXml("A")),
        CacheUsage_Automatic);
    factory.Preprocess();
    const std::vector<std::string> before = folder.Files();
    factory.ExtractSubtree(node, renameToRoot);
    for (const std::string& name : folder.Files()) {
        if (std::find(before.begin(), before.end(), name) == before.end()) {
            return name;
        }
    }
    return {};
}

}  // namespace

// Reading and writing by usage.

TEST(CacheUse, WritesWhereThereIsNoFileAndReadsWhereThereIs) {
    const CacheFolder folder;
    CNodeMapFactory first(kDescription, CacheUsage_Automatic);
    EXPECT_EQ(MapOwner(first.CreateNodeMap("Device", false)).ValueOf("A"), 1);
    EXPECT_TRUE(first.IsPreprocessed());
    const std::string file = folder.File();
    const auto written = fs::last_write_time(file);
    CNodeMapFactory second(kDescription, CacheUsage_Automatic);
    EXPECT_EQ(MapOwner(second.CreateNodeMap("Device", false)).ValueOf("A"), 1);
    EXPECT_FALSE(second.IsPreprocessed());  // the nodes came straight from the file
    EXPECT_EQ(folder.File(), file);
    EXPECT_EQ(fs::last_write_time(file), written);
    EXPECT_FALSE(fs::exists(file + ".tmp"));
}

TEST(CacheUse, NeedsAFileToBeForcedToRead) {
    const CacheFolder folder;
    CNodeMapFactory factory(kDescription, CacheUsage_ForceRead);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.Preprocess(); }), kForcedRead);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.CreateNodeMap(); }), kForcedRead);
    EXPECT_TRUE(folder.IsEmpty());
    Store(kDescription);
    EXPECT_EQ(MapOwner(factory.CreateNodeMap()).ValueOf("A"), 1);
}

TEST(CacheUse, NeedsAFolderThatTakesFilesToBeForcedToWrite) {
    const EnvironmentScope nowhere("GENICAM_CACHE_V3_0", "/nowhere/at/all");
    CNodeMapFactory forced(kDescription, CacheUsage_ForceWrite);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { forced.Preprocess(); }), kForcedWrite);
    CNodeMapFactory automatic(kDescription, CacheUsage_Automatic);
    EXPECT_EQ(MapOwner(automatic.CreateNodeMap()).ValueOf("A"), 1);
}

TEST(CacheUse, ReadsAFileEvenWhenForcedToWrite) {
    const CacheFolder folder;
    Store(kDescription);
    const auto written = fs::last_write_time(folder.File());
    Store(kDescription);
    EXPECT_EQ(fs::last_write_time(folder.File()), written);
}

TEST(CacheUse, TakesNoPartInWhatIsLoadedAlready) {
    const CacheFolder folder;
    CNodeMapFactory factory(kDescription, CacheUsage_Automatic);
    factory.LoadAndInject();
    factory.Preprocess();
    EXPECT_TRUE(folder.IsEmpty());
    CNodeMapFactory forced(kDescription, CacheUsage_ForceWrite);
    forced.LoadAndInject();
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { forced.Preprocess(); }), kForcedWrite);
}

TEST(CacheUse, FindsDanglingLinksBeforeAnythingElse) {
    const CacheFolder folder;
    CNodeMapFactory factory(Description(IntegerXml("A", "", "<pValue>Nowhere</pValue>")),
                            CacheUsage_Automatic);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.Preprocess(); }),
              "Fatal error : Dangling node reference 'Nowhere'");
    EXPECT_TRUE(folder.IsEmpty());
}

TEST(CacheUse, LeavesOutDescriptionsThatTwoBytesCannotNumber) {
    std::string features;
    std::string nodes;
    for (int i = 0; i < 22000; ++i) {  // three texts each
        const std::string name = "N" + std::to_string(i);
        nodes += IntegerXml(name, "<ToolTip>T</ToolTip><DisplayName>D</DisplayName>");
    }
    const CacheFolder folder;
    CNodeMapFactory automatic(Description(nodes), CacheUsage_Automatic);
    EXPECT_EQ(MapOwner(automatic.CreateNodeMap()).ValueOf("N0"), 1);
    EXPECT_TRUE(folder.IsEmpty());
    CNodeMapFactory forced(Description(nodes), CacheUsage_ForceWrite);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { forced.Preprocess(); }), kForcedWrite);
}

TEST(CacheUse, TellsThatAFileIsNoFile) {
    const CacheFolder folder;
    Store(kDescription);
    const std::string name = folder.File();
    fs::remove(name);
    fs::create_directory(name);
    CNodeMapFactory factory(kDescription, CacheUsage_Automatic);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.Preprocess(); }),
              "Failed to read cache file '" + name + "'.");
}

// Names.

TEST(CacheName, IsTheHashWithItsLowByteFirst) {
    const CacheFolder folder;
    Store(kDescription);
    EXPECT_THAT(folder.Files().at(0), testing::MatchesRegex("0x[0-9a-f]{8}00000000\\.bin"));
}

TEST(CacheName, IsThatOfTheSameBytesFromAFileFromMemoryAndFromText) {
    const ScratchFolder sources;
    const gcstring file = sources.Write("camera.xml", kDescription.c_str()).c_str();
    const std::string name =
        NameUnder([&] { return CNodeMapFactory(kDescription, CacheUsage_Automatic); });
    EXPECT_EQ(
        NameUnder([&] { return CNodeMapFactory(ContentType_Xml, file, CacheUsage_Automatic); }),
        name);
    EXPECT_EQ(NameUnder([&] {
                  return CNodeMapFactory(ContentType_Xml, kDescription.c_str(), kDescription.size(),
                                         CacheUsage_Automatic);
              }),
              name);
}

TEST(CacheName, TellsDescriptionsApart) {
    EXPECT_NE(NameUnder([] { return CNodeMapFactory(kDescription, CacheUsage_Automatic); }),
              NameUnder([] { return CNodeMapFactory(Description("A", 2), CacheUsage_Automatic); }));
}

TEST(CacheName, IsAnotherWithoutTextsForReaders) {
    EXPECT_NE(NameUnder([] { return CNodeMapFactory(kDescription, CacheUsage_Automatic, false); }),
              NameUnder([] { return CNodeMapFactory(kDescription, CacheUsage_Automatic, true); }));
}

TEST(CacheName, FollowsWhatIsInjectedAndInWhichOrder) {
    const gcstring b = Injectable("B");
    const gcstring c = Injectable("C");
    const std::string none = NameWithInjected({});
    const std::string one = NameWithInjected({b});
    const std::string both = NameWithInjected({b, c});
    const std::string turned = NameWithInjected({c, b});
    EXPECT_NE(none, one);
    EXPECT_NE(one, both);
    EXPECT_NE(both, turned);
}

TEST(CacheName, OfASubtreeFollowsItsNameAndWhetherItIsRenamed) {
    const std::string kept = NameOfSubtree("Foo", false);
    const std::string renamed = NameOfSubtree("Foo", true);
    EXPECT_EQ(kept.size(), 22U);
    EXPECT_EQ(renamed.size(), 22U);
    EXPECT_NE(kept, renamed);
    EXPECT_NE(kept, NameOfSubtree("A", false));
}

TEST(CacheName, NeedsADescriptionFileThatCanBeRead) {
    const CacheFolder folder;
    CNodeMapFactory factory(ContentType_Xml, gcstring("/nowhere/camera.xml"), CacheUsage_Automatic);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.Preprocess(); }),
              "Could not open file for hash computation: /nowhere/camera.xml");
}

TEST(CacheName, NeedsInjectedDescriptionsToBeThere) {
    const CacheFolder folder;
    CNodeMapFactory factory(kDescription, CacheUsage_Automatic);
    CNodeMapFactory injected(Description("B", 1));
    factory.AddInjectionData(injected);
    injected.ReleaseCameraDescriptionFileData();
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { factory.Preprocess(); }),
              "Cannot compute hash, the camera description file data has already been released.");
    CNodeMapFactory other(kDescription, CacheUsage_Automatic);
    other.AddInjectionData(CNodeMapFactory());
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { other.Preprocess(); }),
              "Cannot compute hash, no camera description file data has been provided to the node "
              "map factory.");
}

TEST(NodeMapFactory, CannotBeInjectedIntoItself) {
    CNodeMapFactory a(kDescription);
    CNodeMapFactory b(Injectable("B"));
    a.AddInjectionData(b);
    const char* const text = "A camera description can't be injected into itself.";
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { a.AddInjectionData(a); }), text);
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { b.AddInjectionData(a); }), text);
    EXPECT_EQ(MapOwner(a.CreateNodeMap())->GetNumNodes(), 3U);
}

// Subtrees.

TEST(CacheUse, KeepsSubtreesToo) {
    const CacheFolder folder;
    CNodeMapFactory whole(kDescription, CacheUsage_Automatic);
    const gcstring first = whole.ExtractSubtree("A", false).ToString();
    EXPECT_EQ(folder.Files().size(), 2U);
    CNodeMapFactory again(kDescription, CacheUsage_Automatic);
    CNodeMapFactory subtree = again.ExtractSubtree("A", false);
    EXPECT_FALSE(again.IsPreprocessed());  // the subtree came without the whole
    EXPECT_TRUE(subtree.IsPreprocessed());
    EXPECT_EQ(subtree.ToString(), first);
    EXPECT_EQ(MapOwner(subtree.CreateNodeMap()).ValueOf("A"), 1);
}

// Clearing.

TEST(ClearCache, NeedsAFolderInTheEnvironment) {
    const EnvironmentScope noFolder("GENICAM_CACHE_V3_0", "");
    unsetenv("GENICAM_CACHE_V3_0");
    EXPECT_FALSE(CNodeMapFactory::ClearCache());
}

TEST(ClearCache, DeletesTheFilesOfTheCacheAlone) {
    const CacheFolder folder;
    Store(kDescription);
    for (const char* name : {"0x1234.bin", "notes.txt", "0xabcdefabcdefabcd.bin.old"}) {
        std::ofstream(folder.Path() + "/" + name) << "kept";
    }
    EXPECT_TRUE(CNodeMapFactory::ClearCache());
    std::vector<std::string> left;
    for (const auto& entry : fs::directory_iterator(folder.Path())) {
        left.push_back(entry.path().filename());
    }
    EXPECT_THAT(left, testing::UnorderedElementsAre("0x1234.bin", "notes.txt",
                                                    "0xabcdefabcdefabcd.bin.old"));
    EXPECT_TRUE(CNodeMapFactory::ClearCache());
}

}  // namespace EngineTest
