// The one table of features: what the library, the header and the documentation
// make of it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iomanip>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "api/FeatureTable.h"
#include "support/FeatureRows.h"

namespace {

TEST(FeatureTable, HasEveryFeatureOnce) {
    const CFeatureTable table;
    EXPECT_EQ(std::size(kFeatureRows), 243U);
    EXPECT_EQ(table.GetSize(), 243U);
    std::set<std::string> names;
    for (const FeatureRow& row : kFeatureRows) {
        ASSERT_NE(table.Find(row.id), nullptr) << row.name;
        EXPECT_STREQ(table.Find(row.id)->Get(), row.name);
        names.insert(row.name);
    }
    EXPECT_EQ(names.size(), 243U);
}

TEST(FeatureTable, NumbersEveryFeatureDifferently) {
    const CFeatureTable table;
    std::set<size_t> numbers;
    for (const FeatureRow& row : kFeatureRows) {
        ASSERT_NE(table.Find(row.id), nullptr) << row.name;
        EXPECT_TRUE(table.Find(row.id)->HasNumber()) << row.name;
        numbers.insert(table.Find(row.id)->GetNumber());
    }
    EXPECT_EQ(numbers.size(), table.GetSize());
}

TEST(FeatureTable, HasNoOtherIdentifier) {
    const CFeatureTable table;
    EXPECT_EQ(table.Find(0), nullptr);
    EXPECT_EQ(table.Find(0x50000005), nullptr) << "a gap";
    EXPECT_EQ(table.Find(0x10000000), nullptr) << "a number of another type";
    EXPECT_EQ(table.Find(0xFFFFFFFF), nullptr);
    EXPECT_EQ(table.Find(OV_FEATURE_Width | 0x80000000U), nullptr);
}

TEST(FeatureTable, NamesFeaturesOfTheCameraTheHostAndTheStreamOnly) {
    std::map<OV_FEATURE_LEVEL, int> counts;
    for (const FeatureRow& row : kFeatureRows) {
        ++counts[row.id & OV_FEATURE_LEVEL_MASK];
    }
    EXPECT_THAT(counts, testing::ElementsAre(testing::Pair(OV_FEATURE_LEVEL_REMOTE_DEVICE, 217),
                                             testing::Pair(OV_FEATURE_LEVEL_LOCAL_DEVICE, 2),
                                             testing::Pair(OV_FEATURE_LEVEL_STREAM, 24)));
}

/// One of each block's first and last, so that no block slips.
const FeatureRow kFixed[] = {
    {"DeviceVendorName", 0x50000000},
    {"DeviceUserID", 0x50000007},
    {"DeviceTemperature", 0x20000014},
    {"SensorWidth", 0x100003e8},
    {"SensorShutterMode", 0x30000402},
    {"PayloadSize", 0x100007d0},
    {"GevLinkSpeed", 0x100007d8},
    {"AcquisitionMode", 0x30000bb8},
    {"AcquisitionStart", 0x70000bb9},
    {"AcquisitionStop", 0x70000bba},
    {"AcquisitionStatus", 0x40000bd8},
    {"UserOutputSelector", 0x30000fa0},
    {"PulseWidth", 0x20000faa},
    {"GainAuto", 0x30001388},
    {"LightSourcePreset", 0x30001399},
    {"ADCLevel", 0x10001770},
    {"CloseISP", 0x70001796},
    {"UserSetSelector", 0x30001b58},
    {"UserSetDefault", 0x30001b5b},
    {"EventSelector", 0x30001f40},
    {"EventFrameBurstStartWaitFrameID", 0x10001f5a},
    {"LUTSelector", 0x30002328},
    {"LUTValue", 0x1000232c},
    {"ChunkModeActive", 0x40002711},
    {"ChunkEnable", 0x40002713},
    {"ColorTransformationMode", 0x30002af8},
    {"ColorTransformationValue", 0x20002afb},
    {"TimerSelector", 0x30002ee0},
    {"TimerTriggerActivation", 0x30002eeb},
    {"RemoveParameterLimit", 0x300032c8},
    {"HDRMode", 0x300036b0},
    {"HDRTargetMainValue", 0x100036b3},
    {"MultiGrayControlMode", 0x30003a99},
    {"MGCGain", 0x20003a9c},
    {"ExposureDelay", 0x2000765c},
    {"ExposureTimeMode", 0x3000765e},
    {"DeviceCommandTimeout", 0x13000000},
    {"DeviceCommandRetryCount", 0x13000001},
    {"StreamAnnouncedBufferCount", 0x14000000},
    {"MaxNumQueueBuffer", 0x14000012},
    {"AcquisitionBufferCachePrec", 0x14000017},
};

TEST(FeatureTable, KeepsTheNumbersThatApplicationsStored) {
    const CFeatureTable table;
    for (const FeatureRow& row : kFixed) {
        ASSERT_NE(table.Find(row.id), nullptr) << row.name;
        EXPECT_STREQ(table.Find(row.id)->Get(), row.name);
    }
}

std::string DocumentedType(OV_FEATURE_ID id) {
    static const char* const kTypes[] = {"",        "integer", "float",  "enumeration",
                                         "boolean", "string",  "buffer", "command"};
    return kTypes[(id & OV_FEATURE_TYPE_MASK) >> 28];
}

std::vector<std::string> DocumentedRows() {
    std::ifstream document(OV_SOURCE_FOLDER "/docs/features.md");
    std::vector<std::string> rows;
    for (std::string line; std::getline(document, line);) {
        if (line.rfind("| `", 0) == 0) {
            rows.push_back(line);
        }
    }
    return rows;
}

TEST(FeatureTable, IsWhatTheDocumentationTells) {
    std::vector<std::string> expected;
    for (const FeatureRow& row : kFeatureRows) {
        std::ostringstream line;
        line << "| `" << row.name << "` | " << DocumentedType(row.id) << " | `0x" << std::hex
             << std::setw(8) << std::setfill('0') << row.id << "` |";
        expected.push_back(line.str());
    }
    EXPECT_EQ(DocumentedRows(), expected);
}

}  // namespace
