// Settings in files, and registers.

#include <utility>

#include "ToolTest.h"

namespace {

class SettingsToolTest : public ToolTest {
protected:
    SettingsToolTest() { state = (folder / "state").string(); }

    std::string Content() const {
        std::ifstream stream(file);
        return (std::ostringstream() << stream.rdbuf()).str();
    }

    const std::string file = (folder / "camera.txt").string();
    /// The command that reads all ratios, whatever is selected.
    static constexpr const char* kRatios =
        "get 'BalanceRatio[BalanceRatioSelector=Red]' 'BalanceRatio[BalanceRatioSelector=Green]' "
        "'BalanceRatio[BalanceRatioSelector=Blue]'";
};

// save, load

TEST_F(SettingsToolTest, SaveWritesAFileOfThreeParts) {
    ExpectPrints(Virtual("save " + file), "");
    const std::string text = Content();
    EXPECT_TRUE(text.starts_with("FileVersion: 1.0\nDeviceModelName: Virtual-5M-Color\n\n</---"))
        << text.substr(0, 200);
    EXPECT_NE(text.find("\nExposureTime\t10000.0\n"), std::string::npos);
    EXPECT_NE(text.find("Local device features"), std::string::npos);
    EXPECT_NE(text.find("Stream features"), std::string::npos);
}

TEST_F(SettingsToolTest, LoadBringsBackTenFeaturesAndTwoSelectors) {
    Set("Width=640 Height=480 OffsetX=1000 OffsetY=400 BalanceRatioSelector=Red BalanceRatio=1.25 "
        "BalanceRatioSelector=Blue BalanceRatio=1.75 BalanceRatioSelector=Green BalanceRatio=1.5");
    ExpectPrints(Virtual("save " + file), "");
    const ToolRun saved = Virtual("features --json");
    Set("OffsetX=0 OffsetY=0 Width=2448 Height=2048 PixelFormat=Mono8 ReverseX=true "
        "ExposureTime=20000 Gain=3.5 Gamma=2 TestPattern=GreyHorizontalRamp TriggerMode=On "
        "BalanceRatioSelector=Red BalanceRatio=2 BalanceRatioSelector=Green BalanceRatio=3 "
        "BalanceRatioSelector=Blue BalanceRatio=4 LUTIndex=7");
    EXPECT_NE(Virtual("features --json").out, saved.out);
    ExpectPrints(Virtual("load " + file), "");
    EXPECT_EQ(Virtual("features --json").out, saved.out);
    ExpectPrints(Virtual(kRatios), "1.25\n1.5\n1.75\n");
    ExpectPrints(Virtual("load --verify " + file), "");
}

TEST_F(SettingsToolTest, CameraKeepsItsSelectorsFromOneCommandToTheNext) {
    const std::pair<const char*, const char*> ratios[] = {
        {"Red", "1.25"}, {"Green", "1.5"}, {"Blue", "1.75"}};
    for (const auto& [colour, ratio] : ratios) {
        Set(std::string("BalanceRatioSelector ") + colour);
        ExpectPrints(Virtual("get BalanceRatioSelector"), std::string(colour) + "\n");
        Set(std::string("BalanceRatio ") + ratio);
    }
    for (const auto& [colour, ratio] : ratios) {
        Set(std::string("BalanceRatioSelector ") + colour);
        ExpectPrints(Virtual("get BalanceRatio"), std::string(ratio) + "\n");
    }
    ExpectPrints(Virtual(kRatios), "1.25\n1.5\n1.75\n");
}

TEST_F(SettingsToolTest, LoadTellsWhatTheCameraRefusedAndSetsTheRest) {
    ExpectPrints(Virtual("save " + file), "");
    std::string text = Content();
    const std::string line = "ExposureTime\t10000.0\n";
    text.replace(text.find(line), line.size(), "ExposureTime\t30000.0\nNothing\t1\n");
    std::ofstream(file) << text;
    const ToolRun run = Virtual("load " + file);
    ExpectFails(run, "ovtool: can't load settings from " + file +
                         ": Error while writing node: 'Nothing' not found\n");
    ExpectPrints(Virtual("get ExposureTime"), "30000\n");
}

TEST_F(SettingsToolTest, AFileOfAnotherModelIsRefused) {
    ExpectPrints(Virtual("save " + file), "");
    ExpectFails(Virtual("load -c 2 " + file),
                "ovtool: can't load settings from " + file +
                    ": The device model(Virtual-5M-Color) in file is not the same as that in "
                    "the device(Virtual-5M-Mono)\n");
}

TEST_F(SettingsToolTest, AFileThatIsNotThereIsAFailure) {
    ExpectFails(Virtual("load " + file),
                "ovtool: can't load settings from " + file + ": Can't open config file\n");
}

// read, write

TEST_F(SettingsToolTest, ReadPrintsBytesByLines) {
    ExpectPrints(Virtual("read 0x40 20"),
                 "0x00000040  56 69 72 74 75 61 6c 2d 35 4d 2d 43 6f 6c 6f 72\n"
                 "0x00000050  00 00 00 00\n");
    ExpectPrints(Virtual("read 64 0"), "");
    ExpectDocument(Virtual("read --json 0x40 4"),
                   {{"address", 64}, {"size", 4}, {"bytes", "56697274"}});
}

TEST_F(SettingsToolTest, ReadTakesFourBytesByDefault) {
    ExpectPrints(Virtual("read 0x40"), "0x00000040  56 69 72 74\n");
}

TEST_F(SettingsToolTest, WriteChangesARegister) {
    ExpectPrints(Virtual("write 0x310 80020000"), "");
    ExpectPrints(Virtual("get Width"), "640\n");
}

TEST_F(SettingsToolTest, WriteTakesWholeBytesInHexadecimal) {
    for (const std::string bytes : {"8", "800", "0x80", "8g"}) {
        ExpectFails(Virtual("write 0x310 " + bytes),
                    "ovtool: can't write at 0x00000310: '" + bytes + "' is not hexadecimal\n",
                    Exit::kUsage);
    }
}

TEST_F(SettingsToolTest, RegistersThatAreNotThereHaveTheProducersFailure) {
    ExpectFails(Virtual("read 0xF0000000"),
                "ovtool: can't read at 0xf0000000: No register at 0xF0000000\n");
    ExpectFails(Virtual("write 0xF0000000 00"),
                "ovtool: can't write at 0xf0000000: No register at 0xF0000000\n");
}

}  // namespace
