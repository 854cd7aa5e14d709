// Counts what was compared, since a run that compares nothing passes as well.

#include "Cases.h"

#include <cstdio>
#include <map>
#include <memory>

#include "InstructionSets.h"

namespace {

std::map<int64_t, size_t>& Counts() {
    static std::map<int64_t, size_t> counts;
    return counts;
}

class Summary : public testing::Environment {
public:
    void TearDown() override {
        for (const auto& [target, count] : Counts()) {
            std::printf("[  CASES   ] %zu by %s\n", count, hwy::TargetName(target));
        }
    }
};

const testing::Environment* const kSummary =
    testing::AddGlobalTestEnvironment(std::make_unique<Summary>().release());

}  // namespace

void CountCase() {
    ++Counts()[hwy::SupportedAndGeneratedTargets().front()];
}
