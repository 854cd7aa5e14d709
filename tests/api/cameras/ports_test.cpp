// The registers of a camera, past its features.

#include <algorithm>
#include <numeric>

#include "CameraTest.h"

namespace {

/// Bytes of the camera that mean nothing until a file is written.
constexpr uint64_t kBuffer = 0x4000;
constexpr size_t kBufferSize = 4096;

class CameraPort : public CameraTest {
protected:
    static uint64_t At(uint64_t offset) { return Supply().RegisterBase() + kBuffer + offset; }

    std::vector<uint8_t> Read(uint64_t offset, size_t size) const {
        std::vector<uint8_t> bytes(size + 1, 0xEE);
        size_t moved = size;
        EXPECT_OV_OK(OVReadRemoteDevicePort(camera, At(offset), bytes.data(), &moved));
        EXPECT_EQ(moved, size);
        EXPECT_EQ(bytes.back(), 0xEE) << "beyond the size";
        bytes.pop_back();
        return bytes;
    }
    void Put(uint64_t offset, const std::vector<uint8_t>& bytes) const {
        size_t moved = bytes.size();
        EXPECT_OV_OK(OVWriteRemoteDevicePort(camera, At(offset), bytes.data(), &moved));
        EXPECT_EQ(moved, bytes.size());
    }
    static std::vector<uint8_t> Counted(size_t size, uint8_t first) {
        std::vector<uint8_t> bytes(size);
        std::iota(bytes.begin(), bytes.end(), first);
        return bytes;
    }
};

TEST_F(CameraPort, MovesAnyNumberOfBytesToAndFromAnyAddress) {
    const std::vector<uint8_t> blank(1200, 0x55);
    uint8_t first = 1;
    for (const uint64_t offset : {0U, 1U, 2U, 3U, 510U}) {
        for (const size_t size : {1U, 2U, 3U, 4U, 5U, 8U, 511U, 513U, 600U}) {
            SCOPED_TRACE(std::to_string(size) + " bytes at " + std::to_string(offset));
            Put(0, blank);
            const std::vector<uint8_t> bytes = Counted(size, first++);
            Put(offset, bytes);
            std::vector<uint8_t> expected = blank;
            std::copy(bytes.begin(), bytes.end(),
                      expected.begin() + static_cast<ptrdiff_t>(offset));
            EXPECT_EQ(Read(0, blank.size()), expected);
            EXPECT_EQ(Read(offset, size), bytes);
        }
    }
}

TEST_F(CameraPort, MovesAllOfABufferAtOnce) {
    const std::vector<uint8_t> bytes = Counted(kBufferSize, 7);
    Put(0, bytes);
    EXPECT_EQ(Read(0, kBufferSize), bytes);
}

TEST_F(CameraPort, ReachesTheRegistersOfFeatures) {
    constexpr uint64_t kWidthRegister = 0x310;
    uint32_t width = 0;
    size_t size = sizeof width;
    EXPECT_OV_OK(
        OVReadRemoteDevicePort(camera, Supply().RegisterBase() + kWidthRegister, &width, &size));
    EXPECT_EQ(width, kWidth);
    Write(camera, kWidthRegister, 128);
    EXPECT_EQ(GetInt(camera, OV_FEATURE_Width), kWidth) << "from the cache, which isn't told";
    EXPECT_OV_OK(OVSendCommand(camera, OV_FEATURE_DeviceReset));
    EXPECT_NE(GetInt(camera, OV_FEATURE_Width), kWidth);
}

TEST_F(CameraPort, RefusesAddressesThatTheCameraDoesntHave) {
    constexpr uint64_t kNowhere = 0xF0000000;
    constexpr int32_t kInvalidAddress = -1015;
    uint32_t value = 0;
    size_t size = sizeof value;
    EXPECT_EQ(OVReadRemoteDevicePort(camera, kNowhere, &value, &size), kInvalidAddress);
    EXPECT_EQ(LastError::Get().status, kInvalidAddress);
    EXPECT_EQ(OVWriteRemoteDevicePort(camera, kNowhere, &value, &size), kInvalidAddress);
    EXPECT_EQ(OVReadRemoteDevicePort(camera, ~uint64_t{0} - 3, &value, &size), kInvalidAddress);
}

TEST_F(CameraPort, RefusesWritesOfAReader) {
    EXPECT_OV_OK(OVCloseDevice(camera));
    ASSERT_OV_OK(OpenBy("1", OV_OPEN_INDEX, OV_ACCESS_READONLY, &camera));
    uint32_t value = 0;
    size_t size = sizeof value;
    EXPECT_EQ(OVWriteRemoteDevicePort(camera, At(0), &value, &size), OV_STATUS_INVALID_ACCESS);
    EXPECT_OV_OK(OVReadRemoteDevicePort(camera, At(0), &value, &size));
}

}  // namespace
