#pragma once
/// The description files that tests go through.

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace EngineTest {

/// The descriptions that come with the library, and those of the folder that the
/// environment may name, in order.
/// @param sources  the top folder of the sources
inline std::vector<std::filesystem::path> Descriptions(const std::filesystem::path& sources) {
    std::vector<std::filesystem::path> folders{sources / "producers/virtual/descriptions",
                                               sources / "producers/framework/descriptions",
                                               sources / "tests/producer/descriptions"};
    if (const char* const folder = std::getenv("OV_TEST_DESCRIPTIONS")) {
        folders.emplace_back(folder);
    }
    std::vector<std::filesystem::path> files;
    for (const auto& folder : folders) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".xml") {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// A file's name as the name of a test.
inline std::string TestNameOf(const std::filesystem::path& file) {
    std::string name = file.stem();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

}  // namespace EngineTest
