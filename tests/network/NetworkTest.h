#pragma once
/// A network of two ends: the host's, where the tool runs, and that of simulated cameras.

#include <memory>
#include <string>

#include "NetworkSpace.h"
#include "tools/ToolTest.h"

/// Cameras that are there as long as this is.
class SimulatedCameras {
public:
    SimulatedCameras(const std::string& command, const std::filesystem::path& errors)
        : m_process(command, errors) {
        const std::string line = m_process.ReadLine();
        if (line.empty()) {
            throw std::runtime_error("The simulator hasn't started: " + m_process.Wait().err);
        }
        m_cameras = Json::parse(line)["cameras"];
    }

    std::string Mac(size_t index = 0) const { return Text(index, "mac"); }
    std::string Serial(size_t index = 0) const { return Text(index, "serialNumber"); }
    ToolProcess& Process() { return m_process; }

private:
    std::string Text(size_t index, const char* key) const {
        return m_cameras.at(index).at(key).get<std::string>();
    }

    ToolProcess m_process;
    Json m_cameras;
};

class NetworkTest : public ToolTest {
protected:
    void SetUp() override {
        if (const std::string& obstacle = NetworkSpace::Obstacle(); !obstacle.empty()) {
            ASSERT_FALSE(IsRequired()) << obstacle;
            GTEST_SKIP() << obstacle;
        }
        Shell("ip netns add cameras && ip link add host0 type veth peer name cam0 netns cameras");
        m_isUp = true;
        Shell("ip address add 10.1.0.1/24 dev host0 && ip link set host0 up && ip link set lo up");
        Shell("ip -n cameras link set lo up && ip -n cameras link set cam0 up");
        AwaitCable();
    }
    ~NetworkTest() override {
        if (m_isUp) {
            Shell("ip netns delete cameras; ip link delete host0 2>&1 || true");
        }
    }

    /// Until packets pass: the system takes its time after both ends are up.
    static void AwaitCable() {
        Shell(
            "until ip link show host0 | grep -q 'state UP' &&"
            " ip -n cameras link show cam0 | grep -q 'state UP'; do :; done");
    }

    /// Where everything must be tested, nothing may be skipped.
    static bool IsRequired() { return std::getenv("OV_NETWORK_TESTS") != nullptr; }

    /// @param options  of `ovtool simulate`
    SimulatedCameras Simulate(const std::string& options) {
        return {"OV_VIRTUAL_STATE=off LD_LIBRARY_PATH='" OV_TOOL_VIRTUAL
                "' exec ip netns exec cameras '" OV_TOOL "' simulate --json -a cam0 " +
                    options,
                NextErrors()};
    }
    SimulatedCameras SimulateOne() { return Simulate("10.1.0.2/24"); }

    /// The tool on the host's end, which sees these cameras and no virtual ones.
    std::unique_ptr<ToolProcess> StartHost(const std::string& arguments) {
        return std::make_unique<ToolProcess>(
            "OV_VIRTUAL_CAMERAS=0 LD_LIBRARY_PATH='" OV_TOOL_VIRTUAL "' " + host + " exec " +
                rights + " '" OV_TOOL "' " + arguments,
            NextErrors());
    }
    ToolRun Host(const std::string& arguments) { return StartHost(arguments)->Wait(); }
    /// What the tool prints about its success.
    std::string Printed(const std::string& arguments) {
        const ToolRun run = Host(arguments);
        EXPECT_EQ(run.err, "") << arguments;
        EXPECT_EQ(run.status, 0) << arguments;
        return run.out;
    }

    std::string host;    ///< more of the host's environment, as a shell takes it
    std::string rights;  ///< a command that takes rights from the host's tool

private:
    std::filesystem::path NextErrors() { return folder / ("end" + std::to_string(m_runs++)); }

    bool m_isUp = false;
    int m_runs = 0;
};
