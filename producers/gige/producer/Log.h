#pragma once
/// Lines in the user's log for what no call returns.

#include <string_view>

namespace OvGige {

void LogWarning(std::string_view line);

}  // namespace OvGige
