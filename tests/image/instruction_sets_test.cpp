// The choice among the loops that are compiled for several instruction sets.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "InstructionSets.h"
#include "support/InstructionSets.h"

namespace {

using QyVectors::InstructionSet;

#if defined(__x86_64__)

/// What the system says that its first processor has.
std::vector<std::string> SystemFlags() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("flags")) {
            std::istringstream words(line.substr(line.find(':') + 1));
            return {std::istream_iterator<std::string>(words),
                    std::istream_iterator<std::string>()};
        }
    }
    return {};
}

TEST(InstructionSets, AreThoseThatTheSystemTellsOf) {
    const std::vector<std::string> flags = SystemFlags();
    const auto has = [&flags](const std::vector<std::string>& names) {
        return std::all_of(names.begin(), names.end(), [&flags](const std::string& name) {
            return std::find(flags.begin(), flags.end(), name) != flags.end();
        });
    };
    EXPECT_EQ(QyVectors::IsAvailable(InstructionSet::Sse4), has({"sse4_1", "sse4_2"}));
    EXPECT_EQ(QyVectors::IsAvailable(InstructionSet::Avx2), has({"avx2", "bmi2", "fma"}));
    EXPECT_EQ(QyVectors::IsAvailable(InstructionSet::Avx512), has({"avx512bw", "avx512vl"}));
    EXPECT_EQ(QyVectors::IsAvailable(InstructionSet::Avx512Dl),
              has({"avx512bw", "avx512vl", "avx512_vbmi2", "avx512_bitalg"}));
}

#else

TEST(InstructionSets, AreTheBaselineAloneOnOtherMachines) {
    EXPECT_EQ(QyVectors::BestSet(), InstructionSet::Baseline);
}

#endif

TEST(InstructionSets, EveryMachineHasTheBaseline) {
    EXPECT_TRUE(QyVectors::IsAvailable(InstructionSet::Baseline));
}

TEST(InstructionSets, TheBestIsChosenUnlessATestChoosesAnother) {
    EXPECT_EQ(QyVectors::ChosenSet(), QyVectors::BestSet());
    {
        const OnlyInstructionSet only(InstructionSet::Baseline);
        EXPECT_EQ(QyVectors::ChosenSet(), InstructionSet::Baseline);
    }
    EXPECT_EQ(QyVectors::ChosenSet(), QyVectors::BestSet());
}

TEST(InstructionSets, TheLoopOfTheChosenOneIsCalled) {
    const QyVectors::Variants<int (*)(int)> loop{
        {[](int x) { return x; }, [](int x) { return 10 + x; }, [](int x) { return 20 + x; },
         [](int x) { return 30 + x; }, [](int x) { return 40 + x; }}};
    for (size_t i = 0; i < QyVectors::kInstructionSets; ++i) {
        const OnlyInstructionSet only(static_cast<InstructionSet>(i));
        EXPECT_EQ(loop(5), static_cast<int>(10 * i) + 5);
    }
}

}  // namespace
