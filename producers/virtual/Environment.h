#pragma once
/// What the environment says of the virtual cameras; README.md lists it.

#include <filesystem>
#include <optional>

namespace OvVirtual {

struct Environment {
    unsigned cameras = 2;
    /// Upper limit of the frame rate, frames per second; 0: frames wait for
    /// buffers and nothing else.
    std::optional<double> frameRate;
    /// Where cameras keep their state; empty: they keep none.
    std::filesystem::path stateFolder;
};

/// Values that make no sense are as if they weren't there.
Environment ReadEnvironment();

}  // namespace OvVirtual
