/// @file
/// Steers the test producer by the environment, for tests that run a program of its own:
/// `OV_TEST_STEERING` holds a call of the control interface a line, as in
///
///     SetFrame 0 0 Incomplete 1
///
/// Texts end with their line. A description is named by its file.
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

#include "OvTestControl.h"

#define OV_TEST_DECLARE(result, name, parameters) extern "C" result OvTest_##name parameters;
OV_TEST_FUNCTIONS(OV_TEST_DECLARE)
#undef OV_TEST_DECLARE

namespace {

/// The next words of a line, and its rest.
class Line {
public:
    explicit Line(const std::string& text) : m_in(text) {}

    std::string Word() {
        std::string word;
        m_in >> word;
        return word;
    }
    template <typename Number>
    Number Take() {
        Number number{};
        m_in >> number;
        return number;
    }
    std::string Rest() {
        std::string rest;
        std::getline(m_in >> std::ws, rest);
        return rest;
    }

private:
    std::istringstream m_in;
};

int SetFrame(Line& line) {
    const auto iface = line.Take<unsigned>();
    const auto device = line.Take<unsigned>();
    const std::string key = line.Word();
    return OvTest_SetFrame(iface, device, key.c_str(), line.Take<std::int64_t>());
}

int SetFreeRunning(Line& line) {
    const auto iface = line.Take<unsigned>();
    const auto device = line.Take<unsigned>();
    return OvTest_SetFreeRunning(iface, device, line.Take<int>());
}

int SetDeviceText(Line& line) {
    const auto iface = line.Take<unsigned>();
    const auto device = line.Take<unsigned>();
    const std::string key = line.Word();
    return OvTest_SetDeviceText(iface, device, key.c_str(), line.Rest().c_str());
}

int FailCall(Line& line) {
    const std::string function = line.Word();
    const auto nth = line.Take<unsigned>();
    return OvTest_FailCall(function.c_str(), nth, line.Take<std::int32_t>());
}

int SetDescription(Line& line) {
    const std::string module = line.Word();
    const std::string name = line.Word();
    std::ifstream file(line.Rest(), std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    return OvTest_SetDescription(module.c_str(), name.c_str(), content.data(), content.size());
}

void Steer(const std::string& script) {
    const std::map<std::string, std::function<int(Line&)>> calls = {
        {"SetFrame", SetFrame},
        {"SetFreeRunning", SetFreeRunning},
        {"SetDeviceText", SetDeviceText},
        {"FailCall", FailCall},
        {"SetDescription", SetDescription}};
    std::istringstream lines(script);
    for (std::string text; std::getline(lines, text);) {
        Line line(text);
        const auto call = calls.find(line.Word());
        if (call == calls.end() || call->second(line) != 0) {
            throw std::runtime_error("The producer can't be steered by: " + text);
        }
    }
}

// A wrong script ends the program at once, which no test takes for a result.
[[maybe_unused]] const bool kIsSteered = [] {
    if (const char* const script = std::getenv("OV_TEST_STEERING")) {
        Steer(script);
    }
    return true;
}();

}  // namespace
