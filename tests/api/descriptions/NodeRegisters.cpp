#include "NodeRegisters.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <unordered_set>

#include "FeatureValues.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

std::vector<IRegister*> SourceRegistersOf(INode& node) {
    std::vector<INode*> sources{&node};
    std::unordered_set<INode*> seen{&node};
    std::vector<IRegister*> registers;
    const auto addAll = [&](const node_vector& found) {
        for (INode* const source : found) {
            if (seen.insert(source).second) {
                sources.push_back(source);
            }
        }
    };
    for (size_t i = 0; i < sources.size(); ++i) {
        node_vector found;
        sources[i]->GetChildren(found, ReadingChildren);
        addAll(found);
        if (auto* const choice = dynamic_cast<IEnumeration*>(sources[i])) {
            choice->GetEntries(found);
            addAll(found);
        }
        if (auto* const reg = dynamic_cast<IRegister*>(sources[i])) {
            registers.push_back(reg);
        }
    }
    return registers;
}

bool IsInRegisters(INode& node) {
    node_vector terminals;
    node.GetChildren(terminals, TerminalNodes);
    return !terminals.empty() &&
           std::all_of(
               terminals.begin().operator->(), terminals.end().operator->(),
               [](INode* terminal) { return dynamic_cast<IRegister*>(terminal) != nullptr; });
}

void Put(IRegister& reg, int64_t number) {
    constexpr bool verify = false;
    if (auto* const integer = dynamic_cast<IInteger*>(&reg)) {
        integer->SetValue(number, verify);
    } else if (auto* const real = dynamic_cast<IFloat*>(&reg)) {
        real->SetValue(static_cast<double>(number), verify);
    }
}

void PutAtMost(IRegister& reg, int64_t number) {
    const auto isTaken = [&] {
        Put(reg, number);
        return true;
    };
    while (!Holds(isTaken) && number > 1) {
        number /= 2;
    }
}

void PutText(IRegister& reg, OvTest::MadeUpMemory& memory) {
    constexpr std::string_view text("Made-up\0", 8);
    const size_t length = std::min(text.size(), static_cast<size_t>(reg.GetLength()));
    memory.Write(static_cast<uint64_t>(reg.GetAddress()),
                 std::as_bytes(std::span(text.data(), length)));
}
