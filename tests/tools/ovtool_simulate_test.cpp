// Cameras that the tool is, for others on the network.

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>

#include "ToolTest.h"

namespace {

class SimulateTest : public ToolTest {
protected:
    std::unique_ptr<ToolProcess> Simulate(const std::string& arguments) const {
        return Start(OV_TOOL_BARE, "simulate " + arguments);
    }

    static ToolRun End(ToolProcess& run, int signal = SIGTERM) {
        run.Signal(signal);
        return run.Wait();
    }

    std::string AccountFile() const { return (folder / "account.json").string(); }
    Json Account() const {
        std::ifstream file(AccountFile());
        return Json::parse(file);
    }
};

TEST_F(SimulateTest, SaysWhichCamerasAreReady) {
    const auto run = Simulate("127.0.0.1:0");
    EXPECT_THAT(run->ReadLine(),
                testing::MatchesRegex("Simulated-5M-Color SC[0-9A-F]+, 02-[-0-9A-F]+, "
                                      "at 127\\.0\\.0\\.1:[0-9]+\n"));
    EXPECT_EQ(run->ReadLine(), "ready\n");
    ExpectPrints(End(*run), "");
}

TEST_F(SimulateTest, EndsByCtrlC) {
    const auto run = Simulate("127.0.0.1:0 --json");
    run->ReadLine();
    ExpectPrints(End(*run, SIGINT), "");
}

TEST_F(SimulateTest, CountsAddressesOn) {
    const auto run = Simulate("127.0.0.5:0 127.0.1.1:0 --count 2 --json");
    const Json listed = Json::parse(run->ReadLine()).at("cameras");
    std::vector<std::string> addresses;
    for (const Json& camera : listed) {
        addresses.push_back(camera.at("ip"));
    }
    EXPECT_THAT(addresses,
                testing::ElementsAre("127.0.0.5", "127.0.0.6", "127.0.1.1", "127.0.1.2"));
    End(*run);
}

TEST_F(SimulateTest, WritesItsAccountAtTheEndAndWhenAsked) {
    const auto run = Simulate("127.0.0.1:0 --account '" + AccountFile() + "'");
    run->ReadLine();
    EXPECT_EQ(run->ReadLine(), "ready\n");
    EXPECT_EQ(Account().at("cameras").at(0).at("counts").at("commands"), 0);
    std::filesystem::remove(AccountFile());
    End(*run);
    EXPECT_EQ(Account().at("cameras").at(0).at("ip"), "127.0.0.1");
    EXPECT_EQ(Account().at("cameras").at(0).at("counts").at("controlTaken"), 0);
}

TEST_F(SimulateTest, NamesItsSeedInTheAccount) {
    const auto run = Simulate("127.0.0.1:0 --seed 42 --lose 1.5 --missing 10 --json --account '" +
                              AccountFile() + "'");
    run->ReadLine();
    ExpectPrints(End(*run), "");
    EXPECT_EQ(Account().at("seed"), 42);
}

TEST_F(SimulateTest, RefusesFaultsThatMakeNoSense) {
    EXPECT_EQ(Run(OV_TOOL_BARE, "simulate --lose 101").status, Exit::kUsage);
    EXPECT_EQ(Run(OV_TOOL_BARE, "simulate --move-after 3").status, Exit::kUsage);
    ExpectFails(Run(OV_TOOL_BARE, "simulate --move-after 3 --move-to nowhere"),
                "ovtool: \"nowhere\" is no address; write it as 192.168.1.10\n", Exit::kUsage);
}

TEST_F(SimulateTest, PrintsItsOwnHelp) {
    const ToolRun run = Run(OV_TOOL_BARE, "simulate --help");
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.starts_with("be GigE Vision cameras on the network"));
    EXPECT_NE(run.out.find("Usage: " OV_TOOL " simulate [OPTIONS] [addresses...]"),
              std::string::npos)
        << run.out;
}

TEST_F(SimulateTest, SaysWhatIsMissingWhereOnlyTheToolWasBuilt) {
    const std::filesystem::path tool = folder / "ovtool";
    std::filesystem::copy_file(OV_TOOL, tool);
    ToolProcess alone("LD_LIBRARY_PATH='" OV_TOOL_BARE "' exec '" + tool.string() + "' simulate",
                      folder / "errors");
    ExpectFails(alone.Wait(), "ovtool: the simulator can't be run: No such file or directory: " +
                                  (folder / "ovtool-simulate").string() +
                                  "\nWhere the tool was built, build it, too: ovtool-simulate\n");
}

TEST_F(SimulateTest, RefusesWhatIsNoAddress) {
    for (const std::string place : {"127.0.0", "127.0.0.1/0", "1.2.3.4x"}) {
        ExpectFails(Run(OV_TOOL_BARE, "simulate " + place),
                    "ovtool: \"" + place + "\" is no address; write it as 192.168.1.10/24:3956\n",
                    Exit::kUsage);
    }
    ExpectFails(Run(OV_TOOL_BARE, "simulate 127.0.0.1:70000"),
                "ovtool: \"70000\" is no number from 0 to 65535\n", Exit::kUsage);
    ExpectFails(Run(OV_TOOL_BARE, "simulate 127.0.0.1/32"),
                "ovtool: \"32\" is no number from 0 to 31\n", Exit::kUsage);
}

TEST_F(SimulateTest, SaysThatAnAddressIsNotOfThisMachine) {
    ExpectFails(Run(OV_TOOL_BARE, "simulate 198.51.100.1"),
                "ovtool: No adapter of this machine has the address 198.51.100.1\n");
}

TEST_F(SimulateTest, SaysThatAnAddressIsTaken) {
    const auto run = Simulate("127.0.0.1:0 --json");
    const int port = Json::parse(run->ReadLine()).at("cameras").at(0).at("port");
    const std::string place = "127.0.0.1:" + std::to_string(port);
    ExpectFails(Run(OV_TOOL_BARE, "simulate " + place),
                "ovtool: The address " + place + " can't be used: Address already in use\n");
    End(*run);
}

TEST_F(SimulateTest, FailsIfTheAccountCantBeWritten) {
    ExpectFails(Run(OV_TOOL_BARE, "simulate 127.0.0.1:0 --account /nowhere/account.json"),
                "ovtool: can't write the account to /nowhere/account.json\n");
}

}  // namespace
