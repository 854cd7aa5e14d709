#pragma once
/// The environment variables of the virtual cameras, which README.md lists.

#include <filesystem>
#include <optional>

namespace OvVirtual {

struct Environment {
    unsigned cameras = 2;
    /// Upper limit of the frame rate, in frames per second; 0: frames only wait for
    /// buffers.
    std::optional<double> frameRate;
    /// The folder in which cameras save their state; empty: they don't.
    std::filesystem::path stateFolder;
};

/// Ignores variables whose values make no sense.
Environment ReadEnvironment();

}  // namespace OvVirtual
