// Events of cameras over a network, as a user of the tool meets them.

#include <sstream>

#include "NetworkTest.h"

namespace {

class NetworkEvents : public NetworkTest {
protected:
    std::vector<Json> Events(const std::string& options) {
        std::istringstream lines(Printed("events --json " + options));
        std::vector<Json> events;
        for (std::string line; std::getline(lines, line);) {
            events.push_back(Json::parse(line));
        }
        return events;
    }
    void ExpectExposures(size_t count) {
        const std::vector<Json> events =
            Events("--event ExposureEnd --count " + std::to_string(count));
        ASSERT_EQ(events.size(), count);
        int64_t time = 0;
        for (size_t i = 0; i < count; ++i) {
            EXPECT_EQ(events[i]["event"], "ExposureEnd");
            EXPECT_EQ(events[i]["id"], 0x9001);
            EXPECT_EQ(events[i]["data"]["EventExposureEndFrameID"], i);
            EXPECT_GT(events[i]["timestamp"].get<int64_t>(), time);
            time = events[i]["timestamp"].get<int64_t>();
        }
    }
};

TEST_F(NetworkEvents, ComeWithTheirTimesAndFrames) {
    const SimulatedCameras simulated = SimulateOne();
    ExpectExposures(5);
}

TEST_F(NetworkEvents, AreReadWhereTheFormWithLongNumbersHasThem) {
    const SimulatedCameras simulated = SimulateOne();
    Printed("set GevGVSPExtendedIDMode=true");
    ExpectExposures(5);
}

TEST_F(NetworkEvents, ComeOnceEachInSpiteOfABadNetwork) {
    const SimulatedCameras simulated = Simulate(
        "10.1.0.2/24 --seed 5 --lose-messages 5 --double-messages 30 --foreign-messages 30 "
        "--ignore-acknowledgements 5");
    ExpectExposures(30);
}

}  // namespace
