#pragma once
/// The description files that tests go through.

#include "support/DescriptionFolder.h"

namespace EngineTest {

/// The descriptions that come with the library, and those of the folder that the
/// environment may name, in order.
/// @param sources  the top folder of the sources
inline std::vector<std::filesystem::path> Descriptions(const std::filesystem::path& sources) {
    std::vector<std::filesystem::path> files = FilesOfDescriptionFolder();
    for (const char* const folder :
         {"producers/virtual/descriptions", "producers/framework/descriptions",
          "tests/producer/descriptions"}) {
        const auto found = DescriptionsIn(sources / folder);
        files.insert(files.end(), found.begin(), found.end());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// A file's name as the name of a test.
inline std::string TestNameOf(const std::filesystem::path& file) {
    return ::TestNameOf(file.stem().string());
}

}  // namespace EngineTest
