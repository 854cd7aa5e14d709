#pragma once
/// A stream over a cable with faults, and what both ends say of it.

#include <csignal>
#include <fstream>

#include "NetworkTest.h"

class StreamNetworkTest : public NetworkTest {
protected:
    static constexpr int kFrames = 100;

    /// Lets a camera with these faults send its frames to the tool.
    /// @param faults    options of `ovtool simulate`
    /// @param settings  more of them for the stream
    void Stream(const std::string& faults, const std::string& settings = {}) {
        const std::string file = (folder / "account.json").string();
        SimulatedCameras simulated =
            Simulate("10.1.0.2/24 --seed 7 --account '" + file + "' " + faults);
        run = Host(
            "stream --json --seconds 3 --set Width=640 Height=480 AcquisitionMode=MultiFrame"
            " AcquisitionFrameRateMode=Off ExposureTime=20000 AcquisitionFrameCount=" +
            std::to_string(kFrames) + " " + settings);
        simulated.Process().Signal(SIGTERM);
        EXPECT_EQ(simulated.Process().Wait().err, "");
        ASSERT_TRUE(Json::accept(run.out)) << run.out << run.err;
        host = Json::parse(run.out).at("account");
        std::ifstream stream(file);
        camera = Json::parse(stream).at("cameras").at(0).at("counts");
        EXPECT_EQ(camera.at("blocks"), kFrames);
    }
    /// Every frame that the camera sent is one of the host's.
    void StreamAll(const std::string& faults, const std::string& settings = {}) {
        Stream(faults, settings);
        EXPECT_EQ(FramesOfHost(), kFrames) << host;
    }
    int64_t Frames(const char* key) const { return host.at("frames").at(key); }
    int64_t Packets(const char* key) const { return host.at("packets").at(key); }
    int64_t Camera(const char* key) const { return camera.at(key); }
    /// Leader and trailer among them.
    int64_t PacketsOfFrame() const {
        return (Camera("streamPackets") - Camera("testPackets")) / kFrames;
    }
    std::string Remedy() const {
        return host.at("remedy").is_null() ? "" : host.at("remedy").get<std::string>();
    }

    int64_t FramesOfHost() const {
        int64_t sum = 0;
        for (const Json& frames : host.at("frames")) {
            sum += frames.get<int64_t>();
        }
        return sum;
    }

    ToolRun run;
    Json host;    ///< its account
    Json camera;  ///< its counts
};
