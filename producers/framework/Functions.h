/// @file
/// The flat functions as numbers, in the order of the table of entry points.
#ifndef OV_PRODUCER_FUNCTIONS_H
#define OV_PRODUCER_FUNCTIONS_H

#include <cstddef>
#include <string_view>

#include "GenTL/GenTL.h"

namespace OvProducer {

#define OV_PRODUCER_ENUMERATOR(name, parameters) name,
enum class Function : std::size_t { OV_GENTL_FUNCTIONS(OV_PRODUCER_ENUMERATOR) Count };
#undef OV_PRODUCER_ENUMERATOR

constexpr std::size_t kFunctionCount = static_cast<std::size_t>(Function::Count);

/// The entry point's name.
std::string_view NameOf(Function function);
/// `Function::Count` for a name that is none.
Function FunctionNamed(std::string_view name);

}  // namespace OvProducer

#endif
