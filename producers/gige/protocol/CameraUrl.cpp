#include "gige/protocol/CameraUrl.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace OvGige {
namespace {

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
    const bool has = text.size() >= prefix.size() &&
                     std::equal(prefix.begin(), prefix.end(), text.begin(),
                                [](char wanted, char c) { return wanted == Lower(c); });
    if (has) {
        text.remove_prefix(prefix.size());
    }
    return has;
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The text up to `separator`, which is taken away with it.
std::string_view TakeField(std::string_view& text, char separator) {
    const size_t end = std::min(text.find(separator), text.size());
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return Trimmed(field);
}

std::optional<uint64_t> ParseHex(std::string_view text) {
    TakePrefix(text, "0x");
    uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

std::string_view WithoutFolders(std::string_view path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

std::optional<CameraUrl> ParseLocal(std::string_view text) {
    const std::string_view name = WithoutFolders(TakeField(text, ';'));
    const auto address = ParseHex(TakeField(text, ';'));
    const auto size = ParseHex(TakeField(text, ';'));
    if (name.empty() || !address || !size || *size == 0) {
        return {};
    }
    return CameraUrl{.place = CameraUrl::Place::Camera,
                     .fileName = std::string(name),
                     .path = {},
                     .address = *address,
                     .size = *size};
}

/// `path` without the slashes of the form "file:///C:/...": on this machine a path begins
/// with one at most.
std::string HostPath(std::string_view path) {
    if (path.starts_with("//")) {
        path.remove_prefix(2);
    }
    return std::string(path);
}

std::optional<CameraUrl> Elsewhere(CameraUrl::Place place, std::string path) {
    const std::string name(WithoutFolders(path));
    if (name.empty()) {
        return {};
    }
    return CameraUrl{
        .place = place, .fileName = name, .path = std::move(path), .address = 0, .size = 0};
}

}  // namespace

std::optional<CameraUrl> ParseCameraUrl(std::string_view text) {
    text = Trimmed(text.substr(0, text.find('?')));
    const std::string whole(text);
    if (TakePrefix(text, "local:")) {
        return ParseLocal(text);
    }
    if (TakePrefix(text, "file:")) {
        return Elsewhere(CameraUrl::Place::Host, HostPath(Trimmed(text)));
    }
    if (TakePrefix(text, "http:") || TakePrefix(text, "https:")) {
        return Elsewhere(CameraUrl::Place::Web, whole);
    }
    return {};
}

}  // namespace OvGige
