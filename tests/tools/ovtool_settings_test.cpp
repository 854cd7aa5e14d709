// Settings in files, and registers.

#include "ToolTest.h"

namespace {

class SettingsToolTest : public ToolTest {
protected:
    SettingsToolTest() { state = (folder / "state").string(); }

    void Set(const std::string& arguments) const { ExpectPrints(Virtual("set " + arguments), ""); }
    std::string Content() const {
        std::ifstream stream(file);
        return (std::ostringstream() << stream.rdbuf()).str();
    }

    const std::string file = (folder / "camera.txt").string();
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
    for (const char* const setting : {"Width 640", "Height 480", "OffsetX 1000", "OffsetY 400",
                                      "BalanceRatioSelector Green", "BalanceRatio 1.5"}) {
        Set(setting);
    }
    ExpectPrints(Virtual("save " + file), "");
    const ToolRun before = Virtual("features --json");
    for (const char* const setting :
         {"OffsetX 0", "OffsetY 0", "Width 2448", "Height 2048", "PixelFormat Mono8",
          "ReverseX true", "ExposureTime 20000", "Gain 3.5", "Gamma 2", "BalanceRatio 1.25",
          "TestPattern GreyHorizontalRamp", "TriggerMode On", "BalanceRatioSelector Blue",
          "LUTIndex 7"}) {
        Set(setting);
    }
    EXPECT_NE(Virtual("features --json").out, before.out);
    ExpectPrints(Virtual("load " + file), "");
    EXPECT_EQ(Virtual("features --json").out, before.out);
    ExpectPrints(Virtual("load --verify " + file), "");
}

TEST_F(SettingsToolTest, CameraKeepsItsSelectorsFromOneCommandToTheNext) {
    for (const char* const colour : {"Red", "Green", "Blue"}) {
        Set(std::string("BalanceRatioSelector ") + colour);
        ExpectPrints(Virtual("get BalanceRatioSelector"), std::string(colour) + "\n");
        Set("BalanceRatio 1.5");
    }
    for (const char* const colour : {"Red", "Green", "Blue"}) {
        Set(std::string("BalanceRatioSelector ") + colour);
        ExpectPrints(Virtual("get BalanceRatio"), "1.5\n");
    }
}

TEST_F(SettingsToolTest, LoadTellsWhatTheCameraRefusedAndSetsTheRest) {
    ExpectPrints(Virtual("save " + file), "");
    std::string text = Content();
    const std::string line = "ExposureTime\t10000.0\n";
    text.replace(text.find(line), line.size(), "ExposureTime\t30000.0\nNothing\t1\n");
    std::ofstream(file) << text;
    const ToolRun run = Virtual("load " + file);
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("ovtool: can't load settings from " + file + ": {-1}{"))
        << run.err;
    EXPECT_TRUE(run.err.ends_with("{Error while writing node: 'Nothing' not found }\n")) << run.err;
    ExpectPrints(Virtual("get ExposureTime"), "30000\n");
}

TEST_F(SettingsToolTest, AFileOfAnotherModelIsRefused) {
    ExpectPrints(Virtual("save " + file), "");
    ExpectFails(Virtual("load -c 2 " + file),
                "ovtool: can't load settings from " + file +
                    ": {-1}The device model(Virtual-5M-Color) in file is not the same as that in "
                    "the device(Virtual-5M-Mono)\n");
}

TEST_F(SettingsToolTest, AFileThatIsNotThereIsAFailure) {
    const ToolRun run = Virtual("load " + file);
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.ends_with("{Can't open config file}\n")) << run.err;
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
                    "ovtool: can't write at 0x00000310: '" + bytes + "' is not hexadecimal\n");
    }
}

TEST_F(SettingsToolTest, RegistersThatAreNotThereHaveTheProducersFailure) {
    const ToolRun run = Virtual("read 0xF0000000");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("ovtool: can't read at 0xf0000000: {-1015}{")) << run.err;
    EXPECT_TRUE(Virtual("write 0xF0000000 00")
                    .err.starts_with("ovtool: can't write at 0xf0000000: {-1015}{"));
}

}  // namespace
