// Whole documents: where they come from, which version they are in, how they
// fail.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

using GenICam_3_0_ORVANE::RuntimeException;

class ParserDocument : public Parser {
protected:
    /// A file that goes away with the test.
    std::string WriteFile(const std::string& content) {
        m_File = std::filesystem::path(testing::TempDir()) /
                 ("parser_document_" + std::to_string(::getpid()) + ".xml");
        std::ofstream(m_File, std::ios::binary) << content;
        return m_File;
    }
    ~ParserDocument() override {
        std::error_code ignored;
        std::filesystem::remove(m_File, ignored);
    }

private:
    std::filesystem::path m_File;
};

TEST_F(ParserDocument, ReadsAnEmptyDescription) {
    Parse("");
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription"));
    EXPECT_EQ(NodeOf(m_Map, "_RegisterDescription").GetNodeType(),
              CNodeData::RegisterDescription_ID);
}

TEST_F(ParserDocument, TurnsTheRootsAttributesIntoPropertiesInTheirOrder) {
    Parse("");
    EXPECT_THAT(PropertiesOf("_RegisterDescription"),
                ElementsAre("<ModelName>M</ModelName>", "<VendorName>V</VendorName>",
                            "<ToolTip>Tip</ToolTip>", "<StandardNameSpace>GEV</StandardNameSpace>",
                            "<SchemaMajorVersion>1</SchemaMajorVersion>",
                            "<SchemaMinorVersion>1</SchemaMinorVersion>",
                            "<SchemaSubMinorVersion>2</SchemaSubMinorVersion>",
                            "<MajorVersion>3</MajorVersion>", "<MinorVersion>4</MinorVersion>",
                            "<SubMinorVersion>5</SubMinorVersion>",
                            "<ProductGuid>11111111-2222-3333-4444-555555555555</ProductGuid>",
                            "<VersionGuid>66666666-7777-8888-9999-AAAAAAAAaaaa</VersionGuid>"));
}

TEST_F(ParserDocument, KeepsTheNameOfTheFirstNodeBeforeItsAttributes) {
    Parse("");
    EXPECT_EQ(NodeOf(m_Map, "_RegisterDescription").GetProperties().front().ToString(tssValue),
              "_RegisterDescription");
}

TEST_F(ParserDocument, GivesTheSameDataForBothVersionsOfTheSchema) {
    const std::string body =
        "<Category Name=\"Root\"><ToolTip>All</ToolTip><pFeature>A</pFeature></Category>"
        "<Integer Name=\"A\"><Value>5</Value></Integer>";
    const auto dump = [&](int version) {
        CNodeDataMap map;
        const std::string text = DescribeWith(RootAttributes(), body, version);
        CNodeDataMapFactory::ParseXml(&map, text, false);
        std::ostringstream stream;
        CNodeDataMap::Print(stream, map, tssText);
        return stream.str();
    };
    EXPECT_EQ(dump(0), dump(1));
    EXPECT_THAT(dump(0), testing::HasSubstr("pFeature = 2 (A)"));
}

TEST_F(ParserDocument, ForgetsTheFirstRunsContentBeforeTheSecondOne) {
    AddNode(m_Map, CNodeData::Integer_ID, "Stale");
    Parse("<Node Name=\"A\"></Node>", 0);
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "A"));
}

TEST_F(ParserDocument, KeepsWhatAMapHeldBefore) {
    AddNode(m_Map, CNodeData::Integer_ID, "Older");
    Parse("<Node Name=\"A\"></Node>");
    EXPECT_THAT(NodeNames(), ElementsAre("Older", "_RegisterDescription", "A"));
}

TEST_F(ParserDocument, RefusesASecondDescriptionInOneMap) {
    Parse("");
    EXPECT_EQ(FailureOfBody(""),
              BuilderErrorAt(2, 0, "Found a duplicate node'_RegisterDescription'."));
}

TEST_F(ParserDocument, AcceptsAnyPrefixForTheNamespace) {
    ParseText("<g:RegisterDescription xmlns:g=\"http://www.genicam.org/GenApi/Version_1_1\" " +
              RootAttributes() + "><g:Node Name=\"A\"/></g:RegisterDescription>");
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserDocument, IgnoresAttributesOfOtherNamespaces) {
    ParseText(DescribeWith(
        RootAttributes() +
            " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:schemaLocation=\"a b\"",
        "<Node Name=\"A\" xsi:type=\"x\"/>"));
    EXPECT_THAT(PropertiesOf("A"), IsEmpty());
}

TEST_F(ParserDocument, SkipsCommentsAndInstructions) {
    Parse("<!-- c --><?pi x?><Integer Name=\"A\"><!-- d --><Value>1<!-- e -->2</Value></Integer>");
    EXPECT_THAT(PropertiesOf("A"), ElementsAre("<Value>12</Value>"));
}

TEST_F(ParserDocument, ReadsOtherEncodings) {
    const std::string text = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" +
                             Describe("<Node Name=\"A\"><ToolTip>\xB5m</ToolTip></Node>");
    ParseText(text);
    EXPECT_THAT(PropertiesOf("A"), ElementsAre("<ToolTip>\xC2\xB5m</ToolTip>"));
}

TEST_F(ParserDocument, LeavesDanglingReferencesToLaterSteps) {
    Parse("<Category Name=\"Root\"><pFeature>Nowhere</pFeature></Category>");
    EXPECT_THAT(NodeNames(), ElementsAre("_RegisterDescription", "Root", "?Nowhere"));
}

// Sources

TEST_F(ParserDocument, ReadsABlockOfMemoryWithoutATerminator) {
    const std::string text = Describe("<Node Name=\"A\"/>");
    const std::vector<char> bytes(text.begin(), text.end());
    ParseBlock(ContentType_Xml, bytes.data(), bytes.size());
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserDocument, ReadsATextUpToItsZero) {
    std::string text = Describe("<Node Name=\"A\"/>");
    text += std::string(1, '\0') + "<";
    ParseText(text);
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserDocument, ReadsAFile) {
    const std::string name = WriteFile(Describe("<Node Name=\"A\"/>"));
    ParseFile(ContentType_Xml, name);
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserDocument, DoesNotExpandVariablesInTheNameOfAPlainFile) {
    EXPECT_EQ(FailureText([&] { ParseFile(ContentType_Xml, "$(HOME)/none.xml"); }),
              "Failed to open xml file $(HOME)/none.xml.");
}

TEST_F(ParserDocument, RefusesUnknownContentTypes) {
    const auto unknown = static_cast<EContentType_t>(2);
    EXPECT_EQ(FailureText([&] { ParseFile(unknown, "a.xml"); }), "ParseXmlBuffer not implemented.");
    EXPECT_EQ(FailureText([&] { ParseBlock(unknown, "", 0); }), "ParseXmlBuffer not implemented.");
}

// Failures

TEST_F(ParserDocument, TellsOfAnEmptyTextWithoutASecondRun) {
    AddNode(m_Map, CNodeData::Integer_ID, "Older");
    EXPECT_EQ(FailureOfText(""), ErrorAt(1, 0, "no element found"));
    // A second run would have emptied the map.
    EXPECT_TRUE(IsDefined("Older"));
}

TEST_F(ParserDocument, TellsOfAnEmptyFile) {
    const std::string name = WriteFile("");
    EXPECT_EQ(FailureText([&] { ParseFile(ContentType_Xml, name); }),
              ErrorAt(1, 0, "no element found"));
}

TEST_F(ParserDocument, TellsOfAnEmptyBlock) {
    EXPECT_EQ(FailureText([&] { ParseBlock(ContentType_Xml, nullptr, 0); }),
              ErrorAt(1, 0, "no element found"));
}

TEST_F(ParserDocument, TellsOfBrokenXmlWithoutASecondRun) {
    AddNode(m_Map, CNodeData::Integer_ID, "Older");
    EXPECT_EQ(FailureOfBody("<Node Name=\"A\">\n  </Nod>"), ErrorAt(3, 4, "mismatched tag"));
    EXPECT_TRUE(IsDefined("Older"));
}

TEST_F(ParserDocument, TellsOfATruncatedDocument) {
    EXPECT_EQ(FailureOfText(Describe("").substr(0, 60)), ErrorAt(1, 0, "unclosed token"));
}

TEST_F(ParserDocument, TellsOfBytesThatAreNoText) {
    EXPECT_EQ(FailureOfBody("<Node Name=\"A\"><ToolTip>\xFF</ToolTip></Node>"),
              ErrorAt(2, 24, "not well-formed (invalid token)"));
}

TEST_F(ParserDocument, FailsAtTheRootForAnElementOutOfPlaceAnywhere) {
    EXPECT_EQ(FailureOfBody("\n<Integer Name=\"A\"><Foo/></Integer>"), OutOfPlace());
    EXPECT_THAT(NodeNames(), IsEmpty());
}

TEST_F(ParserDocument, FailsAtTheElementInADocumentOfTheOlderVersion) {
    EXPECT_EQ(FailureOfBody("\n<Integer Name=\"A\"><Foo/></Integer>", 0),
              ErrorAt(3, 18, "unexpected element encountered"));
}

TEST_F(ParserDocument, RefusesOtherRootsAndNamespaces) {
    const std::vector<std::string> documents{
        "<RegisterDescription/>", "<Foo xmlns=\"http://www.genicam.org/GenApi/Version_1_1\"/>",
        "<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_2\"/>",
        "<RegisterDescription xmlns=\"Version_1_1\"/>"};
    for (const std::string& document : documents) {
        EXPECT_EQ(FailureOfText(document), OutOfPlace()) << document;
    }
}

TEST_F(ParserDocument, RefusesAnElementOfAnotherNamespace) {
    EXPECT_EQ(FailureOfBody("<Node Name=\"A\" xmlns=\"http://other\"/>", 0),
              ErrorAt(2, 0, "unexpected element encountered"));
}

TEST_F(ParserDocument, LeavesNoContextNodeBehindAFailure) {
    EXPECT_EQ(FailureOfBody("<IntReg Name=\"R\"><Visibility>Foo</Visibility></IntReg>"),
              ErrorAt(2, 32, "value is not in enumeration"));
    EXPECT_EQ(m_Map.GetContextNode(), nullptr);
    m_Map.Clear();
    Parse("<Node Name=\"A\"/>");
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserDocument, GivesTheSourceOfTheFirstException) {
    try {
        Parse("<Node Name=\"A\"/><Node Name=\"A\"/>");
        FAIL() << "no exception";
    } catch (const RuntimeException& error) {
        EXPECT_THAT(error.GetSourceFileName(), testing::EndsWith("NodeDataMap.cpp"));
        EXPECT_THAT(error.what(), testing::HasSubstr(" : RuntimeException thrown (file "));
        EXPECT_EQ(error.GetDescription(), BuilderErrorAt(2, 32, "Found a duplicate node'A'."));
    }
}

}  // namespace
}  // namespace NodeDataTest
