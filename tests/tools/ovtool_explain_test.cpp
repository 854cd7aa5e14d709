// Why features are as they are, by small descriptions with the structures of real ones.

#include <gmock/gmock.h>

#include <fstream>

#include "ToolTest.h"
#include "support/FeatureCalls.h"

namespace {

using testing::HasSubstr;

class ExplainTest : public ToolTest {
protected:
    /// A camera with that description; all of its memory is 0.
    void Describe(const std::string& nodes) {
        const std::string file = (folder / "camera.xml").string();
        std::ofstream(file) << DescribeCamera(nodes);
        steering = "SetDescription Remote Own.xml " + file;
    }
    Json Explain(const std::string& feature) const {
        const ToolRun run = Gev("explain " + feature + " --json");
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
        return Json::parse(run.out)["features"][0];
    }
    void ExpectOne(const std::string& access, const std::string& node, const std::string& effect,
                   const std::string& reason) const {
        const Json feature = Explain("F");
        EXPECT_EQ(feature["access"], access);
        EXPECT_EQ(feature["causes"],
                  Json::array({{{"effect", effect}, {"node", node}, {"reason", reason}}}));
    }
    static std::string Integer(const std::string& name, const std::string& content) {
        return DescriptionXml::NodeXml("Integer", name, content);
    }
    static std::string Value(const std::string& name, int value) {
        return Integer(name, DescriptionXml::Element("Value", std::to_string(value)));
    }
};

TEST_F(ExplainTest, AFeatureThatCanBeReadAndSetHasNoCause) {
    Describe(Value("F", 1));
    EXPECT_EQ(Explain("F")["causes"], Json::array());
}

TEST_F(ExplainTest, ALockIsNamedWithItsValue) {
    Describe(Integer("F", "<pIsLocked>Locked</pIsLocked><Value>1</Value>") + Value("Locked", 1));
    ExpectOne("read only", "F", "locked", "Locked (pIsLocked) is 1");
}

TEST_F(ExplainTest, ALockByAFormulaIsNamedWithItsFormula) {
    Describe(Integer("F", "<pIsLocked>Locked</pIsLocked><Value>1</Value>") +
             "<IntSwissKnife Name=\"Locked\"><pVariable Name=\"MODE\">Mode</pVariable>"
             "<Formula>MODE = 2</Formula></IntSwissKnife>" +
             Value("Mode", 2));
    ExpectOne("read only", "F", "locked", "Locked (pIsLocked) is 1");
    const Json lock = Explain("F")["sources"][0];
    EXPECT_EQ(lock["role"], "pIsLocked");
    EXPECT_EQ(lock["formula"], "MODE = 2");
    EXPECT_EQ(lock["sources"][0]["role"], "MODE");
    EXPECT_EQ(lock["sources"][0]["name"], "Mode");
    EXPECT_EQ(lock["sources"][0]["value"], 2);
}

TEST_F(ExplainTest, WhatTheCameraLacksIsNotImplemented) {
    Describe(Integer("F", "<pIsImplemented>Has</pIsImplemented><Value>1</Value>") +
             DescriptionXml::RegXml{.name = "Has", .address = 0x9000}());
    ExpectOne("not implemented", "F", "not implemented", "Has (pIsImplemented) is 0");
    EXPECT_EQ(Explain("F")["sources"][0]["register"],
              Json({{"address", 0x9000}, {"length", 4}, {"bytes", "00000000"}}));
}

TEST_F(ExplainTest, WhatIsOffIsNotAvailable) {
    Describe(Integer("F", "<pIsAvailable>On</pIsAvailable><Value>1</Value>") + Value("On", 0));
    ExpectOne("not available", "F", "not available", "On (pIsAvailable) is 0");
}

TEST_F(ExplainTest, AConditionOfWhatItIsMadeOfCounts) {
    Describe(Integer("F", "<pValue>Raw</pValue>") +
             Integer("Raw", "<pIsLocked>Locked</pIsLocked><Value>1</Value>") + Value("Locked", 1));
    ExpectOne("read only", "Raw", "locked", "Locked (pIsLocked) is 1");
}

TEST_F(ExplainTest, ARegisterThatIsReadOnlyIsNamed) {
    Describe(Integer("F", "<pValue>Raw</pValue>") +
             DescriptionXml::RegXml{.name = "Raw", .address = 0x9000, .access = "RO"}());
    ExpectOne("read only", "Raw", "read only", "the description says so: AccessMode is RO");
}

TEST_F(ExplainTest, AnImposedAccessIsNamed) {
    Describe(Integer("F", "<ImposedAccessMode>RO</ImposedAccessMode><Value>1</Value>"));
    ExpectOne("read only", "F", "read only", "the description says so: ImposedAccessMode is RO");
}

TEST_F(ExplainTest, WhatIsComputedIsReadOnly) {
    Describe("<IntSwissKnife Name=\"F\"><Formula>1 + 1</Formula></IntSwissKnife>");
    ExpectOne("read only", "F", "read only", "it is computed");
}

TEST_F(ExplainTest, AChunkNeedsAFrame) {
    Describe(DescriptionXml::ChunkByteXml("F", "A1", "No"));
    const Json causes = Explain("F")["causes"];
    EXPECT_EQ(causes.back(), Json({{"effect", "not available"},
                                   {"node", "FPort"},
                                   {"reason", "no frame is attached that has the chunk A1"}}));
}

TEST_F(ExplainTest, AnEntryThatCannotBeChosenHasItsCause) {
    Describe(
        "<Enumeration Name=\"F\"><EnumEntry Name=\"A\"><Value>0</Value></EnumEntry>"
        "<EnumEntry Name=\"B\"><pIsAvailable>On</pIsAvailable><Value>1</Value></EnumEntry>"
        "<Value>0</Value></Enumeration>" +
        Value("On", 0));
    const Json feature = Explain("F");
    EXPECT_EQ(feature["causes"], Json::array());
    ASSERT_EQ(feature["entries"].size(), 1U);
    EXPECT_EQ(feature["entries"][0]["name"], "B");
    EXPECT_EQ(feature["entries"][0]["causes"][0]["reason"], "On (pIsAvailable) is 0");
}

TEST_F(ExplainTest, NodesThatUseOneAnotherAreExplainedOnce) {
    Describe(Integer("F",
                     "<pIsLocked>Locked</pIsLocked><pValue>Raw</pValue>"
                     "<pMax>Locked</pMax>") +
             Value("Raw", 1) + Integer("Locked", "<pValue>Raw</pValue>"));
    const ToolRun run = Gev("explain F");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("F: integer, read only, for beginner users\n"
                                   "  F: locked: Locked (pIsLocked) is 1\n"));
    EXPECT_THAT(run.out, HasSubstr("  pMax: Locked\n"));
}

TEST_F(ExplainTest, ANameThatIsNotThereHasThoseThatAreLikeIt) {
    ExpectFails(Virtual("explain Widht"),
                "ovtool: there is no feature 'Widht'; like it: \"Width\"; all that a camera has: "
                "ovtool features\n",
                Exit::kUsage);
}

}  // namespace
