/// @file
/// Whatever a description says, features say it.
#include "FileCameraTest.h"

namespace {

class FileCameraReading : public FileCameraTest {
protected:
    void SetUp() override {
        FileCameraTest::SetUp();
        reference.emplace(camera, Description());
    }

    /// @return whether the feature can be read
    bool ExpectAccess(const Feature& feature) {
        const Answer<GenApi::EAccessMode> expected = reference->AccessMode(feature);
        const Answer<bool> is = feature.IsImplemented();
        EXPECT_EQ(is.message, expected.message);
        if (!expected.IsGood()) {
            ++refused;
            Tell(std::string("has no access mode: ") + feature.Name() + ": " + expected.message);
            return false;
        }
        EXPECT_EQ(is.value, GenApi::IsImplemented(expected.value));
        if (!is.value) {
            return false;
        }
        ++implemented;
        EXPECT_EQ(feature.IsReadable().value, GenApi::IsReadable(expected.value));
        EXPECT_EQ(feature.IsWritable().value, GenApi::IsWritable(expected.value));
        return GenApi::IsReadable(expected.value);
    }

    /// What can't be read can't be read without a cache either, for the same reason.
    void ExpectValue(const Feature& feature) {
        const Answer<FeatureValue> expected = reference->Read(feature);
        // The second comes from the cache, where the description allows it.
        for (int round = 0; round < 2; ++round) {
            const Answer<FeatureValue> value = feature.Read();
            EXPECT_EQ(value.IsGood(), expected.IsGood()) << value.message << expected.message;
            EXPECT_EQ(value.message, expected.message);
            if (expected.IsGood()) {
                EXPECT_EQ(ToText(value.value), ToText(expected.value));
            }
        }
        ++(expected.IsGood() ? read : refused);
        if (!expected.IsGood()) {
            Tell(std::string("can't be read: ") + feature.Name() + ": " + expected.message);
        }
    }

    std::optional<ReferenceMap> reference;
    unsigned implemented = 0;
    unsigned read = 0;
    unsigned refused = 0;
};

TEST_P(FileCameraReading, GivesWhatAMapWithoutACacheGives) {
    for (const Feature& feature : FeaturesOf(OV_FEATURE_LEVEL_REMOTE_DEVICE)) {
        SCOPED_TRACE(feature.Name());
        const bool isReadable = ExpectAccess(feature);
        if (feature.IsTooLong()) {
            ++refused;
            Tell(std::string("is too long: ") + feature.Name());
        } else if (isReadable && !feature.IsCommand()) {
            ExpectValue(feature);
        }
    }
    std::printf("%-44s features %3u, read %3u, refused %3u\n", GetParam().c_str(), implemented,
                read, refused);
}

OV_FOR_EACH_FILE_CAMERA(FileCameraReading);

TEST(FileCameras, AreThoseOfTheFolderThatTheEnvironmentNames) {
    const char* const folder = std::getenv("OV_TEST_DESCRIPTIONS");
    const bool isNamed = folder != nullptr && *folder != '\0';
    EXPECT_EQ(FilesOfDescriptionFolder().empty(), !isNamed);
}

}  // namespace
