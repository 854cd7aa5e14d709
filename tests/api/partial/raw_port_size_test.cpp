// How many bytes a raw access moves is the producer's word.

#include <algorithm>
#include <random>

#include "producer/PartialPort.h"
#include "support/ApiTest.h"

namespace {

using namespace PartialPort;

std::vector<uint8_t> Random(size_t size) {
    std::vector<uint8_t> bytes(size);
    std::generate(bytes.begin(), bytes.end(), std::minstd_rand(static_cast<unsigned>(size + 1)));
    return bytes;
}

class RawPortSize : public OpenCameraTest {
protected:
    size_t Write(uint64_t address, const std::vector<uint8_t>& bytes, size_t size) const {
        EXPECT_OV_OK(OVWriteRemoteDevicePort(camera, address, bytes.data(), &size));
        return size;
    }
    size_t Read(uint64_t address, std::vector<uint8_t>& bytes, size_t size) const {
        EXPECT_OV_OK(OVReadRemoteDevicePort(camera, address, bytes.data(), &size));
        return size;
    }
};

TEST_F(RawPortSize, FromNothingToAMebibyteGoesInOneCall) {
    for (const size_t size : {size_t{0}, size_t{1}, size_t{3}, size_t{4}, size_t{511}, size_t{4096},
                              size_t{65536}, size_t{65537}, kSize - 1, kSize}) {
        SCOPED_TRACE(size);
        const std::vector<uint8_t> written = Random(kSize);
        std::vector<uint8_t> read(kSize + 1, 0x6E);
        EXPECT_EQ(Write(kWhole, written, size), size);
        EXPECT_EQ(Read(kWhole, read, size), size);
        const auto end = read.begin() + static_cast<std::ptrdiff_t>(size);
        EXPECT_TRUE(std::equal(read.begin(), end, written.begin()));
        EXPECT_TRUE(std::all_of(end, read.end(), [](uint8_t byte) { return byte == 0x6E; }));
    }
}

TEST_F(RawPortSize, IsWhatTheProducerMovedNotWhatWasAskedFor) {
    const std::vector<uint8_t> written = Random(kSize);
    EXPECT_EQ(Write(kPartial, written, kSize), kAtMost);
    std::vector<uint8_t> read(kSize);
    EXPECT_EQ(Read(kPartial, read, kSize), kAtMost);
    EXPECT_TRUE(std::equal(read.begin(), read.begin() + kAtMost, written.begin()));
    EXPECT_EQ(read[kAtMost], 0);
    EXPECT_EQ(Read(kPartial, read, kAtMost - 1), kAtMost - 1);
    EXPECT_EQ(Read(kPartial + kSize - 5, read, kSize), 5U);
}

}  // namespace
