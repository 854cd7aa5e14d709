#include "gige/device/CameraDescription.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/CameraUrl.h"

namespace OvGige {
namespace {

using OvProducer::Failure;
using OvProducer::Port;

/// No camera has a description near this size; one that says so means something else.
constexpr uint64_t kDescriptionMax = 256ULL << 20;

[[noreturn]] void ThrowUnavailable(const std::string& text) {
    throw Failure(GenTL::GC_ERR_NOT_AVAILABLE, text);
}

std::string ReadUrl(CameraMemory& camera, TextRegister place) {
    Bytes text(place.width);
    camera.Read(place.address, text);
    // Some cameras fill the whole register; its last byte is a zero all the same.
    text.back() = std::byte{0};
    return ReadText(text);
}

/// A description is an XML text, which begins with "<" after a mark of its encoding at most,
/// or a zip archive.
bool IsBeginning(ByteView bytes) {
    constexpr std::array kZip{std::byte{'P'}, std::byte{'K'}, std::byte{3}, std::byte{4}};
    constexpr std::array kUtf8Mark{std::byte{0xEF}, std::byte{0xBB}, std::byte{0xBF}};
    const auto begins = [bytes](const auto& with) {
        return bytes.size() >= with.size() && std::equal(with.begin(), with.end(), bytes.begin());
    };
    const auto isBlank = [](std::byte b) {
        return b == std::byte{' '} || b == std::byte{'\n'} || b == std::byte{'\r'} ||
               b == std::byte{'\t'};
    };
    const auto first = std::find_if_not(bytes.begin(), bytes.end(), isBlank);
    return begins(kZip) || begins(kUtf8Mark) || (first != bytes.end() && *first == std::byte{'<'});
}

void AddFromCamera(CameraMemory& camera, Port& port, const CameraUrl& url) {
    if (url.size > kDescriptionMax || url.address > kHostFileAddress - url.size) {
        ThrowUnavailable("it can't have " + std::to_string(url.size) + " bytes there");
    }
    constexpr uint64_t kBeginning = 16;
    Bytes beginning(std::min(url.size, kBeginning));
    camera.Read(url.address, beginning);
    if (!IsBeginning(beginning)) {
        ThrowUnavailable("neither an XML text nor a zip archive is there");
    }
    port.AddPlace(url.fileName, url.address, url.size);
}

void AddFromHost(Port& port, const CameraUrl& url) {
    std::ifstream file(url.path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    const ByteView bytes = std::as_bytes(std::span(content));
    if (!file.is_open() || !IsBeginning(bytes)) {
        ThrowUnavailable("this machine has no such description");
    }
    port.AddFile(url.fileName, {bytes.begin(), bytes.end()}, kHostFileAddress);
}

void AddFrom(CameraMemory& camera, Port& port, const std::string& text) {
    const auto url = ParseCameraUrl(text);
    if (!url) {
        ThrowUnavailable("that names no description");
    }
    switch (url->place) {
        case CameraUrl::Place::Camera:
            return AddFromCamera(camera, port, *url);
        case CameraUrl::Place::Host:
            return AddFromHost(port, *url);
        default:
            ThrowUnavailable("descriptions on the web aren't fetched");
    }
}

/// Why a place can't be used; empty when it is.
std::string TryPlace(CameraMemory& camera, Port& port, TextRegister place) {
    std::string text;
    try {
        text = ReadUrl(camera, place);
        AddFrom(camera, port, text);
        return {};
    } catch (const Failure& failure) {
        return "\"" + text + "\": " + failure.what();
    }
}

}  // namespace

void AddCameraDescription(CameraMemory& camera, Port& port) {
    const std::string first = TryPlace(camera, port, kRegFirstUrl);
    if (first.empty()) {
        return;
    }
    const std::string second = TryPlace(camera, port, kRegSecondUrl);
    if (!second.empty()) {
        ThrowUnavailable("The camera's description can't be had: " + first + "; " + second);
    }
}

}  // namespace OvGige
