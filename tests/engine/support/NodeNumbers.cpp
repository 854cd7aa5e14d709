#include "NodeNumbers.h"

#include <algorithm>
#include <cmath>

#include "GenApi/IBoolean.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"

namespace EngineTest {

namespace {

std::vector<int64_t> AvailableEntries(IEnumeration& choice) {
    node_vector entries;
    choice.GetEntries(entries);
    std::vector<int64_t> numbers;
    for (INode* const entry : entries) {
        if (IsAvailable(entry->GetAccessMode())) {
            numbers.push_back(dynamic_cast<IEnumEntry&>(*entry).GetValue());
        }
    }
    return numbers;
}

std::vector<int64_t> WithinLimits(int64_t min, int64_t max, int64_t inc, size_t most) {
    std::vector<int64_t> numbers;
    for (int64_t number = min; number <= max && numbers.size() < most;) {
        numbers.push_back(number);
        if (__builtin_add_overflow(number, inc, &number)) {
            break;
        }
    }
    return numbers;
}

/// Far from each other, as a converter may take neighbours for one number.
std::vector<int64_t> Outermost(double min, double max) {
    constexpr double kMost = 1e6;
    const double low = std::max(std::ceil(min), -kMost);
    const double high = std::min(std::floor(max), std::max(kMost, 10 * std::abs(low)));
    if (!(low <= high) || std::abs(low) > std::pow(2, 53)) {
        return {};
    }
    std::vector<int64_t> numbers{static_cast<int64_t>(low)};
    if (low < high) {
        numbers.push_back(static_cast<int64_t>(high));
    }
    return numbers;
}

}  // namespace

bool IsNumber(IValue& node) {
    return dynamic_cast<IInteger*>(&node) != nullptr || dynamic_cast<IFloat*>(&node) != nullptr ||
           dynamic_cast<IEnumeration*>(&node) != nullptr ||
           dynamic_cast<IBoolean*>(&node) != nullptr;
}

int64_t NumberOf(IValue& node) {
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        return integer->GetValue();
    }
    if (auto* const real = dynamic_cast<IFloat*>(&node)) {
        return static_cast<int64_t>(real->GetValue());
    }
    if (auto* const choice = dynamic_cast<IEnumeration*>(&node)) {
        return choice->GetIntValue();
    }
    auto* const flag = dynamic_cast<IBoolean*>(&node);
    return flag != nullptr && flag->GetValue() ? 1 : 0;
}

void SetNumber(IValue& node, int64_t number, bool verify) {
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        integer->SetValue(number, verify);
    } else if (auto* const real = dynamic_cast<IFloat*>(&node)) {
        real->SetValue(static_cast<double>(number), verify);
    } else if (auto* const choice = dynamic_cast<IEnumeration*>(&node)) {
        choice->SetIntValue(number, verify);
    } else if (auto* const flag = dynamic_cast<IBoolean*>(&node)) {
        flag->SetValue(number != 0, verify);
    }
}

std::vector<int64_t> NumbersFor(IValue& node, size_t most) {
    if (auto* const choice = dynamic_cast<IEnumeration*>(&node)) {
        return AvailableEntries(*choice);
    }
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        const int64_t inc = integer->GetInc();
        return inc < 1 ? std::vector<int64_t>()
                       : WithinLimits(integer->GetMin(), integer->GetMax(), inc, most);
    }
    if (auto* const real = dynamic_cast<IFloat*>(&node)) {
        return Outermost(real->GetMin(), real->GetMax());
    }
    return dynamic_cast<IBoolean*>(&node) != nullptr ? std::vector<int64_t>{0, 1}
                                                     : std::vector<int64_t>();
}

bool Takes(IValue& node, int64_t number) {
    if (auto* const integer = dynamic_cast<IInteger*>(&node)) {
        const int64_t min = integer->GetMin();
        const int64_t inc = integer->GetInc();
        return inc > 0 && min <= number && number <= integer->GetMax() &&
               (static_cast<uint64_t>(number) - static_cast<uint64_t>(min)) %
                       static_cast<uint64_t>(inc) ==
                   0;
    }
    if (auto* const real = dynamic_cast<IFloat*>(&node)) {
        const auto value = static_cast<double>(number);
        return real->GetMin() <= value && value <= real->GetMax();
    }
    const std::vector<int64_t> numbers = NumbersFor(node, 2);
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool HasValidNumber(IValue& node) {
    return Takes(node, NumberOf(node));
}

}  // namespace EngineTest
