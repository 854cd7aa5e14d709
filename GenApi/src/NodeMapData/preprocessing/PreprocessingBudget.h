#pragma once

#include "Base/GCException.h"
#include "nodes/DescriptionLimits.h"

namespace GenApi_3_0_ORVANE {

/// Counts what one preprocessing adds and does, and ends it with a
/// RuntimeException before either passes its bound.
class CPreprocessingBudget {
public:
    void SpendProperties(size_t count) {
        Spend(m_NumProperties, count, kMaxDerivedProperties, "add", "properties");
    }
    void SpendSteps(size_t count) {
        Spend(m_NumSteps, count, kMaxPreprocessingSteps, "take", "steps");
    }

    size_t GetNumProperties() const { return m_NumProperties; }
    size_t GetNumSteps() const { return m_NumSteps; }

private:
    static void Spend(size_t& spent, size_t count, size_t limit, const char* verb,
                      const char* what) {
        spent += count;
        if (spent > limit) {
            RUNTIME_EXCEPTION(
                "Error in XML stream : the nodes are linked too closely, preprocessing would %s "
                "more than %zu %s",
                verb, limit, what);
        }
    }

    size_t m_NumProperties = 0;
    size_t m_NumSteps = 0;
};

}  // namespace GenApi_3_0_ORVANE
