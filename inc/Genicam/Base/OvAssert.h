#pragma once
/// The assertion of the whole library. It stays on in every build: a broken internal condition
/// must end the process where it was found, with its text, rather than go on as wrong data in a
/// machine that a camera steers.

#include <cstdio>
#include <cstdlib>

namespace OvBase {

/// Prints "<file>:<line>: assertion failed: <condition>" to standard error and
/// ends the process.
[[noreturn]] inline void AssertionFailed(const char* condition, const char* file, int line) {
    std::fprintf(stderr, "%s:%d: assertion failed: %s\n", file, line, condition);
    std::fflush(stderr);
    std::abort();
}

}  // namespace OvBase

#define OV_ASSERT(condition) \
    ((condition) ? static_cast<void>(0) : ::OvBase::AssertionFailed(#condition, __FILE__, __LINE__))
