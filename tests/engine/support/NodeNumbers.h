#pragma once
/// The values of nodes of any kind as whole numbers.

#include <cstdint>
#include <vector>

#include "NodeGraph.h"

namespace EngineTest {

/// What a call gives, or the fallback where it fails.
template <class Result, class Call>
Result ResultOr(const Result& fallback, const Call& call) {
    try {
        return call();
    } catch (const GenericException&) {
        return fallback;
    }
}

/// Whether a node has numbers; texts and bytes have none.
bool IsNumber(IValue& node);
/// The value of a node as a number, whole ones of floats; 0 for texts.
int64_t NumberOf(IValue& node);
void SetNumber(IValue& node, int64_t number, bool verify);
/// What the node can be set to: all entries that are there, the first whole numbers
/// within an integer's limits, the outermost ones within a float's.
std::vector<int64_t> NumbersFor(IValue& node, size_t most);
/// Whether the node can be set to a number.
bool Takes(IValue& node, int64_t number);
/// Whether the value of a node is one that it can be set to.
bool HasValidNumber(IValue& node);

}  // namespace EngineTest
