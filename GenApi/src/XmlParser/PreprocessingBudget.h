#pragma once

#include "Base/GCException.h"
#include "NodeMapData/DescriptionLimits.h"

namespace GenApi_3_0_ORVANE {

/// Counts what one preprocessing adds and does, and ends it with a
/// RuntimeException before either passes its bound.
class CPreprocessingBudget {
public:
    void SpendProperties(size_t count) {
        m_NumProperties += count;
        if (m_NumProperties > kMaxDerivedProperties) {
            RUNTIME_EXCEPTION(
                "Error in XML stream : the nodes are linked too closely, preprocessing would add "
                "more than %zu properties",
                kMaxDerivedProperties);
        }
    }
    void SpendSteps(size_t count) {
        m_NumSteps += count;
        if (m_NumSteps > kMaxPreprocessingSteps) {
            RUNTIME_EXCEPTION(
                "Error in XML stream : the nodes are linked too closely, preprocessing would take "
                "more than %zu steps",
                kMaxPreprocessingSteps);
        }
    }

    size_t GetNumProperties() const { return m_NumProperties; }
    size_t GetNumSteps() const { return m_NumSteps; }

private:
    size_t m_NumProperties = 0;
    size_t m_NumSteps = 0;
};

}  // namespace GenApi_3_0_ORVANE
