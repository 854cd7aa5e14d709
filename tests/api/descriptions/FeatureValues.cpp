#include "FeatureValues.h"

#include <algorithm>
#include <cstdint>

#include "GenApi/IBoolean.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IString.h"

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

namespace {

using GenICam_3_0_ORVANE::gcstring;
using GenICam_3_0_ORVANE::gcstring_vector;

bool IsWithinLimits(IInteger& feature) {
    const int64_t value = feature.GetValue();
    const int64_t min = feature.GetMin();
    const int64_t inc = feature.GetInc();
    return value >= min && value <= feature.GetMax() && inc > 0 && (value - min) % inc == 0;
}

bool IsWithinLimits(IFloat& feature) {
    const double value = feature.GetValue();
    return value >= feature.GetMin() && value <= feature.GetMax();
}

bool IsText(IString& feature) {
    const gcstring text = feature.GetValue();
    return !text.empty() && std::all_of(text.c_str(), text.c_str() + text.size(),
                                        [](unsigned char c) { return c >= 0x20 && c < 0x7F; });
}

/// Whether the value is one that a client may write.
bool IsAllowed(IValue& value) {
    if (auto* const integer = dynamic_cast<IInteger*>(&value)) {
        return IsWithinLimits(*integer);
    }
    if (auto* const real = dynamic_cast<IFloat*>(&value)) {
        return IsWithinLimits(*real);
    }
    if (auto* const choice = dynamic_cast<IEnumeration*>(&value)) {
        IEnumEntry* const entry = choice->GetCurrentEntry();
        return entry != nullptr && IsAvailable(entry->GetAccessMode());
    }
    auto* const text = dynamic_cast<IString*>(&value);
    return text == nullptr || IsText(*text);
}

}  // namespace

bool IsShown(IValue& value) {
    return Holds([&] {
        if (IsReadable(value.GetAccessMode())) {
            value.ToString();
        }
        return true;
    });
}

bool IsLegal(IValue& value) {
    return IsShown(value) && Holds([&] {
               const EAccessMode mode = value.GetAccessMode();
               const bool isText = dynamic_cast<IString*>(&value) != nullptr;
               return !IsReadable(mode) || (mode == RO && !isText) || IsAllowed(value);
           });
}

void SetToFirst(IValue& value) {
    if (auto* const integer = dynamic_cast<IInteger*>(&value)) {
        integer->SetValue(integer->GetMin());
    } else if (auto* const real = dynamic_cast<IFloat*>(&value)) {
        real->SetValue(real->GetMin() / 2 + real->GetMax() / 2);  // the least may round down
    } else if (auto* const flag = dynamic_cast<IBoolean*>(&value)) {
        flag->SetValue(false);
    } else if (auto* const choice = dynamic_cast<IEnumeration*>(&value)) {
        gcstring_vector names;
        choice->GetSymbolics(names);
        if (!names.empty()) {
            *choice = names[0];
        }
    }
}
