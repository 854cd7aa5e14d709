// Documents made to exhaust whoever reads them.

#include "ParserFixture.h"

namespace NodeDataTest {
namespace {

using ParserHostile = Parser;

/// A text several times.
std::string Repeat(size_t count, const std::string& text) {
    std::string all;
    all.reserve(count * text.size());
    for (size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

TEST_F(ParserHostile, RefusesEntitiesThatGrowWithoutEnd) {
    std::string types = "<!DOCTYPE RegisterDescription [<!ENTITY e0 \"lollollol\">";
    for (int level = 1; level < 12; ++level) {
        const std::string inner = "&e" + std::to_string(level - 1) + ";";
        types += "<!ENTITY e" + std::to_string(level) + " \"" + Repeat(10, inner) + "\">";
    }
    const std::string message = FailureOfText(
        types + "]>\n" + Describe("<Node Name=\"A\"><ToolTip>&e11;</ToolTip></Node>"));
    EXPECT_THAT(message,
                testing::EndsWith(
                    "'limit on input amplification factor (from DTD and entities) breached'"));
    EXPECT_THAT(message, testing::StartsWith("Error while parsing XML stream at line "));
}

TEST_F(ParserHostile, RefusesAnEntityThatHoldsItself) {
    EXPECT_EQ(FailureOfText("<!DOCTYPE a [<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">]>\n" +
                            Describe("<Node Name=\"A\"><ToolTip>&a;</ToolTip></Node>")),
              ErrorAt(3, 24, "recursive entity reference"));
}

TEST_F(ParserHostile, ReadsNoOtherFile) {
    EXPECT_EQ(FailureOfText("<!DOCTYPE a [<!ENTITY a SYSTEM \"/etc/hostname\">]>\n" +
                            Describe("<Integer Name=\"A\"><Value>1</Value><Unit>&a;</Unit>"
                                     "</Integer>")),
              "");
    EXPECT_THAT(PropertiesOf("A"), ElementsAre("<Value>1</Value>", "<Unit></Unit>"));
}

TEST_F(ParserHostile, RefusesDeepNesting) {
    const std::string message = "elements are nested deeper than 200 levels";
    EXPECT_EQ(FailureOfBody(Repeat(100000, "<Group>")), ErrorAt(2, 199 * 7, message));
}

TEST_F(ParserHostile, RefusesDeepNestingInAnExtension) {
    // The root, the node and the extension are three levels.
    const std::string body = "<Node Name=\"A\">\n<Extension>\n" + Repeat(100000, "<a>");
    EXPECT_EQ(FailureOfBody(body),
              ErrorAt(4, 197 * 3, "elements are nested deeper than 200 levels"));
}

TEST_F(ParserHostile, AcceptsNestingUpToTheLimit) {
    Parse(Repeat(198, "<Group>") + "<Node Name=\"A\"/>" + Repeat(198, "</Group>"));
    EXPECT_TRUE(IsDefined("A"));
}

TEST_F(ParserHostile, KeepsAHugeText) {
    const std::string text = Repeat(20000000, "x");
    Parse("<Node Name=\"A\"><Description>" + text + "</Description></Node>");
    EXPECT_EQ(NodeOf(m_Map, "A").FindProperty(ID::Description_ID)->String().size(), text.size());
}

TEST_F(ParserHostile, RefusesVeryLongNames) {
    const std::string longest(1024, 'n');
    Parse("<Node Name=\"" + longest + "\"/>");
    EXPECT_TRUE(IsDefined(longest.c_str()));
    m_Map.Clear();
    EXPECT_EQ(FailureOfBody("<Node Name=\"" + longest + "n\"/>"),
              ErrorAt(2, 0, "length is greater than maximum allowed"));
    EXPECT_EQ(FailureOfBody("<Node Name=\"A\"><pError>" + longest + "n</pError></Node>"),
              ErrorAt(2, 1048, "length is greater than maximum allowed"));
}

TEST_F(ParserHostile, RefusesStructuresThatRepeatTooMuch) {
    std::string body = "<StructReg>\n" + Repeat(2000, "<Address>0</Address>") + kRegisterRest;
    for (int i = 0; i < 1000; ++i) {
        body += "\n<StructEntry Name=\"E" + std::to_string(i) + "\"><Bit>0</Bit></StructEntry>";
    }
    // Each entry takes the addresses, the length, the access mode and the port:
    // the five hundredth one goes beyond the limit.
    EXPECT_EQ(
        FailureOfBody(body + "</StructReg>"),
        BuilderErrorAt(503, 37, "structures and expressions repeat more than 1000000 properties"));
}

TEST_F(ParserHostile, RefusesStructuresWhosePropertiesAllEntriesHaveThemselves) {
    const std::string invalidator = "<pInvalidator>I</pInvalidator>";
    std::string body =
        "<StructReg><Address>0</Address>" + std::string(kRegisterRest) + Repeat(10000, invalidator);
    for (int i = 0; i < 200; ++i) {
        body += "\n<StructEntry Name=\"E" + std::to_string(i) + "\">" + invalidator +
                "<Bit>0</Bit></StructEntry>";
    }
    EXPECT_EQ(
        FailureOfBody(body + "</StructReg>"),
        BuilderErrorAt(102, 66, "structures and expressions repeat more than 1000000 properties"));
}

TEST_F(ParserHostile, ReadsVeryManyEntriesOfAnEnumeration) {
    constexpr size_t kCount = 200000;
    std::string body = "<Enumeration Name=\"E\">";
    for (size_t i = 0; i < kCount; ++i) {
        body.append("<EnumEntry Name=\"e").append(std::to_string(i));
        body.append("\"><Value>1</Value></EnumEntry>");
    }
    Parse(body + "<Value>0</Value></Enumeration>");
    EXPECT_EQ(CountOf(NodeOf(m_Map, "E"), ID::pEnumEntry_ID), kCount);
}

TEST_F(ParserHostile, RefusesExpressionsThatRepeatTooMuch) {
    std::string body = "<SwissKnife Name=\"K\">";
    for (int i = 0; i < 2000; ++i) {
        const std::string name = "E" + std::to_string(i);
        body.append("\n<Expression Name=\"").append(name).append("\">1</Expression>");
    }
    // Expression n repeats the n before it: 1414 * 1415 / 2 = 1000405.
    EXPECT_EQ(
        FailureOfBody(body + "<Formula>1</Formula></SwissKnife>"),
        BuilderErrorAt(1417, 26, "structures and expressions repeat more than 1000000 properties"));
}

TEST_F(ParserHostile, FailsAtEveryPlaceOfACutDocument) {
    const std::string document = Describe(
        "<StructReg><Address>0</Address><Length>4</Length><AccessMode>RO</AccessMode>"
        "<pPort>P</pPort><StructEntry Name=\"S\"><Bit>1</Bit></StructEntry></StructReg>"
        "<Enumeration Name=\"E\"><EnumEntry Name=\"A\"><Value>1</Value></EnumEntry>"
        "<pValue>S</pValue></Enumeration><IntConverter Name=\"C\"><Constant Name=\"X\">1"
        "</Constant><FormulaTo>X</FormulaTo><FormulaFrom>X</FormulaFrom><pValue>S</pValue>"
        "</IntConverter><Node Name=\"N\"><Extension><a b=\"c\"/></Extension></Node>");
    for (size_t length = 0; length < document.size(); ++length) {
        CNodeDataMap map;
        EXPECT_THROW(CNodeDataMapFactory::ParseXml(
                         &map, std::string_view(document).substr(0, length), false),
                     GenICam_3_0_ORVANE::RuntimeException)
            << document.substr(0, length);
        EXPECT_EQ(map.GetContextNode(), nullptr);
    }
}

}  // namespace
}  // namespace NodeDataTest
