// Descriptions made of others: parts, transformed ones, those of live nodes.

#include "FactorySupport.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/IFloat.h"

namespace EngineTest {

namespace {

/// A category "Group" with two features, of which one computes with the other,
/// and a node that it does not need.
gcstring Grouped() {
    return Description(
        "<Category Name=\"Root\"><pFeature>Group</pFeature></Category>"
        "<Category Name=\"Group\"><pFeature>Sum</pFeature><pFeature>One</pFeature></Category>"
        "<IntSwissKnife Name=\"Sum\"><pVariable Name=\"A\">One</pVariable><Formula>A+1</Formula>"
        "</IntSwissKnife>" +
        IntegerXml("One") + IntegerXml("Apart"));
}

}  // namespace

TEST(Subtree, HoldsANodeAndAllItNeeds) {
    CNodeMapFactory factory(Grouped());
    CNodeMapFactory subtree = factory.ExtractSubtree("Sum", false);
    EXPECT_TRUE(factory.IsPreprocessed());
    EXPECT_TRUE(subtree.IsPreprocessed());
    EXPECT_TRUE(subtree.IsCameraDescriptionFileDataReleased());
    const MapOwner map(subtree.CreateNodeMap("Device", false));
    EXPECT_EQ(map->GetNumNodes(), 2U);
    EXPECT_EQ(map.ValueOf("Sum"), 2);
    EXPECT_FALSE(map->GetNode("Sum")->IsFeature());
}

TEST(Subtree, MayBecomeARoot) {
    CNodeMapFactory factory(Grouped());
    CNodeMapFactory subtree = factory.ExtractSubtree("Group", true);
    const MapOwner map(subtree.CreateNodeMap());
    EXPECT_NE(map->GetNode("Root"), nullptr);
    EXPECT_EQ(map->GetNode("Group"), nullptr);
    EXPECT_EQ(map.ValueOf("Sum"), 2);
    EXPECT_TRUE(map->GetNode("Sum")->IsFeature());
    // The description that it was taken from is as it was.
    EXPECT_EQ(MapOwner(factory.CreateNodeMap())->GetNumNodes(), 6U);
}

TEST(Subtree, CanBeTakenFromASubtree) {
    CNodeMapFactory factory(Grouped());
    CNodeMapFactory subtree = factory.ExtractSubtree("Group", false).ExtractSubtree("One", false);
    EXPECT_EQ(MapOwner(subtree.CreateNodeMap())->GetNumNodes(), 1U);
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { subtree.CreateNodeMap(); }),
              "Cannot preprocess, the camera description file data has already been released.");
}

TEST(Subtree, IsRefusedWhereALinkNeedsANodeThatIsNotInIt) {
    CNodeMapFactory factory(Description(
        "<IntReg Name=\"Reg\"><pIndex pOffset=\"Offset\">Index</pIndex><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>" +
        IntegerXml("Index") + IntegerXml("Offset")));
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { factory.ExtractSubtree("Reg", false); }),
              "TargetNodeID != NodeID_t()");
    // The description itself is as it was.
    EXPECT_EQ(MapOwner(factory.CreateNodeMap())->GetNumNodes(), 4U);
}

TEST(Subtree, NeedsADescriptionAndANodeInIt) {
    CNodeMapFactory nothing;
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { nothing.ExtractSubtree("A", false); }),
              "Cannot extract subtree, no camera description file data has been provided to the "
              "node map factory.");
    CNodeMapFactory factory(Grouped());
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { factory.ExtractSubtree("B", false); }),
              "Node 'B' not found");
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { factory.ExtractSubtree("Sum", true); }),
              "Only category nodes can be renamed to \"Root\"");
    factory.ReleaseCameraDescriptionFileData();
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { factory.ExtractSubtree("Sum", false); }),
              "Cannot preprocess, the camera description file data has already been released.");
}

TEST(NodeMapFactory, DescribesLiveNodes) {
    CNodeMapFactory original(
        Description("<SwissKnife Name=\"Sum\"><Visibility>Guru</Visibility>"
                    "<pVariable Name=\"A\">Inner</pVariable><Formula>A<![CDATA[<]]>3</Formula>"
                    "<Unit>us</Unit></SwissKnife>"
                    "<IntSwissKnife Name=\"Inner\"><Formula>1+1</Formula></IntSwissKnife>"));
    const MapOwner map(original.CreateNodeMap());
    CNodeMapFactory described =
        CNodeMapFactory::CreateNodeDataFromNodeMap(map->GetNode("Sum")->GetNodeMap());
    EXPECT_TRUE(described.IsPreprocessed());
    EXPECT_FALSE(described.IsEmpty());
    const MapOwner copy(described.CreateNodeMap());
    EXPECT_EQ(copy->GetNumNodes(), 3U);
    INode& sum = *copy->GetNode("Sum");
    EXPECT_EQ(dynamic_cast<IFloat&>(sum).GetValue(), 1.0);
    EXPECT_EQ(dynamic_cast<IFloat&>(sum).GetUnit(), "us");
    EXPECT_EQ(sum.GetVisibility(), Guru);
    auto& info = dynamic_cast<IDeviceInfo&>(*sum.GetNodeMap());
    EXPECT_EQ(info.GetModelName(), "Model");
}

// Style sheets.

namespace {

/// A tool in the place of the real one, which need not be installed.
class StyleSheet : public testing::Test {
protected:
    static std::string Apply(const gcstring& description, const std::string& sheet) {
        CNodeMapFactory factory(description);
        CNodeMapFactory styled = factory.ApplyStyleSheet(sheet.c_str());
        return std::to_string(MapOwner(styled.CreateNodeMap()).ValueOf("A"));
    }
    void Install(const std::string& body) {
        const std::string tool = m_Folder.Write("xsltproc", "#!/bin/sh\n" + body);
        fs::permissions(tool, fs::perms::owner_all);
    }

    ScratchFolder m_Folder;
    EnvironmentScope m_Path{"PATH", m_Folder.Path() + ":/usr/bin:/bin"};
    std::string m_Sheet = m_Folder.Write("sheet.xsl", "s/>1</>42</");
};

}  // namespace

TEST_F(StyleSheet, TransformsTheDescription) {
    Install("[ \"$1\" = --version ] || { [ \"$1\" = -o ] && sed -f \"$3\" \"$4\" > \"$2\"; }");
    EXPECT_EQ(Apply(Description("A", 1), m_Sheet), "42");
}

TEST_F(StyleSheet, TransformsDescriptionsOfAllSources) {
    Install("[ \"$1\" = --version ] || sed -f \"$3\" \"$4\" > \"$2\"");
    const gcstring description = Description("A", 1);
    CNodeMapFactory memory(ContentType_Xml, description.c_str(), description.size());
    CNodeMapFactory file(ContentType_Xml,
                         m_Folder.Write("camera.xml", description.c_str()).c_str());
    for (CNodeMapFactory* const factory : {&memory, &file}) {
        CNodeMapFactory styled = factory->ApplyStyleSheet(m_Sheet.c_str());
        EXPECT_EQ(MapOwner(styled.CreateNodeMap()).ValueOf("A"), 42);
        // The description itself is as it was.
        EXPECT_EQ(MapOwner(factory->CreateNodeMap()).ValueOf("A"), 1);
    }
}

TEST_F(StyleSheet, TellsWhenTheToolFails) {
    Install("[ \"$1\" = --version ]");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { Apply(Description("A", 1), m_Sheet); }),
              "There was an error when running xsltproc or xsltproc cannot be found. (code = "
              "256)");
}

TEST_F(StyleSheet, TellsWhenThereIsNoPlaceForItsFiles) {
    CNodeMapFactory factory(Grouped());
    const auto failure = [&](const char* folder) {
        const EnvironmentScope place("TMPDIR", folder);
        return DescriptionOf<RuntimeException>([&] { factory.ApplyStyleSheet(m_Sheet.c_str()); });
    };
    EXPECT_THAT(failure("/proc"), testing::StartsWith("Could not create a folder '/proc/"));
    EXPECT_THAT(failure("/proc/version"),
                testing::StartsWith("There is no folder for temporary files ("));
}

TEST_F(StyleSheet, TellsWhenTheToolWroteNothing) {
    Install("exit 0");
    EXPECT_THAT(DescriptionOf<RuntimeException>([&] { Apply(Description("A", 1), m_Sheet); }),
                testing::MatchesRegex("Could not read from '.*' \\(No such file or directory\\)"));
}

TEST_F(StyleSheet, NeedsADescriptionAndAStyleSheet) {
    CNodeMapFactory nothing;
    const std::string noDescription =
        "Cannot apply stylesheet, no camera description file data has been provided to the node "
        "map factory.";
    EXPECT_EQ(
        DescriptionOf<LogicalErrorException>([&] { nothing.ApplyStyleSheet(m_Sheet.c_str()); }),
        noDescription);
    CNodeMapFactory factory(Description("A", 1));
    for (const char* const sheet : {"", "/nowhere/sheet.xsl"}) {
        EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { factory.ApplyStyleSheet(sheet); }),
                  "Invalid StyleSheetFileName passed.");
    }
    factory.ReleaseCameraDescriptionFileData();
    EXPECT_EQ(
        DescriptionOf<LogicalErrorException>([&] { factory.ApplyStyleSheet(m_Sheet.c_str()); }),
        noDescription);
}

}  // namespace EngineTest
