#include "NetworkSpace.h"

#include <sched.h>
#include <sys/mount.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

namespace {

std::string SystemText() {
    return std::system_category().message(errno);
}

/// Networks with a name are files below /run, and must not be those of the machine.
std::string TryToEnter() {
    if (unshare(CLONE_NEWNET | CLONE_NEWNS) != 0) {
        return "a network of their own needs root's rights: " + SystemText();
    }
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("tmpfs", "/run", "tmpfs", 0, nullptr) != 0) {
        return "no folder of their own for networks: " + SystemText();
    }
    return {};
}

}  // namespace

std::string& NetworkSpace::State() {
    static std::string obstacle = "it wasn't tried";
    return obstacle;
}

void NetworkSpace::Enter() {
    State() = TryToEnter();
}

const std::string& NetworkSpace::Obstacle() {
    return State();
}

void Shell(const std::string& command) {
    const std::string whole = command + " 2>&1";
    FILE* const pipe = popen(whole.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("No shell: " + SystemText());
    }
    std::string output;
    std::array<char, 256> piece{};
    while (fgets(piece.data(), piece.size(), pipe) != nullptr) {
        output += piece.data();
    }
    if (pclose(pipe) != 0) {
        throw std::runtime_error(command + ": " + output);
    }
}
