#pragma once
/// Descriptions whose maps cache nothing.

#include <string>
#include <string_view>

/// Returns the description with caching switched off for every register.
inline std::string WithoutCaching(std::string_view description) {
    static constexpr std::string_view kBegin = "<Cachable>";
    static constexpr std::string_view kEnd = "</Cachable>";
    static constexpr std::string_view kPort = "</pPort>";
    std::string result;
    while (!description.empty()) {
        if (description.starts_with(kBegin)) {
            description.remove_prefix(description.find(kEnd) + kEnd.size());
        } else if (description.starts_with(kPort)) {
            result.append(kPort).append("<Cachable>NoCache</Cachable>");
            description.remove_prefix(kPort.size());
        } else {
            const std::string_view text = description.substr(0, description.find('<', 1));
            result.append(text);
            description.remove_prefix(text.size());
        }
    }
    return result;
}
