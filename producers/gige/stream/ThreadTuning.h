#pragma once
/// Where and how urgently a thread runs.

#include <string>

namespace OvGige {

/// Both return why it can't be had, or an empty text.
///@{
/// @param priority  1 to 99: before all normal threads, 99 first of all; 0: a normal thread
std::string SetThreadPriority(int priority);
/// @param processor  number of the processor; negative: any
std::string SetThreadProcessor(int processor);
///@}

}  // namespace OvGige
