#include "gige/protocol/Registers.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "HexBytes.h"

namespace {

using namespace OvGige;

TEST(RegisterNumbers, LieOneAfterAnother) {
    const auto numbers = std::to_array<uint32_t>({0x0A00, 0x80000001});
    const Bytes payload = FromHex("00 00 0A 00 80 00 00 01");
    EXPECT_EQ(BuildNumbers(numbers), payload);
    EXPECT_EQ(ParseNumbers(payload), std::vector<uint32_t>({0x0A00, 0x80000001}));
}

TEST(RegisterNumbers, AreNoneWithoutOneOrWithAPartOfOne) {
    EXPECT_FALSE(ParseNumbers({}));
    EXPECT_FALSE(ParseNumbers(FromHex("00 00 0A")));
    EXPECT_FALSE(ParseNumbers(FromHex("00 00 0A 00 00")));
}

TEST(RegisterWrites, AreAddressesWithValues) {
    const auto writes = std::to_array<RegisterWrite>({{0x0A00, 2}, {0x0938, 3000}});
    const Bytes payload = FromHex("00 00 0A 00 00 00 00 02 00 00 09 38 00 00 0B B8");
    EXPECT_EQ(BuildWrites(writes), payload);
    EXPECT_EQ(ParseWrites(payload), std::vector<RegisterWrite>(writes.begin(), writes.end()));
    EXPECT_FALSE(ParseWrites(FromHex("00 00 0A 00")));
    EXPECT_FALSE(ParseWrites({}));
}

TEST(MemoryRangePayload, HasAReservedFieldBeforeTheCount) {
    const Bytes payload = FromHex("00 01 00 00 00 00 02 00");
    EXPECT_EQ(BuildRange({.address = 0x10000, .count = 512}), payload);
    EXPECT_EQ(ParseRange(payload), (MemoryRange{.address = 0x10000, .count = 512}));
    EXPECT_FALSE(ParseRange(FromHex("00 01 00 00 00 00 02")));
    EXPECT_FALSE(ParseRange(FromHex("00 01 00 00 00 00 02 00 00")));
}

TEST(MemoryBytesPayload, IsAnAddressAndBytes) {
    const Bytes bytes = FromHex("DE AD BE EF");
    const Bytes payload = FromHex("00 01 00 00 DE AD BE EF");
    EXPECT_EQ(BuildMemory({.address = 0x10000, .bytes = bytes}), payload);
    const auto memory = ParseMemory(payload);
    ASSERT_TRUE(memory);
    EXPECT_EQ(memory->address, 0x10000U);
    EXPECT_EQ(Bytes(memory->bytes.begin(), memory->bytes.end()), bytes);
    EXPECT_FALSE(ParseMemory(FromHex("00 01 00 00")));
}

TEST(CountPayload, HasAReservedFieldBeforeTheCount) {
    EXPECT_EQ(BuildCount(500), FromHex("00 00 01 F4"));
    EXPECT_EQ(ParseCount(FromHex("00 00 01 F4")), 500);
    EXPECT_EQ(ParseCount(FromHex("FF FF 01 F4 00 00")), 500);
    EXPECT_FALSE(ParseCount(FromHex("00 00 01")));
}

}  // namespace
