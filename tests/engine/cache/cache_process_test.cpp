// Processes that share one cache folder.

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "CacheSupport.h"

namespace EngineTest {

namespace {

using Clock = std::chrono::steady_clock;

/// How long the processes are at it: short by itself, longer where asked.
std::chrono::milliseconds Duration() {
    const char* const text = std::getenv("OV_TEST_CACHE_MILLISECONDS");
    return std::chrono::milliseconds(text == nullptr ? 300 : std::strtol(text, nullptr, 10));
}

gcstring ManyNodes() {
    std::string nodes;
    for (int i = 0; i < 200; ++i) {
        nodes += IntegerXml("N" + std::to_string(i), "", Element("Value", std::to_string(i)));
    }
    return Description(nodes);
}

/// Loads and writes until the time is over, and now and then clears the folder
/// for the others. The exit status tells what was seen.
int LoadAndClear(const gcstring& description, bool clears) {
    const auto end = Clock::now() + Duration();
    try {
        for (int round = 0; Clock::now() < end; ++round) {
            if (clears && round % 8 == 0) {
                CNodeMapFactory::ClearCache();
            }
            CNodeMapFactory factory(description, CacheUsage_Automatic);
            const MapOwner map(factory.CreateNodeMap());
            if (map->GetNumNodes() != 201 || map.ValueOf("N199") != 199) {
                return 2;
            }
        }
    } catch (const GenericException&) {
        return 1;
    }
    return 0;
}

}  // namespace

TEST(CacheProcesses, NeverMeetATornFile) {
    const CacheFolder folder;
    const gcstring description = ManyNodes();
    std::vector<pid_t> children;
    for (int i = 0; i < 2; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            _exit(LoadAndClear(description, i == 0));
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
}

}  // namespace EngineTest
