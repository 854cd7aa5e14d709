// How the tool fails: its exit codes, its texts, and what it leaves behind.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "ToolTest.h"

namespace {

using testing::HasSubstr;

class FailureTest : public ToolTest {
protected:
    /// A small virtual camera that keeps what is set.
    void Remember(const std::string& settings = "") {
        state = (folder / "state").string();
        Set("Width=64 Height=32 " + settings);
    }
    std::string File(const std::string& name) const { return (folder / name).string(); }
};

constexpr const char* kCodes =
    "Exit codes: 0 done, 1 failed, 2 usage, 3 no camera or producer, 4 access denied,\n"
    "5 timed out, 6 incomplete data, 7 camera lost, 130 interrupted";
constexpr const char* kLost =
    "ovtool: the camera is lost\n"
    "Check cable and power, then look at the cameras: ovtool list\n";
constexpr const char* kCheckLink =
    "Check the cable, the packet size and other traffic on the link.\n";

// Exit codes.

TEST_F(FailureTest, HelpHasTheExitCodes) {
    for (const std::string command : {"--help", "stream --help", "set --help"}) {
        const ToolRun run = Virtual(command);
        EXPECT_THAT(run.out, HasSubstr(kCodes)) << command;
        EXPECT_EQ(run.status, 0) << command;
    }
}

TEST_F(FailureTest, AWrongCommandLineIsUsage) {
    for (const std::string command : {"", "nap", "list --nap", "get", "set", "grab -n x",
                                      "stream -s 0", "write 0x310", "convert x.raw"}) {
        const ToolRun run = Virtual(command);
        EXPECT_EQ(run.status, Exit::kUsage) << command;
        EXPECT_EQ(run.out, "") << command;
        EXPECT_NE(run.err, "") << command;
    }
}

TEST_F(FailureTest, AnUnknownFeatureIsNamed) {
    const std::string text =
        "ovtool: there is no feature 'Nothing'; all that a camera has: ovtool features\n";
    ExpectFails(Virtual("get Width Nothing --json"), text, Exit::kUsage);
    ExpectFails(Virtual("set Width=640 Nothing=1"), text, Exit::kUsage);
}

// No camera.

TEST_F(FailureTest, NoProducerSaysWhereItWasLookedFor) {
    ExpectFails(Run(OV_TOOL_BARE, "list --json"),
                "ovtool: can't start the library: Not found TL library\n" +
                    Searched(OV_TOOL_BARE, "not there", "not there", "not there"),
                Exit::kNoCamera);
}

TEST_F(FailureTest, AProducerThatDoesNotLoadSaysWhy) {
    const ToolRun run = Run(OV_TOOL_BROKEN, "list");
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("\n  KwTL.cti: can't load " OV_TOOL_BROKEN
                                   "/KwTL.cti: " OV_TOOL_BROKEN "/KwTL.cti: file too short\n"));
    EXPECT_EQ(run.status, Exit::kNoCamera);
}

TEST_F(FailureTest, AnEmptyListSaysWhatWasSearched) {
    cameras = 0;
    const ToolRun run = Virtual("list");
    EXPECT_EQ(run.out, "0 cameras\n");
    EXPECT_EQ(run.err, "ovtool: no camera was found\n" + SearchedVirtual());
    EXPECT_EQ(run.status, Exit::kNoCamera);
}

TEST_F(FailureTest, ACameraThatIsNotThereSaysHowManyAre) {
    for (const std::string command : {"info", "get Width", "set Width 64", "features", "stream"}) {
        ExpectFails(Virtual(command + " -c 3"),
                    "ovtool: there is no camera 3; 2 were found\n" + SearchedVirtual(),
                    Exit::kNoCamera);
    }
    cameras = 1;
    ExpectFails(Virtual("get Width -c Nobody"),
                "ovtool: there is no camera Nobody; 1 was found\n" + SearchedVirtual(),
                Exit::kNoCamera);
}

// Texts.

TEST_F(FailureTest, TextsHaveNoInternalsUnlessAskedFor) {
    const std::string text =
        "ovtool: can't find LineSource: There is no feature \"LineSource\"\n"
        "The camera's features with their limits: ovtool features\n";
    ExpectFails(Virtual("get LineSource"), text);
    const ToolRun run = Virtual("get LineSource --verbose");
    EXPECT_THAT(run.err, testing::StartsWith(text + "The library says: {-12}{"));
    EXPECT_THAT(run.err, testing::EndsWith("]}{There is no feature \"LineSource\"}\n"));
    EXPECT_EQ(run.status, Exit::kFailed);
}

TEST_F(FailureTest, AValueOutOfRangeHasTheLimits) {
    ExpectFails(Virtual("set Width 5"),
                "ovtool: can't set Width: Value = 5 must be equal or greater than Min = 16.\n"
                "Width takes 16 to 2448 by 4\n");
    ExpectFails(Virtual("set ExposureTime 1"),
                "ovtool: can't set ExposureTime: Value 1.000000 must be greater than or equal "
                "20.000000.\n"
                "ExposureTime takes 20 to 1e+06 by 0.5 us\n");
    const std::string entries =
        "Mono8 BayerRG8 BayerRG10 BayerRG10Packed BayerRG10p BayerRG12 BayerRG12Packed BayerRG12p "
        "BayerRG16\n";
    for (const std::string value : {"Mono9", "5"}) {
        ExpectFails(
            Virtual("set PixelFormat " + value),
            "ovtool: can't set PixelFormat: it has no entry '" + value + "', but: " + entries);
    }
}

TEST_F(FailureTest, WhatMayNotBeWrittenIsAccessDenied) {
    const ToolRun run = Virtual("set DeviceModelName x");
    EXPECT_THAT(run.err, testing::StartsWith("ovtool: can't set DeviceModelName: Node is not "
                                             "writable.\nAnother program may hold the camera, or"));
    EXPECT_EQ(run.status, Exit::kAccessDenied);
}

TEST_F(FailureTest, ACameraThatAnotherProgramHoldsIsAccessDenied) {
    for (const std::string code : {"-1005", "-1004"}) {
        steering = "FailCall IFOpenDevice 0 " + code;
        const ToolRun run = Gev("set Width 32");
        EXPECT_THAT(run.err, testing::StartsWith("ovtool: can't open camera 1: ")) << code;
        EXPECT_THAT(run.err, testing::EndsWith("\nClose that program, or only look at the camera: "
                                               "ovtool get, features, read\n"));
        EXPECT_EQ(run.status, Exit::kAccessDenied) << code;
    }
}

TEST_F(FailureTest, TerminalEscapesOfACameraAreMadeVisible) {
    steering =
        "SetDeviceText 0 0 Vendor a\x1b[31mb\nSetDeviceText 0 0 UserID \xC2\x9B"
        "31m\x07";
    EXPECT_EQ(
        Gev("list").out,
        "1  a\\x1b[31mb TestCamera  serial SN0_0  user ID \"\\xc2\\x9b31m\\x07\"  GigE Vision  "
        "Test Camera 0_0\n1 camera\n");
    EXPECT_THAT(Gev("info").out, HasSubstr("\n  vendor               a\\x1b[31mb\n"));
    const ToolRun document = Gev("list --json");
    EXPECT_THAT(document.out, HasSubstr("\"vendor\": \"a\\u001b[31mb\""));
    EXPECT_THAT(document.out, HasSubstr("\"userId\": \"\\u009b31m\\u0007\""));
    const Json camera = Json::parse(document.out)["cameras"][0];
    EXPECT_EQ(camera["vendor"], "a\x1b[31mb");
    EXPECT_EQ(camera["userId"],
              "\xC2\x9B"
              "31m\x07");
}

TEST_F(FailureTest, TerminalEscapesInValuesAreMadeVisible) {
    Remember("DeviceUserID=\"$(printf 'x\\033]0;y\\007')\"");
    EXPECT_EQ(Virtual("get DeviceUserID").out, "x\\x1b]0;y\\x07\n");
    EXPECT_THAT(Virtual("features").out, HasSubstr(" x\\x1b]0;y\\x07\n"));
    EXPECT_EQ(Virtual("get DeviceUserID --json").out,
              "{\n  \"DeviceUserID\": \"x\\u001b]0;y\\u0007\"\n}\n");
}

// Frames that don't come.

TEST_F(FailureTest, FramesThatDoNotComeAreATimeOut) {
    for (const std::string command : {"stream", "chunks", "grab"}) {
        const ToolRun run = Gev(command + " -t 10");
        EXPECT_EQ(run.out, command == "grab" ? "0 frames, 0 lost\n" : "");
        EXPECT_EQ(run.err,
                  "ovtool: the camera sent no frame for 10 ms\n"
                  "Look at the exposure time, the frame rate and the link: ovtool features\n");
        EXPECT_EQ(run.status, Exit::kTimedOut);
    }
}

TEST_F(FailureTest, ATriggerThatIsMissingIsNamed) {
    Remember("TriggerMode=On TriggerSource=Software");
    ExpectFails(Virtual("stream -t 10"),
                "ovtool: the camera sent no frame for 10 ms\n"
                "It waits for a trigger: send one, or let frames flow by: ovtool set TriggerMode "
                "Off\n",
                Exit::kTimedOut);
}

TEST_F(FailureTest, IncompleteFramesAreAFailure) {
    steering = "SetFreeRunning 0 0 1\nSetFrame 0 0 Incomplete 1";
    const std::string text = std::string("ovtool: frame 0 is incomplete\n") + kCheckLink;
    const ToolRun grab = Gev("grab -o " + folder.string());
    EXPECT_EQ(grab.out, "0 frames, 0 lost\n");
    EXPECT_EQ(grab.err, text);
    EXPECT_EQ(grab.status, Exit::kIncomplete);
    EXPECT_FALSE(std::filesystem::exists(folder / "frame-0001.png"));
    const ToolRun stream = Gev("stream -s 0.1 --json");
    const Json result = Json::parse(stream.out);
    EXPECT_GT(result["frames"], 0);
    EXPECT_EQ(result["incomplete"], result["frames"]);
    EXPECT_EQ(stream.err,
              "ovtool: " + result["incomplete"].dump() + " frames are incomplete\n" + kCheckLink);
    EXPECT_EQ(stream.status, Exit::kIncomplete);
}

TEST_F(FailureTest, IncompleteFramesHaveNoChunks) {
    steering = "SetFreeRunning 0 0 1\nSetFrame 0 0 Incomplete 1";
    const ToolRun run = Gev("chunks");
    EXPECT_EQ(run.status, Exit::kIncomplete) << run.err;
}

TEST_F(FailureTest, ALostCameraEndsAStream) {
    Remember();
    ASSERT_EQ(Virtual("write 0xA28 03000000").err, "");
    const ToolRun run = Virtual("stream -s 600 --json");
    EXPECT_EQ(run.err, kLost);
    EXPECT_EQ(run.status, Exit::kLost);
    EXPECT_EQ(Json::parse(run.out)["frames"], 2) << "after the first";
}

TEST_F(FailureTest, ALostCameraEndsAGrabAfterTheFramesThatCame) {
    Remember();
    ASSERT_EQ(Virtual("write 0xA28 03000000").err, "");
    const ToolRun run = Virtual("grab -n 100 -t 600000 --raw --no-png -o " + folder.string());
    EXPECT_EQ(run.err, kLost);
    EXPECT_EQ(run.status, Exit::kLost);
    EXPECT_THAT(run.out, testing::EndsWith("\n3 frames, 0 lost\n"));
    EXPECT_EQ(std::filesystem::file_size(folder / "frame-0003.raw"), 2048U);
}

TEST_F(FailureTest, ALostCameraEndsChunks) {
    Remember();
    ASSERT_EQ(Virtual("write 0xA28 03000000").err, "");
    const ToolRun run = Virtual("chunks -n 100 -t 600000 --json");
    EXPECT_EQ(run.err, kLost);
    EXPECT_EQ(run.status, Exit::kLost);
    EXPECT_EQ(Json::parse(run.out)["frames"].size(), 3U);
}

// Features that can't be read.

/// The gain's register lies where the camera has none.
class UnreadableFeature : public FailureTest {
protected:
    UnreadableFeature() {
        std::ifstream in(OV_TEST_DESCRIPTION);
        std::string text = (std::ostringstream() << in.rdbuf()).str();
        const std::string address = "<Address>0x0434</Address>";
        text.replace(text.find(address), address.size(), "<Address>0x90000000</Address>");
        std::ofstream(File("camera.xml")) << text;
        steering = "SetDescription Remote TestCamera.xml " + File("camera.xml");
    }
    static constexpr const char* kReason = "can't read Gain: No register at 0x90000000";
};

TEST_F(UnreadableFeature, HasItsLineAmongTheOthers) {
    const ToolRun run = Gev("features");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("\nGain                                     float    r  -  (" +
                                   std::string(kReason) + ")\n"));
    EXPECT_THAT(run.out, HasSubstr("\nWidth  "));
}

TEST_F(UnreadableFeature, IsNullInDocuments) {
    const ToolRun run = Gev("features --json");
    EXPECT_EQ(run.status, 0);
    const Json features = Json::parse(run.out)["features"];
    const auto gain = std::find_if(features.begin(), features.end(),
                                   [](const Json& row) { return row["name"] == "Gain"; });
    ASSERT_NE(gain, features.end());
    EXPECT_EQ((*gain)["value"], nullptr);
    EXPECT_EQ((*gain)["failure"], kReason);
}

TEST_F(UnreadableFeature, DoesNotEndTheOthersOfAGet) {
    const std::string failure = std::string("ovtool: ") + kReason + "\n";
    const ToolRun lines = Gev("get Width Gain Height");
    EXPECT_EQ(lines.out, "64\n-\n48\n");
    EXPECT_EQ(lines.err, failure);
    EXPECT_EQ(lines.status, Exit::kFailed);
    const ToolRun document = Gev("get --json Width Gain Height");
    EXPECT_EQ(Json::parse(document.out), Json({{"Width", 64}, {"Gain", nullptr}, {"Height", 48}}));
    EXPECT_EQ(document.status, Exit::kFailed);
    ExpectFails(Gev("get Gain"), failure);
}

// Outputs that can't be written.

TEST_F(FailureTest, AFullDiskIsAFailure) {
    for (const std::string command : {"list", "list --json", "features", "get Width", "info"}) {
        ExpectFails(Virtual(command + " > /dev/full"),
                    "ovtool: can't print: No space left on device\n");
    }
}

TEST_F(FailureTest, AClosedOutputIsAFailure) {
    ExpectFails(Virtual("features >&-"), "ovtool: can't print: Bad file descriptor\n");
}

TEST_F(FailureTest, AClosedOutputDoesNotGoIntoAnotherFile) {
    Remember();
    ExpectFails(Virtual("grab --raw --no-png -o " + folder.string() + " >&-"),
                "ovtool: can't print: Bad file descriptor\n");
    EXPECT_EQ(std::filesystem::file_size(folder / "frame-0001.raw"), 2048U);
}

TEST_F(FailureTest, AReaderThatEndsEndsTheCommandAndLeavesTheCameraAsItWas) {
    Remember();
    const auto run = Start(OV_TOOL_VIRTUAL, "chunks -n 1000000");
    EXPECT_EQ(run->ReadLine(), "frame 0\n");
    run->CloseOutput();
    const ToolRun ended = run->Wait();
    EXPECT_EQ(ended.err, "ovtool: can't print: Broken pipe\n");
    EXPECT_EQ(ended.status, Exit::kFailed);
    EXPECT_EQ(Virtual("get ChunkModeActive").out, "false\n");
}

TEST_F(FailureTest, AFileThatIsCutIsRemoved) {
    Remember("Width=640 Height=480");
    // So many blocks of 512 bytes at most: less than a frame.
    prelude = "trap '' XFSZ; ulimit -f 8;";
    for (const std::string kind : {"--raw --no-png", "--png"}) {
        const ToolRun run = Virtual("grab " + kind + " -o " + folder.string());
        const std::string name = kind == "--png" ? "frame-0001.png" : "frame-0001.raw";
        EXPECT_EQ(run.err, "ovtool: can't write " + File(name) + ": File too large\n");
        EXPECT_EQ(run.status, Exit::kFailed);
        EXPECT_FALSE(std::filesystem::exists(folder / name));
    }
}

TEST_F(FailureTest, ADeviceThatIsFullStays) {
    Remember();
    for (const std::string name : {"frame-0001.png", "frame-0001.raw"}) {
        std::filesystem::create_symlink("/dev/full", folder / name);
        const ToolRun run =
            Virtual("grab " + std::string(name.ends_with("raw") ? "--raw --no-png" : "") + " -o " +
                    folder.string());
        EXPECT_EQ(run.err, "ovtool: can't write " + File(name) + ": No space left on device\n");
        EXPECT_EQ(run.status, Exit::kFailed);
        EXPECT_TRUE(std::filesystem::is_symlink(folder / name));
    }
}

}  // namespace
