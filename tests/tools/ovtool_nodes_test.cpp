// Features that have no identifier, trees of features, and descriptions.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class NodesTest : public ToolTest {};

TEST_F(NodesTest, AFeatureWithoutAnIdentifierIsReadAndSet) {
    const ToolRun run = Virtual("features --json");
    ASSERT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("\"FileSelector\""));
    ExpectPrints(Virtual("get FileSelector FileOpenMode"), "UserFile\nRead\n");
    // The camera forgets it when it is closed, as after every command.
    ExpectPrints(Virtual("set FileOpenMode=Write"), "FileOpenMode = Read\n");
    EXPECT_THAT(Virtual("set FileOpenMode=Paint").err,
                StartsWith("ovtool: can't set FileOpenMode: it has no entry 'Paint', but: Read "));
    ExpectPrints(Virtual("get Std::Width Width"), "2448\n2448\n");
}

TEST_F(NodesTest, ANameThatIsNotThereHasThoseThatAreLikeIt) {
    ExpectFails(Virtual("get Widht"),
                "ovtool: there is no feature 'Widht'; like it: \"Width\"; all that a camera has: "
                "ovtool features\n",
                Exit::kUsage);
    ExpectFails(Virtual("set Gain=2 FileOpenMod=Write"),
                "ovtool: there is no feature 'FileOpenMod'; like it: \"FileOpenMode\"; all that a "
                "camera has: ovtool features\n",
                Exit::kUsage);
}

TEST_F(NodesTest, AFeatureWithoutAnIdentifierNeedsAValueUnlessItIsACommand) {
    ExpectFails(Virtual("set Gain=1 FileOpenMode"),
                "ovtool: 'FileOpenMode' has no value; give it one: FileOpenMode=VALUE\n",
                Exit::kUsage);
}

TEST_F(NodesTest, FeaturesAreChosenByPatternAndVisibility) {
    const ToolRun part = Virtual("features exposuretime");
    EXPECT_THAT(part.out, HasSubstr("ExposureTime    "));
    EXPECT_THAT(part.out, Not(HasSubstr("Width")));
    const ToolRun whole = Virtual("features 'Width'* --visibility beginner");
    EXPECT_THAT(whole.out, StartsWith("Width    "));
    EXPECT_THAT(whole.out, Not(HasSubstr("WidthMax")));
    EXPECT_THAT(Virtual("features WidthMax --visibility expert").out, StartsWith("WidthMax"));
}

TEST_F(NodesTest, TheTreeHasCategoriesBeforeTheirContent) {
    const ToolRun run = Virtual("features --tree Width --visibility beginner");
    EXPECT_THAT(run.out, StartsWith("Root\n  ImageFormatControl\n    Width "));
    const Json tree = Json::parse(Virtual("features --tree Gain --json").out)["tree"];
    EXPECT_EQ(tree["name"], "Root");
    EXPECT_EQ(tree["content"][0]["name"], "AnalogControl");
}

TEST_F(NodesTest, AFeatureIsDescribed) {
    const ToolRun run = Virtual("describe ExposureTime --json");
    EXPECT_EQ(run.status, 0);
    const Json feature = Json::parse(run.out)["features"][0];
    EXPECT_EQ(feature["name"], "ExposureTime");
    EXPECT_EQ(feature["type"], "float");
    EXPECT_EQ(feature["access"], "read and write");
    EXPECT_EQ(feature["visibility"], "beginner");
    EXPECT_EQ(feature["value"], 10000.0);
    EXPECT_EQ(feature["unit"], "us");
    EXPECT_EQ(feature["categories"], Json({"AcquisitionControl"}));
    const ToolRun text = Virtual("describe ExposureTime");
    EXPECT_THAT(text.out, HasSubstr("\ntype         float\n"));
    EXPECT_THAT(text.out, HasSubstr("\ncategories   AcquisitionControl\n"));
}

TEST_F(NodesTest, TheDescriptionIsPrintedAsItIs) {
    const ToolRun run = Virtual("xml");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, StartsWith("<?xml"));
    EXPECT_THAT(run.out, HasSubstr("</RegisterDescription>"));
    EXPECT_THAT(Virtual("xml --module stream").out, Not(HasSubstr("ExposureTime")));
}

TEST_F(NodesTest, AFileGoesToTheCameraAndBack) {
    state = (folder / "state").string();
    const std::string content = "The quick brown fox\n";
    std::ofstream(folder / "out") << content;
    ExpectPrints(Virtual("file put UserFile '" + (folder / "out").string() + "'"), "");
    ExpectPrints(Virtual("file get FactoryCalibration '" + (folder / "in").string() + "'"), "");
    EXPECT_GT(std::filesystem::file_size(folder / "in"), 0U);
    ExpectFails(
        Virtual("file put UserFile '" + (folder / "none").string() + "'"),
        "ovtool: can't read " + (folder / "none").string() + ": No such file or directory\n");
}

}  // namespace
