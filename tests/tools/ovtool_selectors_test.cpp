// Features set in one go, and those that a selector chooses.

#include <gmock/gmock.h>

#include <string>

#include "ToolTest.h"

namespace {

class SetTest : public ToolTest {
protected:
    SetTest() { state = (folder / "state").string(); }
};

TEST_F(SetTest, PrintsWhatTheCameraMadeOfTheValue) {
    ExpectPrints(Virtual("set ExposureTime 20000"), "ExposureTime = 20000\n");
    ExpectPrints(Virtual("set ExposureTime 20000.3"), "ExposureTime = 20000.5, not 20000.3\n");
    ExpectPrints(Virtual("get ExposureTime"), "20000.5\n");
    ExpectDocument(Virtual("set ExposureTime 20000.3 --json"), {{"ExposureTime", 20000.5}});
}

TEST_F(SetTest, TakesOnePairOrManyInTheirOrder) {
    ExpectPrints(Virtual("set Width 640"), "Width = 640\n");
    ExpectPrints(Virtual("set OffsetX=64 Width=1280 PixelFormat=Mono8 TriggerMode=On"),
                 "OffsetX = 64\nWidth = 1280\nPixelFormat = Mono8\nTriggerMode = On\n");
    ExpectPrints(Virtual("get Width OffsetX PixelFormat TriggerMode"), "1280\n64\nMono8\nOn\n");
}

TEST_F(SetTest, RunsCommandsAmongValues) {
    ExpectPrints(
        Virtual("set UserSetSelector=UserSet1 Width=640 UserSetSave Width=320 UserSetLoad"),
        "UserSetSelector = UserSet1\nWidth = 640\nUserSetSave done\nWidth = 640, not "
        "320\nUserSetLoad done\n");
    ExpectPrints(Virtual("set UserSetLoad"), "UserSetLoad done\n");
}

TEST_F(SetTest, AValueMayHoldTheSignsOfAnAssignment) {
    ExpectPrints(Virtual("set DeviceUserID 'a=[b]'"), "DeviceUserID = a=[b]\n");
    ExpectPrints(Virtual("set DeviceUserID='c=[d]' Gain=1"), "DeviceUserID = c=[d]\nGain = 1\n");
}

TEST_F(SetTest, StopsAtTheFirstThatFailsAndSaysWhatIsSet) {
    const ToolRun run = Virtual("set Gain=2 Width=5 ExposureTime=50");
    EXPECT_EQ(run.out, "Gain = 2\n");
    EXPECT_THAT(run.err, testing::StartsWith("ovtool: can't set Width: "));
    EXPECT_EQ(run.status, Exit::kFailed);
    ExpectPrints(Virtual("get Gain ExposureTime"), "2\n10000\n");
}

TEST_F(SetTest, NothingIsSetWhenTheCommandLineIsWrong) {
    ExpectFails(Virtual("set Gain=2 Width"),
                "ovtool: 'Width' has no value; give it one: Width=VALUE\n", Exit::kUsage);
    ExpectFails(Virtual("set Gain=2 Gain[GainSelector]=3"),
                "ovtool: 'Gain[GainSelector]' is no feature; one with a selector is written as in: "
                "Gain[GainSelector=AnalogAll]\n",
                Exit::kUsage);
    ExpectPrints(Virtual("get Gain"), "0\n");
}

// Selectors.

TEST_F(SetTest, SelectorsInOneGoChooseWhatFollows) {
    ExpectPrints(
        Virtual("set BalanceRatioSelector=Blue BalanceRatio=1.5 BalanceRatioSelector=Green "
                "BalanceRatio=1.25"),
        "BalanceRatioSelector = Blue\nBalanceRatio = 1.5\nBalanceRatioSelector = Green\n"
        "BalanceRatio = 1.25\n");
    ExpectPrints(Virtual("get BalanceRatioSelector BalanceRatio"), "Green\n1.25\n");
    ExpectPrints(Virtual("set BalanceRatioSelector Blue"), "BalanceRatioSelector = Blue\n");
    ExpectPrints(Virtual("get BalanceRatio"), "1.5\n");
}

TEST_F(SetTest, ASelectorInBracketsIsPutBack) {
    ExpectPrints(Virtual("set 'BalanceRatio[BalanceRatioSelector=Blue]=1.5' "
                         "'BalanceRatio[BalanceRatioSelector=Green]=1.25' BalanceRatio=2"),
                 "BalanceRatio[BalanceRatioSelector=Blue] = 1.5\n"
                 "BalanceRatio[BalanceRatioSelector=Green] = 1.25\nBalanceRatio = 2\n");
    ExpectPrints(Virtual("get BalanceRatioSelector BalanceRatio"), "Red\n2\n");
    ExpectPrints(Virtual("get 'BalanceRatio[BalanceRatioSelector=Blue]' "
                         "'BalanceRatio[BalanceRatioSelector=Green]' BalanceRatio"),
                 "1.5\n1.25\n2\n");
    ExpectPrints(Virtual("get BalanceRatioSelector"), "Red\n");
}

TEST_F(SetTest, ASelectorInBracketsIsPutBackAfterAFailure) {
    const ToolRun run = Virtual("set 'BalanceRatio[BalanceRatioSelector=Blue]=99'");
    EXPECT_THAT(run.err, testing::HasSubstr("\nBalanceRatio takes 0 to "));
    ExpectPrints(Virtual("get BalanceRatioSelector"), "Red\n");
    const ToolRun entry = Virtual("get 'BalanceRatio[BalanceRatioSelector=Infrared]'");
    EXPECT_EQ(entry.err,
              "ovtool: can't set BalanceRatioSelector: it has no entry 'Infrared', but: Red Green "
              "Blue\n");
}

TEST_F(SetTest, ASelectorOfOneEntryNeedsNoWrite) {
    ExpectPrints(Virtual("set 'Gain[GainSelector=AnalogAll]=3'"),
                 "Gain[GainSelector=AnalogAll] = 3\n");
    ExpectDocument(Virtual("get --json 'Gain[GainSelector=AnalogAll]' Width"),
                   {{"Gain[GainSelector=AnalogAll]", 3.0}, {"Width", 2448}});
}

}  // namespace
