#include "framework/Functions.h"

#include <algorithm>
#include <array>

namespace OvProducer {
namespace {

#define OV_PRODUCER_NAME(name, parameters) #name,
constexpr std::array<std::string_view, kFunctionCount> kNames = {
    OV_GENTL_FUNCTIONS(OV_PRODUCER_NAME) OV_GENTL_OPTIONAL_FUNCTIONS(OV_PRODUCER_NAME)};
#undef OV_PRODUCER_NAME

}  // namespace

std::string_view NameOf(Function function) {
    return kNames[static_cast<size_t>(function)];
}

Function FunctionNamed(std::string_view name) {
    const auto found = std::find(kNames.begin(), kNames.end(), name);
    return static_cast<Function>(found - kNames.begin());
}

}  // namespace OvProducer
