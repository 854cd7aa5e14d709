/// @file
/// Settings of whatever a description says, saved and restored.
#include <unistd.h>

#include <sstream>

#include "FileCameraTest.h"

namespace {

/// A value of the feature that isn't the one it has; nothing when there is none.
std::optional<FeatureValue> AnotherValue(const Feature& feature) {
    const FeatureValue value = feature.Read().value;
    if (const auto* const number = std::get_if<int64_t>(&value)) {
        std::vector<int64_t> values;
        if (feature.Type() == OV_FEATURE_TYPE_ENUM) {
            for (const OV_ENUM_DESCRIPTION& entry : feature.Entries().value) {
                values.push_back(entry.nValue);
            }
        } else {
            values = {feature.IntRange().value.nMin, feature.IntRange().value.nMax};
        }
        const auto other = std::find_if(values.begin(), values.end(),
                                        [&](int64_t candidate) { return candidate != *number; });
        return other == values.end() ? std::nullopt : std::optional<FeatureValue>(*other);
    }
    if (const auto* const number = std::get_if<double>(&value)) {
        const OV_FLOAT_RANGE range = feature.FloatRange().value;
        return *number == range.dMin ? range.dMax : range.dMin;
    }
    if (const auto* const flag = std::get_if<bool>(&value)) {
        return !*flag;
    }
    if (std::holds_alternative<std::string>(value)) {
        return std::string("b");
    }
    auto bytes = std::get<std::vector<uint8_t>>(value);
    if (!bytes.empty()) {
        bytes.front() = static_cast<uint8_t>(bytes.front() ^ 1);
    }
    return bytes;
}

std::vector<std::string> LinesOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// Those that the notes of a failed import are about.
std::set<std::string> NodesOf(const std::string& text) {
    constexpr std::string_view begin = "Error while ";
    std::set<std::string> names;
    for (size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
        const size_t first = text.find('\'', at) + 1;
        names.insert(text.substr(first, text.find('\'', first) - first));
    }
    return names;
}

class FileCameraSettings : public FileCameraTest {
protected:
    void TearDown() override { std::filesystem::remove(m_path); }

    std::string Export() {
        EXPECT_OV_OK(OVExportConfigFile(camera, m_path.c_str()));
        return ContentOf(m_path);
    }
    /// Of the features that can be written and that the file has.
    unsigned ChangeAll(const std::string& settings) {
        unsigned changed = 0;
        for (const Feature& feature : FeaturesOf(OV_FEATURE_LEVEL_REMOTE_DEVICE)) {
            const bool isSaved =
                settings.find("\n" + std::string(feature.Name()) + "\t") != std::string::npos;
            if (isSaved && feature.IsWritable().value && !feature.IsTooLong()) {
                const auto other = AnotherValue(feature);
                changed += other && feature.Write(*other).IsGood() ? 1 : 0;
            }
        }
        return changed;
    }
    /// What isn't taken is a feature for which there is no value.
    void Import(const std::string& settings) {
        std::ofstream(m_path, std::ios::binary) << settings;
        if (OVImportConfigFile(camera, m_path.c_str(), true) == OV_STATUS_SUCCESS) {
            return;
        }
        const std::string text = LastError::Get().text;
        const std::set<std::string> refused = NodesOf(text);
        EXPECT_FALSE(refused.empty()) << text;
        for (const std::string& name : refused) {
            EXPECT_TRUE(illegal.contains(name)) << name << ": " << text;
            Tell("isn't restored: " + name + ", whose limits leave it no value");
        }
    }

    const std::string m_path = (std::filesystem::temp_directory_path() /
                                ("ov-settings-" + std::to_string(getpid()) + ".txt"))
                                   .string();
};

TEST_P(FileCameraSettings, AreAllRestoredFromTheirFile) {
    const std::string failure = ReferenceMap(camera, Description()).FailureOfSaving();
    if (!failure.empty()) {
        EXPECT_NE(OVExportConfigFile(camera, m_path.c_str()), OV_STATUS_SUCCESS);
        EXPECT_EQ(LastError::Get().message, failure);
        std::printf("%-44s can't be saved: %s\n", GetParam().c_str(), failure.c_str());
        return;
    }
    const std::string before = Export();
    const unsigned changed = ChangeAll(before);
    Import(before);
    const std::vector<std::string> expected = LinesOf(before);
    const std::vector<std::string> found = LinesOf(Export());
    ASSERT_EQ(found.size(), expected.size());
    size_t restored = 0;
    for (size_t i = 0; i < expected.size(); ++i) {
        const bool isIllegal = illegal.contains(expected[i].substr(0, expected[i].find('\t')));
        restored += found[i] == expected[i] ? 1 : 0;
        EXPECT_TRUE(found[i] == expected[i] || isIllegal) << found[i] << " for " << expected[i];
    }
    std::printf("%-44s lines %4zu, features changed %3u, lines restored %4zu\n", GetParam().c_str(),
                expected.size(), changed, restored);
}

OV_FOR_EACH_FILE_CAMERA(FileCameraSettings);

}  // namespace
