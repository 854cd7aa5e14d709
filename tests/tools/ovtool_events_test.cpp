// What cameras tell on their own.

#include <gmock/gmock.h>

#include <cstdint>
#include <vector>

#include "ToolTest.h"

namespace {

class EventsTest : public ToolTest {
protected:
    EventsTest() { state = folder.string(); }
    /// A frame of the whole sensor takes its time.
    void SetUp() override { Do("set Width=64 Height=32"); }
    void Do(const std::string& arguments) const {
        ASSERT_EQ(Virtual(arguments).err, "") << arguments;
    }
    static std::vector<Json> Documents(const std::string& text) {
        std::vector<Json> documents;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            documents.push_back(Json::parse(line));
        }
        return documents;
    }
};

TEST_F(EventsTest, ArePrintedOneALine) {
    const ToolRun run = Virtual("events -n 2 -s 60 -e ExposureEnd -c VC000001");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, testing::MatchesRegex("ExposureEnd 0x9001 at [0-9]+  FrameID 0\n"
                                               "ExposureEnd 0x9001 at [0-9]+  FrameID 1\n"));
}

TEST_F(EventsTest, AreADocumentALineForMachines) {
    const ToolRun run = Virtual("events --json -n 3 -s 60 -e ExposureEnd");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
    const std::vector<Json> events = Documents(run.out);
    ASSERT_EQ(events.size(), 3U);
    int64_t before = 0;
    for (size_t frame = 0; frame < events.size(); ++frame) {
        const int64_t timestamp = events[frame]["timestamp"];
        EXPECT_GT(timestamp, before);
        before = timestamp;
        EXPECT_EQ(events[frame], Json({{"event", "ExposureEnd"},
                                       {"id", 0x9001},
                                       {"timestamp", timestamp},
                                       {"data", {{"EventExposureEndFrameID", frame}}}}));
    }
}

TEST_F(EventsTest, EndWithTheirTime) {
    ExpectPrints(Virtual("events -e FrameStartOvertrigger -s 0.2"), "");
    ExpectPrints(Virtual("events --idle -s 0.2"), "");
    ExpectPrints(Gev("events --idle -s 0"), "");
}

TEST_F(EventsTest, EndWithTheCamera) {
    Do("write 0xA28 03000000");
    const ToolRun run = Virtual("events --json -s 60 -e ExposureEnd");
    EXPECT_EQ(run.err,
              "ovtool: the camera is lost\n"
              "Check cable and power, then look at the cameras: ovtool list\n");
    EXPECT_EQ(run.status, Exit::kLost);
    const std::vector<Json> events = Documents(run.out);
    EXPECT_LE(events.size(), 3U);
    for (size_t frame = 0; frame < events.size(); ++frame) {
        EXPECT_EQ(events[frame]["data"]["EventExposureEndFrameID"], frame);
    }
    EXPECT_EQ(Virtual("events -n 1 -s 60").status, 0) << "it came back";
}

TEST_F(EventsTest, LeaveTheNotificationAsItWas) {
    for (const std::string before : {"Off", "On"}) {
        Do("set EventNotification " + before);
        Do("events -n 1 -s 60");
        ExpectPrints(Virtual("get EventNotification"), before + "\n");
    }
}

TEST_F(EventsTest, ThatACameraDoesNotHaveAreMissed) {
    ExpectFails(Virtual("events -e Nap"),
                "ovtool: the camera has no event Nap, but: ExposureEnd FrameStartOvertrigger "
                "BlockDiscard\n");
    ExpectFails(Gev("events -e Nap"), "ovtool: the camera has no event Nap, but: ExposureEnd\n");
}

}  // namespace
