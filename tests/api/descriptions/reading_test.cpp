/// @file
/// Whatever a description says, features say it.
#include "FileCameraTest.h"

namespace {

/// Holds the features of a camera against another map of its description.
class Comparison {
public:
    explicit Comparison(const ReferenceMap& reference) : m_reference(reference) {}

    void Compare(const Feature& feature) {
        if (ExpectAccess(feature) && !feature.IsCommand()) {
            ExpectValue(feature);
        }
    }
    void Print(const std::string& name) const {
        std::printf("%-30s features %3u, read %3u, of another type %2u, stale %u\n", name.c_str(),
                    m_implemented, m_read, m_ofAnotherType, m_stale);
    }

private:
    /// @return whether the feature can be read
    bool ExpectAccess(const Feature& feature) {
        const Answer<GenApi::EAccessMode> expected = m_reference.AccessMode(feature);
        EXPECT_EQ(expected.message, "");
        const Answer<bool> is = feature.IsImplemented();
        EXPECT_EQ(is.message, "");
        EXPECT_EQ(is.value, GenApi::IsImplemented(expected.value));
        if (!is.value) {
            return false;
        }
        ++m_implemented;
        EXPECT_EQ(feature.IsReadable().value, GenApi::IsReadable(expected.value));
        EXPECT_EQ(feature.IsWritable().value, GenApi::IsWritable(expected.value));
        return GenApi::IsReadable(expected.value);
    }

    /// A feature can't be read only where the description gives it another type than
    /// its identifier has.
    void ExpectValue(const Feature& feature) {
        if (!m_reference.HasTypeOf(feature)) {
            ExpectFailure(feature.Read().status, OV_STATUS_ERROR, "Dynamic_cast failed");
            ++m_ofAnotherType;
            return;
        }
        const Answer<FeatureValue> expected = m_reference.Read(feature);
        EXPECT_EQ(expected.message, "");
        // The second comes from the cache, where the description allows it.
        for (int round = 0; round < 2; ++round) {
            const Answer<FeatureValue> value = feature.Read();
            EXPECT_EQ(value.message, "");
            EXPECT_EQ(ToText(value.value), ToText(expected.value));
            m_stale += ToText(value.value) != ToText(expected.value) ? 1 : 0;
        }
        ++m_read;
    }

    const ReferenceMap& m_reference;
    unsigned m_implemented = 0;
    unsigned m_read = 0;
    unsigned m_ofAnotherType = 0;
    unsigned m_stale = 0;
};

TEST_P(FileCamera, ReadsWhatAMapWithoutACacheReads) {
    const ReferenceMap reference = Reference();
    Comparison comparison(reference);
    for (const Feature& feature : Features()) {
        SCOPED_TRACE(feature.Name());
        comparison.Compare(feature);
    }
    comparison.Print(GetParam());
}

}  // namespace
