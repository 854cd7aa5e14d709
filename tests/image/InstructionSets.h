#pragma once
/// Runs tests on each instruction set of the machine.

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <cstddef>
#include <cstdint>
#include <set>

/// Restricts the library to one instruction set during the object's lifetime.
class OnlyInstructionSet {
public:
    explicit OnlyInstructionSet(int64_t target) { Allow(target); }
    OnlyInstructionSet(const OnlyInstructionSet&) = delete;
    OnlyInstructionSet& operator=(const OnlyInstructionSet&) = delete;
    ~OnlyInstructionSet() { Allow(0); }

private:
    static void Allow(int64_t targets) {
        hwy::SetSupportedTargetsForTest(targets);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
};

/// Calls `run` once with every instruction set that is compiled in and that the
/// machine has.
template <class Run>
void WithEachInstructionSet(const Run& run) {
    std::set<size_t> chosen;
    for (const int64_t target : hwy::SupportedAndGeneratedTargets()) {
        const OnlyInstructionSet only(target);
        SCOPED_TRACE(hwy::TargetName(target));
        EXPECT_TRUE(chosen.insert(hwy::GetChosenTarget().GetIndex()).second);
        run();
    }
    EXPECT_FALSE(chosen.empty());
}
