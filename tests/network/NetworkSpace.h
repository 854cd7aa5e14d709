#pragma once
/// A network for this process and those that it starts.

#include <string>

class NetworkSpace {
public:
    /// Leaves the machine's network for an empty one. Must be called before there are threads.
    static void Enter();
    /// Why this process is still in the machine's network; empty if it isn't.
    static const std::string& Obstacle();

private:
    static std::string& State();
};

/// Runs a command of the shell.
/// @throws std::runtime_error with what it printed, if it fails
void Shell(const std::string& command);
