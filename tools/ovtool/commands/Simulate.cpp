#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "commands/Commands.h"
#include "support/Error.h"

void RunSimulator(const std::string& program, const std::vector<std::string>& arguments) {
    const std::string simulator =
        std::filesystem::read_symlink("/proc/self/exe").parent_path() / "ovtool-simulate";
    std::vector<std::string> texts = {program + " simulate"};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    execv(simulator.c_str(), pointers.data());
    const std::string reason = std::generic_category().message(errno);
    throw ToolError("the simulator can't be run: " + reason + ": " + simulator +
                    "\nWhere the tool was built, build it, too: ovtool-simulate");
}
