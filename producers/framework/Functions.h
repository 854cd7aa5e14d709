#pragma once
/// The flat functions as numbers, in the order of the table of entry points.

#include <cstddef>
#include <string_view>

#include "GenTL/GenTL.h"

namespace OvProducer {

#define OV_PRODUCER_ENUMERATOR(name, parameters) name,
enum class Function : size_t { OV_GENTL_FUNCTIONS(OV_PRODUCER_ENUMERATOR) Count };
#undef OV_PRODUCER_ENUMERATOR

constexpr size_t kFunctionCount = static_cast<size_t>(Function::Count);

/// The entry point's name.
std::string_view NameOf(Function function);
/// `Function::Count` for a name that is none.
Function FunctionNamed(std::string_view name);

}  // namespace OvProducer
