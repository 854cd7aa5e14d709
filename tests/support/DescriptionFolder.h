#pragma once
/// The camera descriptions that the environment may name.

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

/// The .xml files of a folder, in order.
inline std::vector<std::filesystem::path> DescriptionsIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".xml") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Those of the folder of OV_TEST_DESCRIPTIONS; none when it isn't set or empty.
inline std::vector<std::filesystem::path> FilesOfDescriptionFolder() {
    const char* const folder = std::getenv("OV_TEST_DESCRIPTIONS");
    return folder == nullptr || *folder == '\0' ? std::vector<std::filesystem::path>{}
                                                : DescriptionsIn(folder);
}

/// A text as a part of the name of a test.
inline std::string TestNameOf(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return text;
}
