// Cameras of any kind: list, info, features, frames.

#include <gmock/gmock.h>

#include <algorithm>

#include "ToolTest.h"

namespace {

Json ListedCamera(int index, const std::string& model, const std::string& serial) {
    return {{"index", index},
            {"vendor", "oviapi"},
            {"model", model},
            {"serialNumber", serial},
            {"userId", ""},
            {"displayName", model + " (" + serial + ")"},
            {"deviceId", model + "_" + serial},
            {"class", "custom"},
            {"access", "read and write"}};
}

// list

TEST_F(ToolTest, ListHasALineForEachCameraAndTheirNumber) {
    ExpectPrints(Virtual("list"),
                 "1  oviapi Virtual-5M-Color  serial VC000001  user ID \"\"  custom  "
                 "Virtual-5M-Color (VC000001)\n"
                 "2  oviapi Virtual-5M-Mono  serial VC000002  user ID \"\"  custom  "
                 "Virtual-5M-Mono (VC000002)\n"
                 "2 cameras\n");
}

TEST_F(ToolTest, ListIsADocumentForMachines) {
    ExpectDocument(Virtual("list --json"),
                   {{"cameras", Json::array({ListedCamera(1, "Virtual-5M-Color", "VC000001"),
                                             ListedCamera(2, "Virtual-5M-Mono", "VC000002")})}});
}

TEST_F(ToolTest, BytesThatAreNoTextAreReplacedInDocuments) {
    state = folder.string();
    ASSERT_EQ(Virtual("set DeviceUserID \"$(printf 'a\\377b')\"").err, "");
    const ToolRun run = Virtual("list --json");
    ASSERT_TRUE(Json::accept(run.out)) << run.out;
    EXPECT_EQ(Json::parse(run.out)["cameras"][0]["userId"],
              "a\xEF\xBF\xBD"
              "b");
}

// info

TEST_F(ToolTest, InfoTellsOfCameraInterfaceAndProducer) {
    ExpectPrints(Virtual("info -c VC000002"),
                 "camera\n"
                 "  index                2\n"
                 "  vendor               oviapi\n"
                 "  model                Virtual-5M-Mono\n"
                 "  serial number        VC000002\n"
                 "  display name         Virtual-5M-Mono (VC000002)\n"
                 "  device id            Virtual-5M-Mono_VC000002\n"
                 "  class                custom\n"
                 "  access               read and write\n"
                 "  firmware version     1.2.0\n"
                 "  sensor width         2448\n"
                 "  sensor height        2048\n"
                 "  color filter         None\n"
                 "  temperature          41.0\n"
                 "  version              1.0.0\n"
                 "  type                 Custom\n"
                 "  timestamp frequency  1000000000\n"
                 "interface\n"
                 "  id                   VirtualInterface0\n"
                 "  display name         Virtual Interface\n"
                 "  type                 Custom\n"
                 "producer\n"
                 "  id                   KwTL\n"
                 "  display name         Virtual cameras\n"
                 "  vendor               oviapi\n"
                 "  model                Virtual Cameras\n"
                 "  version              1.0.0\n"
                 "  type                 Custom\n"
                 "  gentl version        1.5\n"
                 "  file                 " OV_TOOL_VIRTUAL "/KwTL.cti\n");
}

TEST_F(ToolTest, InfoOfAGigEVisionCameraHasTheAddresses) {
    Json camera = {{"index", 1},
                   {"vendor", "oviapi"},
                   {"model", "TestCamera"},
                   {"serialNumber", "SN0_0"},
                   {"userId", "User0_0"},
                   {"displayName", "Test Camera 0_0"},
                   {"deviceId", "TestCamera0_0"},
                   {"class", "GigE Vision"},
                   {"access", "read and write"},
                   {"firmwareVersion", "1.0.0"},
                   {"phyVersion", nullptr},
                   {"sensorWidth", 64},
                   {"sensorHeight", 48},
                   {"shutterMode", nullptr},
                   {"colorFilter", nullptr},
                   {"temperature", nullptr},
                   {"version", "1.0.0"},
                   {"type", "GEV"},
                   {"timestampFrequency", 1000000000},
                   {"mac", "00-AA-BB-CC-00-64"},
                   {"ip", "192.168.10.100"},
                   {"subnetMask", "255.255.255.0"},
                   {"gateway", "192.168.10.254"}};
    Json interface = {{"id", "TestInterface0"},
                      {"displayName", "Test Interface 0"},
                      {"type", "GEV"},
                      {"mac", "00-11-22-33-00-01"},
                      {"ip", "192.168.10.1"},
                      {"subnetMask", "255.255.255.0"},
                      {"gateway", "192.168.10.254"},
                      {"description", "Adapter 0"}};
    Json producer = {{"id", "OvTest_GEV"},    {"displayName", "Test Producer"},
                     {"vendor", "oviapi"},    {"model", "TestProducer"},
                     {"version", "1.0.0"},    {"type", "GEV"},
                     {"gentlVersion", "1.5"}, {"file", OV_TOOL_GEV "/OvGVTL.cti"}};
    ExpectDocument(Gev("info --json"),
                   {{"camera", camera}, {"interface", interface}, {"producer", producer}});
}

// features, get, set

TEST_F(ToolTest, FeaturesShowTypeAccessValueAndRange) {
    const ToolRun run = Virtual("features");
    EXPECT_EQ(run.status, 0);
    for (const std::string line :
         {"DeviceModelName                          string   r  Virtual-5M-Color\n",
          "Width                                    integer  rw 2448  (16 to 2448 by 4)\n",
          "ReverseX                                 bool     rw false\n",
          "TriggerMode                              enum     rw Off  (Off On)\n",
          "ExposureTime                             float    rw 10000  (20 to 1e+06 by 0.5 us)\n",
          "TriggerSoftware                          command  rw -\n"}) {
        EXPECT_NE(run.out.find("\n" + line), std::string::npos) << line;
    }
}

TEST_F(ToolTest, FeaturesKeepTheirTypesInDocuments) {
    const ToolRun run = Virtual("features --json");
    EXPECT_EQ(run.status, 0);
    ASSERT_TRUE(Json::accept(run.out));
    const Json expected[] = {
        {{"name", "DeviceModelName"},
         {"type", "string"},
         {"writable", false},
         {"value", "Virtual-5M-Color"},
         {"range", nullptr}},
        {{"name", "Width"},
         {"type", "integer"},
         {"writable", true},
         {"value", 2448},
         {"range", {{"min", 16}, {"max", 2448}, {"increment", 4}}}},
        {{"name", "ReverseX"},
         {"type", "bool"},
         {"writable", true},
         {"value", false},
         {"range", nullptr}},
        {{"name", "TriggerMode"},
         {"type", "enum"},
         {"writable", true},
         {"value", "Off"},
         {"range", {{"entries", {"Off", "On"}}}}},
        {{"name", "ExposureTime"},
         {"type", "float"},
         {"writable", true},
         {"value", 10000.0},
         {"range", {{"min", 20.0}, {"max", 1e6}, {"increment", 0.5}, {"unit", "us"}}}},
        {{"name", "TriggerSoftware"},
         {"type", "command"},
         {"writable", true},
         {"value", nullptr},
         {"range", nullptr}},
    };
    const Json features = Json::parse(run.out)["features"];
    for (const Json& feature : expected) {
        const auto found = std::find_if(features.begin(), features.end(), [&](const Json& row) {
            return row["name"] == feature["name"];
        });
        ASSERT_NE(found, features.end()) << feature["name"];
        EXPECT_EQ(found->dump(), feature.dump());
    }
}

TEST_F(ToolTest, GetPrintsValuesInTheOrderAskedFor) {
    ExpectPrints(Virtual("get PixelFormat Width ExposureTime ReverseX"),
                 "BayerRG8\n2448\n10000\nfalse\n");
    ExpectDocument(Virtual("get --json PixelFormat Width ExposureTime ReverseX"),
                   {{"PixelFormat", "BayerRG8"},
                    {"Width", 2448},
                    {"ExposureTime", 10000.0},
                    {"ReverseX", false}});
}

// grab, stream

TEST_F(ToolTest, GrabTellsOfEachFrameAndItsFiles) {
    state = (folder / "state").string();
    Set("Width=64 Height=32");
    const std::string output = folder.string();
    ExpectPrints(Virtual("grab -n 2 --raw -o " + output),
                 "frame 0: 64x32, 2048 bytes -> " + output + "/frame-0001.png -> " + output +
                     "/frame-0001.raw\n"
                     "frame 1: 64x32, 2048 bytes -> " +
                     output + "/frame-0002.png -> " + output + "/frame-0002.raw\n" +
                     "2 frames, 0 lost\n");
    EXPECT_EQ(std::filesystem::file_size(folder / "frame-0002.raw"), 2048U);
    ExpectDocument(Virtual("grab --json --no-png --raw -o " + output),
                   {{"frames",
                     {{{"id", 0},
                       {"width", 64},
                       {"height", 32},
                       {"pixelFormat", 0x01080009},
                       {"bytes", 2048},
                       {"files", {output + "/frame-0001.raw"}}}}},
                    {"lost", 0}});
}

TEST_F(ToolTest, StreamTellsRateAndLosses) {
    state = folder.string();
    Set("Width=64 Height=32");
    const ToolRun run = Virtual("stream -s 1 --json");
    EXPECT_EQ(run.err, "");
    ASSERT_TRUE(Json::accept(run.out)) << run.out;
    const Json document = Json::parse(run.out);
    std::string keys;
    for (const auto& [key, value] : document.items()) {
        EXPECT_TRUE(value.is_number()) << key;
        keys += key + " ";
    }
    EXPECT_EQ(keys, "seconds frames framesPerSecond lost incomplete ");
    EXPECT_GE(document["seconds"], 1.0);
    EXPECT_GT(document["frames"], 0);
    EXPECT_DOUBLE_EQ(document["framesPerSecond"],
                     document["frames"].get<double>() / document["seconds"].get<double>());
    EXPECT_EQ(document["incomplete"], 0);
}

TEST_F(ToolTest, StreamPrintsOneLine) {
    state = folder.string();
    Set("Width=64 Height=32");
    const ToolRun run = Virtual("stream -s 0.2");
    EXPECT_THAT(run.out, testing::MatchesRegex(
                             "[0-9]+ frames in 0.[0-9] s, [0-9]+.[0-9] a second, [0-9]+ lost, 0 "
                             "incomplete\n"));
    EXPECT_EQ(run.status, 0);
}

// Failures.

TEST_F(ToolTest, SecondsMustBePositive) {
    EXPECT_EQ(Virtual("stream -s 0").status, Exit::kUsage);
    EXPECT_EQ(Virtual("stream -s -1").status, Exit::kUsage);
}

}  // namespace
