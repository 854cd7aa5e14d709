// The settings of a camera with all that belongs to it.

#include <sstream>

#include "StreamTest.h"
#include "TLClassModule/AllFeaturePersistance.h"

namespace OVTLClass {

namespace {

std::string RefusalOf(const std::shared_ptr<IDevice>& device) {
    std::string exportText;
    std::string importText;
    try {
        std::ostringstream target;
        CAllFeaturePersistance::ExportAllFeaturesToStream(device, target);
    } catch (const std::runtime_error& error) {
        exportText = error.what();
    }
    try {
        std::istringstream source;
        CAllFeaturePersistance::ImportAllFeaturesFromStream(device, source, true);
    } catch (const std::runtime_error& error) {
        importText = error.what();
    }
    EXPECT_EQ(exportText, importText);
    return exportText;
}

std::string Export(const std::shared_ptr<IDevice>& device) {
    std::ostringstream target;
    CAllFeaturePersistance::ExportAllFeaturesToStream(device, target);
    return target.str();
}

class PersistedDevice : public ProducerTest {};

TEST_F(PersistedDevice, NoDeviceIsRefused) {
    EXPECT_EQ(RefusalOf(nullptr), "Invalid device");
}

TEST_F(PersistedDevice, ADeviceThatIsClosedIsRefused) {
    EXPECT_EQ(RefusalOf(InitDevice()), "No valid stream. The device may be closed.");
}

TEST_F(PersistedDevice, ADeviceWithoutStreamsIsRefused) {
    producer.SetStreamNumber(0, 0, "Count", 0);
    const auto device = InitDevice();
    device->DoOpenDevice(3);
    EXPECT_EQ(RefusalOf(device), "No valid stream. The device may be closed.");
    device->DoCloseDevice();
}

TEST_F(PersistedDevice, ADeviceWhoseStreamIsClosedIsRefused) {
    const auto device = InitDevice();
    device->DoOpenDevice(3);
    EXPECT_EQ(RefusalOf(device), "Invalid feature node maps");
    device->DoCloseDevice();
}

using PersistedStream = StreamTest;

TEST_F(PersistedStream, ATextIsTakenByTheSameModel) {
    const std::string text = Export(device);
    EXPECT_EQ(text.find("FileVersion: 1.0\nDeviceModelName: TestCamera\n\n</---"), 0U) << text;
    std::istringstream source(text);
    EXPECT_THAT(CAllFeaturePersistance::ImportAllFeaturesFromStream(device, source, true),
                testing::IsEmpty());
}

}  // namespace

}  // namespace OVTLClass
