#pragma once
/// A wait for any of several files.

#include <poll.h>

#include <chrono>
#include <span>

namespace OvGige {

/// Waits until one of the files is ready or the deadline has passed, and marks those that are.
/// Files with a negative number never are.
/// @return whether one is ready
/// @throws OvProducer::Failure GC_ERR_IO if the system can't wait for them
bool WaitForFiles(std::span<pollfd> files, std::chrono::steady_clock::time_point deadline);

}  // namespace OvGige
