#include "PictureText.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

std::string ToText(const Picture& picture) {
    std::array<char, 128> text{};
    std::snprintf(text.data(), text.size(), "%ux%u, %d channel%s of %d bits", picture.width,
                  picture.height, picture.channels, picture.channels == 1 ? "" : "s",
                  picture.bitDepth);
    std::string result = text.data();
    if (picture.balance) {
        const auto [red, green, blue] = *picture.balance;
        std::snprintf(text.data(), text.size(), ", balance %.4g,%.4g,%.4g", red, green, blue);
        result += text.data();
    }
    return result;
}

Json ToJson(const Picture& picture) {
    Json balance = nullptr;
    if (picture.balance) {
        balance = *picture.balance;
    }
    return {{"width", picture.width},
            {"height", picture.height},
            {"channels", picture.channels},
            {"bits", picture.bitDepth},
            {"balance", balance}};
}
