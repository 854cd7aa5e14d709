// Counts what was compared, since a run that compares nothing passes as well.

#include "Cases.h"

#include <cstdio>
#include <map>
#include <memory>

#include "InstructionSets.h"

namespace {

std::map<QyVectors::InstructionSet, size_t>& Counts() {
    static std::map<QyVectors::InstructionSet, size_t> counts;
    return counts;
}

class Summary : public testing::Environment {
public:
    void TearDown() override {
        for (const auto& [set, count] : Counts()) {
            std::printf("[  CASES   ] %zu by %s\n", count, QyVectors::NameOf(set));
        }
    }
};

const testing::Environment* const kSummary =
    testing::AddGlobalTestEnvironment(std::make_unique<Summary>().release());

}  // namespace

void CountCase() {
    ++Counts()[QyVectors::ChosenSet()];
}
