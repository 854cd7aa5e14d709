#pragma once
/// Actions on a way that must reach its end: what they throw is logged.

namespace OVTLClass {

/// Logs the exception that is being handled, of whatever family.
void LogCaught(const char* file, int line, const char* function) noexcept;

/// Runs `action`, logs an exception of any family, and returns. It takes no memory:
/// a way down must reach its end without any.
template <class Action>
void RunLogged(const Action& action, const char* file, int line, const char* function) noexcept {
    try {
        action();
    } catch (...) {
        LogCaught(file, line, function);
    }
}

}  // namespace OVTLClass

/// Runs one action; what it throws is logged with the place of this line.
#define OV_RUN_LOGGED(...) ::OVTLClass::RunLogged((__VA_ARGS__), __FILE__, __LINE__, __func__)
