#pragma once
/// The arguments that a function refuses, and the order of its checks.

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "QyImageProc.h"

/// An argument that is refused. Of two such arguments, the earlier one in the table
/// decides.
/// @tparam Call  the arguments of a call that succeeds, to be spoilt one by one
template <class Call>
struct Refusal {
    const char* name;
    void (*spoil)(Call& call);
    QY_STATUS status;
};

/// Spoils every pair of arguments. `IsUntouched()` of the call returns whether its
/// results haven't changed.
template <class Call, class Run>
void ExpectFirstRefusalDecides(const std::vector<Refusal<Call>>& refusals, const Run& run) {
    {
        Call call;
        EXPECT_EQ(run(call), QY_OK);
        EXPECT_FALSE(call.IsUntouched());
    }
    for (size_t first = 0; first < refusals.size(); ++first) {
        for (size_t second = first; second < refusals.size(); ++second) {
            Call call;
            refusals[second].spoil(call);
            refusals[first].spoil(call);
            EXPECT_EQ(run(call), refusals[first].status)
                << refusals[first].name << " before " << refusals[second].name;
            EXPECT_TRUE(call.IsUntouched())
                << refusals[first].name << " before " << refusals[second].name;
        }
    }
}
