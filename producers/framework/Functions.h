#pragma once
/// The GenTL entry points as an enumeration, in the order of their tables.

#include <cstddef>
#include <string_view>

#include "GenTL/GenTL.h"

namespace OvProducer {

#define OV_PRODUCER_ENUMERATOR(name, parameters) name,
enum class Function : size_t {
    OV_GENTL_FUNCTIONS(OV_PRODUCER_ENUMERATOR) OV_GENTL_OPTIONAL_FUNCTIONS(OV_PRODUCER_ENUMERATOR)
        Count
};
#undef OV_PRODUCER_ENUMERATOR

constexpr size_t kFunctionCount = static_cast<size_t>(Function::Count);

/// The entry point's name.
std::string_view NameOf(Function function);
/// Returns `Function::Count` if no entry point has this name.
Function FunctionNamed(std::string_view name);

}  // namespace OvProducer
