#pragma once
/// Runs tests on each instruction set of the machine.

#include <gtest/gtest.h>

#include <cstddef>

#include "support/InstructionSets.h"

/// Restricts the library to one instruction set during the object's lifetime.
class OnlyInstructionSet {
public:
    explicit OnlyInstructionSet(QyVectors::InstructionSet set) { QyVectors::Choose(set); }
    OnlyInstructionSet(const OnlyInstructionSet&) = delete;
    OnlyInstructionSet& operator=(const OnlyInstructionSet&) = delete;
    ~OnlyInstructionSet() { QyVectors::Choose(QyVectors::BestSet()); }
};

/// Calls `run` once with every instruction set that is compiled in and that the
/// machine has.
template <class Run>
void WithEachInstructionSet(const Run& run) {
    for (size_t i = 0; i < QyVectors::kInstructionSets; ++i) {
        const auto set = static_cast<QyVectors::InstructionSet>(i);
        if (QyVectors::IsAvailable(set)) {
            const OnlyInstructionSet only(set);
            SCOPED_TRACE(QyVectors::NameOf(set));
            run();
        }
    }
}
