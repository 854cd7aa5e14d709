// Cameras of one model share what was loaded for the first of them.

#include <array>
#include <utility>

#include "FactorySupport.h"
#include "GenApi/NodeMapRef.h"
#include "factory/SharedDescriptions.h"
#include "support/ZipWriter.h"

namespace EngineTest {

namespace {

/// A description that no other test has.
gcstring DescriptionOfTest(int value = 1) {
    return Description(testing::UnitTest::GetInstance()->current_test_info()->name(), value);
}

/// A description that can be merged with another one.
gcstring InjectableDescription(const std::string& name, int value) {
    return Description(IntegerXml(name, "", Element("Value", std::to_string(value))) +
                       "<Port Name=\"Device\" MergePriority=\"-1\"/>");
}

/// How many maps and factories have the description's data at this moment.
long Owners(const gcstring& text, bool suppressStrings = false) {
    return CSharedDescriptions::Get().Find(text.c_str(), suppressStrings).use_count();
}

IInteger& IntegerOf(const MapOwner& map) {
    return dynamic_cast<IInteger&>(
        *map->GetNode(testing::UnitTest::GetInstance()->current_test_info()->name()));
}

}  // namespace

TEST(SharedDescription, IsLoadedOnceForEqualTexts) {
    const gcstring text = DescriptionOfTest();
    EXPECT_EQ(Owners(text), 0);
    const MapOwner first(CNodeMapFactory(text).CreateNodeMap());
    // One more owner looks for it.
    EXPECT_EQ(Owners(text), 2);
    const auto data = CSharedDescriptions::Get().Find(text.c_str(), false);
    const MapOwner second(CNodeMapFactory(text).CreateNodeMap());
    EXPECT_EQ(Owners(text), 4);
    EXPECT_EQ(CSharedDescriptions::Get().Find(text.c_str(), false), data);
}

TEST(SharedDescription, IsNoOtherTexts) {
    const MapOwner one(CNodeMapFactory(DescriptionOfTest(1)).CreateNodeMap());
    const MapOwner two(CNodeMapFactory(DescriptionOfTest(2)).CreateNodeMap());
    EXPECT_EQ(Owners(DescriptionOfTest(1)), 2);
    EXPECT_EQ(Owners(DescriptionOfTest(2)), 2);
    EXPECT_EQ(IntegerOf(one).GetValue(), 1);
    EXPECT_EQ(IntegerOf(two).GetValue(), 2);
}

TEST(SharedDescription, IsNotThatWithoutTexts) {
    const gcstring text =
        Description(IntegerXml("IsNotThatWithoutTexts", Element("ToolTip", "For people")));
    const MapOwner whole(CNodeMapFactory(text).CreateNodeMap());
    const MapOwner plain(CNodeMapFactory(text, CacheUsage_Ignore, true).CreateNodeMap());
    EXPECT_EQ(Owners(text), 2);
    EXPECT_EQ(Owners(text, true), 2);
    EXPECT_EQ(IntegerOf(whole).GetNode()->GetToolTip(), "For people");
    EXPECT_EQ(IntegerOf(plain).GetNode()->GetToolTip(), "");
}

TEST(SharedDescription, ServesEverySourceOfTheText) {
    const gcstring text = DescriptionOfTest();
    const std::string bytes = text.c_str();
    ZipWriter zip;
    zip.Add("camera.xml", bytes, ZipWriter::Deflated);
    const std::string archive = zip.Finish();
    const ScratchFolder folder;
    const gcstring plainFile = folder.Write("camera.xml", bytes).c_str();
    const gcstring zippedFile = folder.Write("camera.zip", archive).c_str();
    std::array factories{
        CNodeMapFactory(text),
        CNodeMapFactory(text + gcstring(1, '\0') + "what comes after the text's end"),
        CNodeMapFactory(ContentType_Xml, bytes.data(), bytes.size()),
        CNodeMapFactory(ContentType_ZippedXml, archive.data(), archive.size()),
        CNodeMapFactory(ContentType_Xml, plainFile),
        CNodeMapFactory(ContentType_ZippedXml, zippedFile),
    };
    for (CNodeMapFactory& factory : factories) {
        factory.Preprocess();
        EXPECT_TRUE(factory.IsLoaded());
    }
    CNodeMapRef handle;
    handle._LoadXMLFromString(text);
    EXPECT_EQ(Owners(text), static_cast<long>(factories.size()) + 2);
}

TEST(SharedDescription, EndsWithTheLastMap) {
    const gcstring text = DescriptionOfTest(7);
    auto first = std::make_optional<MapOwner>(CNodeMapFactory(text).CreateNodeMap());
    auto second = std::make_optional<MapOwner>(CNodeMapFactory(text).CreateNodeMap());
    first.reset();
    EXPECT_EQ(Owners(text), 2);
    auto third = std::make_optional<MapOwner>(CNodeMapFactory(text).CreateNodeMap());
    second.reset();
    EXPECT_EQ(IntegerOf(*third).GetValue(), 7);
    EXPECT_EQ(Owners(text), 2);
    third.reset();
    EXPECT_EQ(Owners(text), 0);
    const MapOwner again(CNodeMapFactory(text).CreateNodeMap());
    EXPECT_EQ(IntegerOf(again).GetValue(), 7);
}

TEST(SharedDescription, EndsWithTheLastFactory) {
    const gcstring text = DescriptionOfTest();
    CNodeMapFactory first(text);
    CNodeMapFactory second(text);
    first.Preprocess();
    second.Preprocess();
    const std::string xml = first.ToXml().c_str();
    first.ReleaseCameraDescriptionFileData();
    EXPECT_EQ(second.ToXml(), xml.c_str());
    EXPECT_EQ(Owners(text), 2);
    second.ReleaseCameraDescriptionFileData();
    EXPECT_EQ(Owners(text), 0);
}

TEST(SharedDescription, IsNeverOneThatFailed) {
    const std::array<std::pair<gcstring, const char*>, 3> faults{{
        {Description("<IntReg Name=\"Reg\"><Address>0</Address></IntReg>"),
         "Error while parsing XML stream"},
        {Description(IntegerXml("A", Element("pIsLocked", "B")) +
                     IntegerXml("B", Element("pIsLocked", "A"))),
         "ERROR : read cycle detected : A -> B -> A"},
        {Description(IntegerXml("A", Element("pIsLocked", "Nowhere"))), "Nowhere"},
    }};
    for (const auto& [text, failure] : faults) {
        std::vector<std::string> failures;
        for (int camera = 0; camera < 2; ++camera) {
            CNodeMapFactory factory(text);
            failures.push_back(
                DescriptionOf<RuntimeException>([&factory] { factory.CreateNodeMap(); }));
            EXPECT_FALSE(factory.IsLoaded());
            EXPECT_FALSE(factory.IsPreprocessed());
            EXPECT_EQ(Owners(text), 0);
        }
        EXPECT_THAT(failures[0], testing::HasSubstr(failure));
        EXPECT_EQ(failures[1], failures[0]);
    }
}

TEST(SharedDescription, HoldsNothingThatAMapWasTold) {
    const gcstring text = Description(
        IntegerXml("HoldsNothingThatAMapWasTold", "",
                   Element("Value", "5") + Element("Min", "0") + Element("Max", "100")));
    const MapOwner first(CNodeMapFactory(text).CreateNodeMap());
    const MapOwner second(CNodeMapFactory(text).CreateNodeMap());
    IInteger& told = IntegerOf(first);
    told.SetValue(60);
    told.ImposeMin(50);
    told.ImposeMax(70);
    told.GetNode()->ImposeAccessMode(RO);
    told.GetNode()->ImposeVisibility(Guru);
    const MapOwner third(CNodeMapFactory(text).CreateNodeMap());
    for (const MapOwner* const map : {&second, &third}) {
        IInteger& other = IntegerOf(*map);
        EXPECT_EQ(other.GetValue(), 5);
        EXPECT_EQ(other.GetMin(), 0);
        EXPECT_EQ(other.GetMax(), 100);
        EXPECT_EQ(other.GetAccessMode(), RW);
        EXPECT_EQ(other.GetNode()->GetVisibility(), Beginner);
    }
    EXPECT_EQ(told.GetValue(), 60);
    EXPECT_EQ(told.GetMin(), 50);
    EXPECT_EQ(told.GetMax(), 70);
    EXPECT_EQ(told.GetAccessMode(), RO);
    EXPECT_EQ(told.GetNode()->GetVisibility(), Guru);
}

TEST(SharedDescription, IsNotOneThatOthersAreInjectedInto) {
    const gcstring text = DescriptionOfTest();
    const MapOwner plain(CNodeMapFactory(text).CreateNodeMap());
    CNodeMapFactory extended(text);
    extended.AddInjectionData(CNodeMapFactory(InjectableDescription("Injected", 3)));
    const MapOwner map(extended.CreateNodeMap());
    EXPECT_EQ(Owners(text), 2);
    EXPECT_EQ(map.ValueOf("Injected"), 3);
    EXPECT_EQ(plain->GetNode("Injected"), nullptr);
}

TEST(SharedDescription, CanBeInjected) {
    const gcstring text = InjectableDescription("CanBeInjected", 1);
    CNodeMapFactory shared(text);
    CNodeMapFactory other(Description("Other", 3));
    other.AddInjectionData(shared);
    const MapOwner plain(CNodeMapFactory(text).CreateNodeMap());
    shared.Preprocess();
    const MapOwner map(other.CreateNodeMap());
    EXPECT_EQ(IntegerOf(map).GetValue(), 1);
    EXPECT_EQ(map.ValueOf("Other"), 3);
    EXPECT_EQ(plain->GetNode("Other"), nullptr);
}

TEST(SharedDescription, IsNotThatOfTheDiskCache) {
    const gcstring text = DescriptionOfTest();
    const ScratchFolder folder;
    const EnvironmentScope cache("GENICAM_CACHE_V3_0", folder.Path());
    const MapOwner unshared(CNodeMapFactory(text, CacheUsage_Automatic).CreateNodeMap());
    const MapOwner fromDisk(CNodeMapFactory(text, CacheUsage_ForceRead).CreateNodeMap());
    EXPECT_EQ(Owners(text), 0);
    const MapOwner shared(CNodeMapFactory(text, CacheUsage_Ignore).CreateNodeMap());
    EXPECT_EQ(Owners(text), 2);
}

TEST(SharedDescription, OfTheFirstThreadIsThatOfAll) {
    const gcstring text = DescriptionOfTest();
    CSharedDescriptions& shared = CSharedDescriptions::Get();
    const auto first = std::make_shared<const CNodeDataMap>();
    const auto second = std::make_shared<const CNodeDataMap>();
    EXPECT_EQ(shared.Enter(text.c_str(), false, first), first);
    EXPECT_EQ(shared.Enter(text.c_str(), false, second), first);
    EXPECT_EQ(second.use_count(), 1);
}

}  // namespace EngineTest
