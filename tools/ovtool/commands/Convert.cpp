#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "commands/Commands.h"
#include "pipeline/Picture.h"
#include "pipeline/Pipeline.h"
#include "pipeline/PixelFormat.h"
#include "support/Error.h"
#include "support/Json.h"

namespace {

void CheckSide(const char* name, int32_t side) {
    if (side < 1 || side > kLongestSide) {
        throw UsageError(std::string(name) + " " + std::to_string(side) + " is outside 1 to " +
                         std::to_string(kLongestSide));
    }
}

RawFrame ReadFrame(const std::string& path, const ConvertOptions& options,
                   const PixelFormat& format) {
    RawFrame frame;
    frame.width = options.width;
    frame.height = options.height;
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error) {
        throw ToolError("can't read " + path + ": " + error.message());
    }
    const size_t expected =
        format.Bytes(static_cast<size_t>(frame.width), static_cast<size_t>(frame.height));
    if (size != expected) {
        throw ToolError(path + " holds " + std::to_string(size) + " bytes, but " +
                        std::to_string(frame.width) + "x" + std::to_string(frame.height) + " of " +
                        format.name + " takes " + std::to_string(expected));
    }
    std::ifstream file(path, std::ios::binary);
    frame.bytes.resize(expected);
    file.read(reinterpret_cast<char*>(frame.bytes.data()), static_cast<std::streamsize>(expected));
    if (!file) {
        throw ToolError("can't read " + path);
    }
    return frame;
}

std::string OutputOf(const std::string& file, const ConvertOptions& options) {
    std::string output = options.output.empty()
                             ? std::filesystem::path(file).replace_extension("png").string()
                             : options.output;
    if (output == file) {
        throw UsageError(file + " would be overwritten by its own picture; name another by -o");
    }
    return output;
}

void Save(const Picture& picture, const std::string& path) {
    if (std::filesystem::path(path).extension() == ".raw") {
        WriteBytes(picture.bytes, path);
    } else {
        WritePng(picture, path);
    }
}

}  // namespace

void Convert(const ConvertOptions& options, bool json) {
    const PixelFormat& format = RequirePixelFormat(options.pixelFormat);
    CheckSide("--width", options.width);
    CheckSide("--height", options.height);
    if (!options.output.empty() && options.files.size() > 1) {
        throw UsageError("-o names the picture of one file; there are " +
                         std::to_string(options.files.size()));
    }
    Json pictures = Json::array();
    for (const std::string& file : options.files) {
        const std::string output = OutputOf(file, options);
        const Picture picture =
            ProcessFrame(ReadFrame(file, options, format), format, options.pipeline);
        Save(picture, output);
        if (json) {
            Json described = {{"file", file}, {"output", output}};
            described.update(ToJson(picture));
            pictures.push_back(described);
        } else {
            std::printf("%s -> %s: %s\n", file.c_str(), output.c_str(), ToText(picture).c_str());
        }
    }
    if (json) {
        PrintJson({{"pictures", pictures}});
    }
}
