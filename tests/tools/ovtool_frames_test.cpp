// Frames that come faster than they are written, and those that don't come.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>
#include <string>

#include "ToolLog.h"
#include "ToolTest.h"
#include "camera/FrameTally.h"

namespace {

TEST(FrameTally, AddsUpFramesAndLosses) {
    FrameTally tally;
    EXPECT_EQ(tally.Lost(), 0);
    for (const uint64_t number : {5, 6, 9, 10, 12}) {
        tally.Count(number);
    }
    EXPECT_EQ(tally.Frames(), 5);
    EXPECT_EQ(tally.Lost(), 3);
    EXPECT_EQ(tally.Frames() + *tally.Lost(), 12 - 5 + 1);
}

TEST(FrameTally, ACounterThatBeginsAnewHasLostNothing) {
    FrameTally tally;
    for (const uint64_t number : {65534, 65535, 1, 2, 4}) {
        tally.Count(number);
    }
    EXPECT_EQ(tally.Lost(), 1);
}

TEST(FrameTally, FramesWithoutNumbersHaveNoLosses) {
    FrameTally tally;
    tally.Count(1);
    tally.Count(std::numeric_limits<uint64_t>::max());
    EXPECT_EQ(tally.Frames(), 2);
    EXPECT_EQ(tally.Lost(), std::nullopt);
}

class GrabTest : public ToolTest {
protected:
    GrabTest() { state = (folder / "state").string(); }
    void SetUp() override { Set("Width=64 Height=32"); }

    /// A file that takes nothing until somebody reads it.
    std::string SlowFile() const {
        const std::string file = (folder / "frame-0001.raw").string();
        EXPECT_EQ(mkfifo(file.c_str(), 0600), 0);
        return file;
    }
    static size_t ReadAll(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {}).size();
    }
};

TEST_F(GrabTest, LosesNothingWhileAFileIsSlow) {
    constexpr unsigned kFrames = 20;
    const std::string slow = SlowFile();
    ToolLog log(folder / "log");
    const auto run =
        Start(OV_TOOL_VIRTUAL, "grab -n 20 --json --raw --no-png -o " + folder.string());
    // Each frame is given back when it is copied.
    ASSERT_TRUE(log.Await("DSQueueBuffer: done", kFrames));
    log.Drain();
    EXPECT_EQ(ReadAll(slow), 2048U);
    const ToolRun ended = run->Wait();
    EXPECT_EQ(ended.status, 0) << ended.err;
    const Json document = Json::parse(ended.out);
    ASSERT_EQ(document["frames"].size(), kFrames);
    const int64_t first = document["frames"][0]["id"];
    const int64_t last = document["frames"][kFrames - 1]["id"];
    EXPECT_EQ(document["lost"], last - first + 1 - kFrames);
    EXPECT_EQ(std::filesystem::file_size(folder / "frame-0020.raw"), 2048U);
}

TEST_F(GrabTest, TakesNoMoreMemoryThanItMay) {
    Set("Width=2448 Height=2048");
    const std::string slow = SlowFile();
    const auto run =
        Start(OV_TOOL_VIRTUAL, "grab -n 3 --json --memory 1 --raw --no-png -o " + folder.string());
    EXPECT_EQ(ReadAll(slow), 2448U * 2048);
    const ToolRun ended = run->Wait();
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(Json::parse(ended.out)["frames"].size(), 3U);
    EXPECT_EQ(Virtual("grab --memory 0").status, Exit::kUsage);
}

}  // namespace
