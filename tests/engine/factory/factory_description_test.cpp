// The way of a description through the factory, up to live nodes.

#include "FactorySupport.h"
#include "factory/NodeCreation.h"

namespace EngineTest {

namespace {

/// Every operation that needs a description, by what its failure begins with.
struct FactoryCall {
    const char* name;
    const char* attempt;
    void (*run)(CNodeMapFactory& factory);
};
const FactoryCall kFactoryCalls[] = {
    {"LoadAndInject", "load and inject", [](auto& factory) { factory.LoadAndInject(); }},
    {"Preprocess", "preprocess", [](auto& factory) { factory.Preprocess(); }},
    {"CreateNodeMap", "preprocess", [](auto& factory) { factory.CreateNodeMap(); }},
    {"GetNodeStatistics", "preprocess",
     [](auto& factory) {
         CNodeMapFactory::NodeStatistics_t statistics;
         factory.GetNodeStatistics(statistics);
     }},
    {"ToXml", "preprocess", [](auto& factory) { factory.ToXml(); }},
};

class FactoryOperation : public testing::TestWithParam<FactoryCall> {};

}  // namespace

// States.

TEST_P(FactoryOperation, FailsWithoutADescription) {
    CNodeMapFactory factory;
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { GetParam().run(factory); }),
              std::string("Cannot ") + GetParam().attempt +
                  ", no camera description file data has been provided to the node map factory.");
}

TEST_P(FactoryOperation, FailsOnceTheDescriptionIsReleased) {
    const std::string text = std::string("Cannot ") + GetParam().attempt +
                             ", the camera description file data has already been released.";
    CNodeMapFactory given(Description("A", 1));
    given.ReleaseCameraDescriptionFileData();
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { GetParam().run(given); }), text);
    CNodeMapFactory loaded(Description("A", 1));
    loaded.LoadAndInject();
    loaded.ReleaseCameraDescriptionFileData();
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { GetParam().run(loaded); }), text);
    CNodeMapFactory used(Description("A", 1));
    const MapOwner map(used.CreateNodeMap());
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { GetParam().run(used); }), text);
}

INSTANTIATE_TEST_SUITE_P(All, FactoryOperation, testing::ValuesIn(kFactoryCalls),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(NodeMapFactory, GoesThroughItsStatesInOrder) {
    CNodeMapFactory factory(Description("A", 1));
    const auto states = [&factory] {
        return std::vector<bool>{factory.IsEmpty(), factory.IsLoaded(), factory.IsPreprocessed(),
                                 factory.IsCameraDescriptionFileDataReleased()};
    };
    EXPECT_EQ(states(), (std::vector<bool>{false, false, false, false}));
    factory.LoadAndInject();
    factory.LoadAndInject();
    EXPECT_EQ(states(), (std::vector<bool>{false, true, false, false}));
    factory.Preprocess();
    factory.Preprocess();
    EXPECT_EQ(states(), (std::vector<bool>{false, true, true, false}));
    factory.ReleaseCameraDescriptionFileData();
    EXPECT_EQ(states(), (std::vector<bool>{true, false, false, true}));
    EXPECT_TRUE(CNodeMapFactory().IsEmpty());
}

TEST(NodeMapFactory, IsSharedByItsCopies) {
    const CNodeMapFactory first(Description("A", 1));
    CNodeMapFactory second(first);
    second.LoadAndInject();
    EXPECT_TRUE(first.IsLoaded());
    CNodeMapFactory third;
    third = second;
    third.ReleaseCameraDescriptionFileData();
    EXPECT_TRUE(first.IsCameraDescriptionFileDataReleased());
}

TEST(NodeMapFactory, RefusesEmptySources) {
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>(
                  [] { CNodeMapFactory(ContentType_Xml, gcstring()); }),
              "The camera description file name passed to the node map factory must not be "
              "empty.");
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([] { CNodeMapFactory{gcstring()}; }),
              "The camera description file data passed as string to the node map factory must "
              "not be empty.");
}

TEST(NodeMapFactory, FailsEachTimeInTheSameWay) {
    CNodeMapFactory broken(Description("<IntReg Name=\"Reg\"><Address>0</Address></IntReg>"));
    const auto load = [&broken] {
        return DescriptionOf<RuntimeException>([&] { broken.LoadAndInject(); });
    };
    const std::string failure = load();
    EXPECT_THAT(failure, testing::HasSubstr("Error while parsing XML stream"));
    EXPECT_EQ(load(), failure);
    EXPECT_FALSE(broken.IsLoaded());
    CNodeMapFactory cycle(Description(IntegerXml("A", Element("pIsLocked", "B")) +
                                      IntegerXml("B", Element("pIsLocked", "A"))));
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { cycle.Preprocess(); }),
                  "ERROR : read cycle detected : A -> B -> A");
        EXPECT_FALSE(cycle.IsPreprocessed());
    }
}

TEST(NodeMapFactory, SupportsTwoVersionsOfTheSchema) {
    gcstring_vector list(1, "other");
    CNodeMapFactory::GetSupportedSchemaVersions(list);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0], "1.0");
    EXPECT_EQ(list[1], "1.1");
}

// Sources.

TEST(NodeMapFactory, ReadsMemoryAndFiles) {
    const gcstring description = Description("A", 7);
    CNodeMapFactory memory(ContentType_Xml, description.c_str(), description.size());
    EXPECT_EQ(MapOwner(memory.CreateNodeMap()).ValueOf("A"), 7);
    const ScratchFolder folder;
    const gcstring name = folder.Write("camera.xml", description.c_str()).c_str();
    CNodeMapFactory file(ContentType_Xml, name);
    EXPECT_EQ(MapOwner(file.CreateNodeMap()).ValueOf("A"), 7);
}

TEST(NodeMapFactory, TellsWhichFileItCannotOpen) {
    CNodeMapFactory factory(ContentType_Xml, "/nowhere/camera.xml");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.LoadAndInject(); }),
              "Failed to open xml file /nowhere/camera.xml.");
}

TEST(NodeMapFactory, LeavesOutTextsForReadersWhenAskedTo) {
    const gcstring description =
        Description(IntegerXml("A", "<ToolTip>Words</ToolTip><DisplayName>Name</DisplayName>"));
    CNodeMapFactory full(description);
    EXPECT_EQ(MapOwner(full.CreateNodeMap())->GetNode("A")->GetToolTip(), "Words");
    CNodeMapFactory bare(description, CacheUsage_Ignore, true);
    EXPECT_EQ(MapOwner(bare.CreateNodeMap())->GetNode("A")->GetToolTip(), "");
}

// The cache.

TEST(NodeMapFactory, NeedsAFolderToBeForcedToUseTheCache) {
    const EnvironmentScope noFolder("GENICAM_CACHE_V3_0", "");
    unsetenv("GENICAM_CACHE_V3_0");
    CNodeMapFactory reading(Description("A", 1), CacheUsage_ForceRead);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { reading.Preprocess(); }),
              "Forced read from cache failed.");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { reading.ExtractSubtree("A", false); }),
              "Forced read from cache failed.");
    CNodeMapFactory writing(Description("A", 1), CacheUsage_ForceWrite);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { writing.CreateNodeMap(); }),
              "Forced write to cache failed.");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { writing.ExtractSubtree("A", false); }),
              "Forced write to cache failed.");
    CNodeMapFactory automatic(Description("A", 1), CacheUsage_Automatic);
    EXPECT_EQ(MapOwner(automatic.CreateNodeMap()).ValueOf("A"), 1);
}

TEST(NodeMapFactory, LeavesTheCacheAloneUnlessAskedToUseIt) {
    const ScratchFolder folder;
    const EnvironmentScope cache("GENICAM_CACHE_V3_0", folder.Path());
    CNodeMapFactory factory(Description("A", 1));
    EXPECT_EQ(MapOwner(factory.CreateNodeMap()).ValueOf("A"), 1);
    CNodeMapFactory ignoring(Description("A", 1), CacheUsage_Ignore);
    ignoring.ExtractSubtree("A", false);
    EXPECT_TRUE(folder.IsEmpty());
}

// Injection.

TEST(Injection, MergesDescriptionsInOrder) {
    CNodeMapFactory factory(Description("A", 1));
    factory.AddInjectionData(CNodeMapFactory(Description("B", 2)));
    factory.AddInjectionData(CNodeMapFactory(
        Description("<Integer Name=\"B\" MergePriority=\"1\"><Value>3</Value></Integer>")));
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.LoadAndInject(); }),
              "Merge conflict with node 'Device'");
}

TEST(Injection, MergesDescriptionsOverOnePort) {
    const auto onPort = [](const std::string& body) {
        return Description(body + "<Port Name=\"Device\" MergePriority=\"-1\"/>");
    };
    const std::string replacing =
        "<Integer Name=\"B\" MergePriority=\"1\"><Value>3</Value></Integer>";
    CNodeMapFactory factory(Description("A", 1));
    factory.AddInjectionData(CNodeMapFactory(onPort(IntegerXml("B"))));
    factory.AddInjectionData(CNodeMapFactory(onPort(replacing)));
    const MapOwner map(factory.CreateNodeMap());
    EXPECT_EQ(map.ValueOf("A"), 1);
    EXPECT_EQ(map.ValueOf("B"), 3);
}

TEST(Injection, RefusesWhatIsPreprocessed) {
    CNodeMapFactory factory(Description("A", 1));
    CNodeMapFactory loaded(Description("B", 1));
    loaded.LoadAndInject();
    factory.AddInjectionData(loaded);
    loaded.Preprocess();
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.AddInjectionData(loaded); }),
              "Injected camera description file data must not be preprocessed.");
}

/// Has two nodes of which one depends on the other, and one that selects it.
gcstring InjectableDescription() {
    return Description(IntegerXml("B") + IntegerXml("C", "", Element("pValue", "B")) +
                       IntegerXml("S", "", "<Value>1</Value>" + Element("pSelected", "B")) +
                       "<Port Name=\"Device\" MergePriority=\"-1\"/>");
}

/// What a description that takes in another one comes to.
gcstring Merged(CNodeMapFactory other, bool preprocessFirst) {
    CNodeMapFactory factory(Description("A", 1));
    factory.AddInjectionData(other);
    if (preprocessFirst) {
        other.Preprocess();
    }
    factory.Preprocess();
    return factory.ToString();
}

TEST(Injection, MergesWhatWasPreprocessedLaterAsItWasGiven) {
    const gcstring description = InjectableDescription();
    EXPECT_EQ(Merged(CNodeMapFactory(description), true),
              Merged(CNodeMapFactory(description), false));
}

TEST(Injection, MergesWhatWasPreprocessedLaterWithACacheToo) {
    const ScratchFolder folder;
    const EnvironmentScope cache("GENICAM_CACHE_V3_0", folder.Path());
    const gcstring description = InjectableDescription();
    const gcstring expected = Merged(CNodeMapFactory(description), false);
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(Merged(CNodeMapFactory(description, CacheUsage_Automatic), true), expected);
    }
    EXPECT_EQ(DescriptionOf<RuntimeException>(
                  [&] { Merged(CNodeMapFactory(description, CacheUsage_ForceRead), true); }),
              "Injected camera description file data must not be preprocessed.");
}

TEST(Injection, CompletesAReferenceWithoutAMergePriority) {
    CNodeMapFactory factory(Description(IntegerXml("A", "", Element("pValue", "B"))));
    factory.AddInjectionData(CNodeMapFactory(InjectableDescription()));
    EXPECT_EQ(MapOwner(factory.CreateNodeMap()).ValueOf("A"),
              MapOwner(CNodeMapFactory(InjectableDescription()).CreateNodeMap()).ValueOf("B"));
}

TEST(Injection, RefusesWhatIsNotComplete) {
    CNodeMapFactory factory(Description("A", 1));
    factory.AddInjectionData(
        CNodeMapFactory(Description(IntegerXml("B", "", Element("pValue", "Missing")))));
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.LoadAndInject(); }),
                  "Fatal error : Dangling node reference 'Missing'");
    }
}

TEST(Injection, NeedsADescription) {
    CNodeMapFactory factory(Description("A", 1));
    factory.AddInjectionData(CNodeMapFactory());
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { factory.Preprocess(); }),
              "Cannot load and inject, no camera description file data has been provided to the "
              "node map factory.");
}

TEST(Injection, IsReleasedWithItsFactory) {
    CNodeMapFactory factory(Description("A", 1));
    const CNodeMapFactory other(Description("B", 1));
    factory.AddInjectionData(other);
    factory.ReleaseCameraDescriptionFileData();
    EXPECT_TRUE(other.IsCameraDescriptionFileDataReleased());
}

// Live nodes.

TEST(CreatedNodeMap, IsNamedDeviceUnlessGivenAName) {
    CNodeMapFactory factory(Description("A", 1));
    EXPECT_EQ(MapOwner(factory.CreateNodeMap("Left", false))->GetDeviceName(), "Left");
    const MapOwner map(factory.CreateNodeMap("", false));
    EXPECT_EQ(map->GetDeviceName(), "Device");
    EXPECT_EQ(map->GetNode("A")->GetDeviceName(), "Device");
}

TEST(CreatedNodeMap, CanBeMadeTwiceOfADescriptionThatIsKept) {
    CNodeMapFactory factory(Description("A", 5));
    const MapOwner first(factory.CreateNodeMap("First", false));
    const MapOwner second(factory.CreateNodeMap("Second", true));
    EXPECT_EQ(first.ValueOf("A"), 5);
    EXPECT_EQ(second.ValueOf("A"), 5);
    EXPECT_TRUE(factory.IsCameraDescriptionFileDataReleased());
}

TEST(CreatedNodeMap, SharesALockThatItIsGiven) {
    CLock lock;
    CNodeMapFactory factory(Description("A", 1));
    const MapOwner map(factory.CreateNodeMap(lock, "Device", true));
    EXPECT_EQ(&map->GetLock(), &lock);
}

TEST(CreatedNodeMap, MayBeEmpty) {
    const MapOwner map(CNodeMapFactory::CreateEmptyNodeMap());
    EXPECT_EQ(map->GetNumNodes(), 0U);
    EXPECT_EQ(map->GetNode("Root"), nullptr);
    EXPECT_EQ(map->GetDeviceName(), "Device");
    node_vector nodes;
    map->GetNodes(nodes);
    EXPECT_EQ(nodes.size(), 0U);
}

TEST(CreatedNodeMap, LinksNodesThatAreDescribedLater) {
    CNodeMapFactory factory(Description(IntegerXml("First", "", Element("pValue", "Last")) +
                                        IntegerXml("Last", "", Element("Value", "9"))));
    EXPECT_EQ(MapOwner(factory.CreateNodeMap()).ValueOf("First"), 9);
}

TEST(CreatedNodeMap, HasNodesOfTheirTypes) {
    const struct {
        CNodeData::ENodeType_t type;
        EInterfaceType interface;
    } rows[] = {
        {CNodeData::Node_ID, intfIBase},
        {CNodeData::Category_ID, intfICategory},
        {CNodeData::Integer_ID, intfIInteger},
        {CNodeData::Enumeration_ID, intfIEnumeration},
        {CNodeData::EnumEntry_ID, intfIEnumEntry},
        {CNodeData::MaskedIntReg_ID, intfIInteger},
        {CNodeData::Register_ID, intfIRegister},
        {CNodeData::IntReg_ID, intfIInteger},
        {CNodeData::Float_ID, intfIFloat},
        {CNodeData::FloatReg_ID, intfIFloat},
        {CNodeData::SwissKnife_ID, intfIFloat},
        {CNodeData::IntSwissKnife_ID, intfIInteger},
        {CNodeData::Port_ID, intfIPort},
        {CNodeData::String_ID, intfIString},
        {CNodeData::StringReg_ID, intfIString},
        {CNodeData::Boolean_ID, intfIBoolean},
        {CNodeData::Command_ID, intfICommand},
        {CNodeData::Converter_ID, intfIFloat},
        {CNodeData::IntConverter_ID, intfIInteger},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CreateNode(row.type)->InternalGetPrincipalInterfaceType(), row.interface)
            << row.type;
    }
}

TEST(CreatedNodeMap, HasNoNodesOfUnknownTypes) {
    for (const auto type :
         {CNodeData::StructReg_ID, CNodeData::RegisterDescription_ID, CNodeData::_NotImpl_ID}) {
        EXPECT_EQ(DescriptionOf<RuntimeException>([type] { CreateNode(type); }),
                  "Fatal error : attempt to create unknown node type");
    }
}

// What it tells of a description.

TEST(NodeMapFactory, CountsThePartsOfItsDescription) {
    CNodeMapFactory factory(Description(IntegerXml("A", "", Element("pValue", "B")) +
                                        IntegerXml("B", "<ToolTip>Words</ToolTip>")));
    CNodeMapFactory::NodeStatistics_t statistics;
    factory.GetNodeStatistics(statistics);
    EXPECT_TRUE(factory.IsPreprocessed());
    EXPECT_EQ(statistics.NumNodes, 4U);  // the two, the port and the root element
    EXPECT_GE(statistics.NumLinks, 2U);  // at least the value and who depends on it
    EXPECT_GT(statistics.NumProperties, statistics.NumLinks);
    EXPECT_GE(statistics.NumStrings, 5U);
}

TEST(NodeMapFactory, PrintsItsDescription) {
    CNodeMapFactory factory(Description("A", 1));
    EXPECT_THAT(std::string(factory.ToXml()),
                testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" "
                                    "?>\n<RegisterDescription"));
    EXPECT_THAT(std::string(factory.ToXml()), testing::HasSubstr("<Integer Name=\"A\""));
    EXPECT_THAT(std::string(factory.ToString()), testing::HasSubstr("Integer::A\n  NodeID = 1\n"));
}

TEST(NodeMapFactoryDeathTest, PrintsNoDumpBeforeItIsPreprocessed) {
    const CNodeMapFactory factory(Description("A", 1));
    EXPECT_DEATH(factory.ToString(),
                 "IsPreprocessed\\(\\) && \"NodeMapFactory must be preprocessed before calling "
                 "this function\"");
}

}  // namespace EngineTest
