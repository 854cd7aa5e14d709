// What only DCAM chunks have: a length that says itself twice, a CRC, and GUIDs.

#include "ChunkSupport.h"

namespace EngineTest {

namespace {

const Bytes kGuid = {0xA1, 0xB2, 0xC3, 0xD4, 0xE5, 0xF6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

Bytes DcamChunk(const Bytes& data, const Bytes& guid = kGuid) {
    Bytes buffer = data;
    AppendDcamTrailer(buffer, guid, static_cast<uint32_t>(data.size()) + 24);
    return buffer;
}

int64_t SizeOf(const Bytes& buffer) {
    return static_cast<int64_t>(buffer.size());
}

/// Closes a buffer with the CRC of its bytes, changed by the given bits.
Bytes WithCrc(Bytes buffer, uint32_t flaw = 0) {
    Append(buffer, LittleWord(CChunkAdapterDcam::CRC16(buffer.data(), SizeOf(buffer)) ^ flaw));
    return buffer;
}

std::string CrcFailure(const uint8_t* buffer, int64_t length) {
    return DescriptionOf<RuntimeException>([&] { CChunkAdapterDcam::CheckCRC(buffer, length); });
}

bool IsSound(const Bytes& buffer) {
    return CChunkAdapterDcam().CheckBufferLayout(buffer.data(), SizeOf(buffer));
}

TEST(DcamCrc, IsTheOneOfThePolynomial) {
    const std::string digits = "123456789";
    EXPECT_EQ(CChunkAdapterDcam::CRC16(reinterpret_cast<const uint8_t*>(digits.data()), 9), 0x31C3);
    EXPECT_EQ(CChunkAdapterDcam::CRC16(nullptr, 0), 0);
}

TEST(DcamCrc, IsFoundBehindAChunk) {
    for (const size_t length : {0U, 1U, 100U}) {
        const Bytes plain = DcamChunk(CountUp(length));
        const Bytes checked = WithCrc(plain);
        EXPECT_FALSE(CChunkAdapterDcam::HasCRC(plain.data(), SizeOf(plain)));
        EXPECT_TRUE(CChunkAdapterDcam::HasCRC(checked.data(), SizeOf(checked)));
        EXPECT_TRUE(CChunkAdapterDcam::CheckCRC(checked.data(), SizeOf(checked)));
    }
}

TEST(DcamCrc, NeedsABufferAndALength) {
    const Bytes buffer = WithCrc(DcamChunk(CountUp(4)));
    constexpr char kNoBuffer[] = "Invalid buffer passed to chunk adapter!";
    constexpr char kNoLength[] = "Invalid buffer length passed to chunk adapter!";
    EXPECT_EQ(CrcFailure(nullptr, 100), kNoBuffer);
    EXPECT_EQ(CrcFailure(nullptr, 0), kNoBuffer);
    EXPECT_EQ(CrcFailure(buffer.data(), 0), kNoLength);
    EXPECT_EQ(CrcFailure(buffer.data(), -1), kNoLength);
    EXPECT_EQ(DescriptionOf<RuntimeException>([] { CChunkAdapterDcam::HasCRC(nullptr, 100); }),
              kNoBuffer);
    EXPECT_EQ(DescriptionOf<RuntimeException>([] { CChunkAdapterDcam::CheckBuffer(nullptr, 4); }),
              kNoBuffer);
}

TEST(DcamCrc, IsMissingInShortBuffers) {
    const Bytes buffer(27);
    for (int64_t length = 1; length <= SizeOf(buffer); ++length) {
        EXPECT_FALSE(CChunkAdapterDcam::HasCRC(buffer.data() + 27 - length, length));
    }
    EXPECT_FALSE(CChunkAdapterDcam::CheckBuffer(buffer.data() + 24, 3));
    EXPECT_TRUE(CChunkAdapterDcam::CheckBuffer(buffer.data() + 23, 4));
}

TEST(DcamCrc, CannotBeCheckedWhenItIsMissing) {
    const Bytes buffer = DcamChunk(CountUp(4));
    EXPECT_EQ(CrcFailure(buffer.data(), SizeOf(buffer)), "The buffer does not have a CRC!");
}

TEST(DcamCrc, MattersToItsCheckAndNotToTheChunks) {
    XmlNodeMap nodes(ChunkPortXml("Port", "A1B2C3D4E5F60708090A0B0C0D0E0F10") +
                     ChunkRegXml("Reg", "Port"));
    CChunkAdapterDcam adapter(&nodes.Map());
    for (const uint32_t flaw : {0U, 1U, 0x8000U, 0x10000U, 0x80000000U}) {
        Bytes buffer = WithCrc(DcamChunk(CountUp(4)), flaw);
        EXPECT_EQ(CChunkAdapterDcam::CheckCRC(buffer.data(), SizeOf(buffer)), flaw == 0);
        AttachStatistics_t statistics;
        adapter.AttachBuffer(buffer.data(), SizeOf(buffer), &statistics);
        EXPECT_EQ(statistics.NumAttachedChunks, 1);
        EXPECT_EQ(nodes.Get<IInteger>("Reg").GetValue(), 0x01020304);
    }
}

TEST(DcamLayout, TakesAChunkWithoutDataAlone) {
    EXPECT_TRUE(IsSound(DcamChunk({})));
    EXPECT_TRUE(IsSound(WithCrc(DcamChunk({}))));
}

TEST(DcamLayout, RefusesALengthThatContradictsItself) {
    for (size_t bit = 0; bit < 64; ++bit) {
        Bytes buffer = DcamChunk(CountUp(8));
        uint8_t& byte = *(buffer.end() - 1 - static_cast<ptrdiff_t>(bit / 8));
        byte = static_cast<uint8_t>(byte ^ (1U << bit % 8));
        EXPECT_FALSE(IsSound(buffer));
    }
}

TEST(DcamLayout, RefusesALengthBelowThatOfItsTrailer) {
    for (uint32_t length = 0; length < 24; ++length) {
        Bytes buffer(24);
        AppendDcamTrailer(buffer, kGuid, length);
        EXPECT_FALSE(IsSound(buffer)) << length;
    }
}

TEST(DcamLayout, RefusesNoBuffer) {
    const CChunkAdapterDcam adapter;
    EXPECT_EQ(
        DescriptionOf<RuntimeException>([] { CChunkAdapterDcam().CheckBufferLayout(nullptr, 24); }),
        "Invalid buffer passed to chunk adapter!");
    EXPECT_FALSE(CChunkAdapterDcam().CheckBufferLayout(nullptr, 23));
    EXPECT_FALSE(CChunkAdapterGEV().CheckBufferLayout(nullptr, 100));
    EXPECT_FALSE(CChunkAdapterU3V().CheckBufferLayout(nullptr, 100));
}

struct GuidCase {
    const char* digits;
    bool isSame;
};

class DcamIdentifier : public testing::TestWithParam<GuidCase> {};

TEST_P(DcamIdentifier, IsComparedAsFarAsItGoes) {
    XmlNodeMap nodes(ChunkPortXml("Port", GetParam().digits));
    CChunkAdapterDcam adapter(&nodes.Map());
    Bytes buffer = DcamChunk(CountUp(4));
    AttachStatistics_t statistics;
    adapter.AttachBuffer(buffer.data(), SizeOf(buffer), &statistics);
    EXPECT_EQ(statistics.NumAttachedChunks, GetParam().isSame ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Identifiers, DcamIdentifier,
    testing::Values(GuidCase{"A1B2C3D4E5F60708090A0B0C0D0E0F10", true},
                    GuidCase{"A1B2C3D4E5F60708090A0B0C0D0E0F11", false},
                    GuidCase{"0000A1B2C3D4E5F60708090A0B0C0D0E0F10", true}, GuidCase{"A1B2", true},
                    GuidCase{"B2", false},
                    // Longer than any GUID: not even the bytes behind it are compared.
                    GuidCase{"A1B2C3D4E5F60708090A0B0C0D0E0F101C000000E3FFFFFF", false},
                    GuidCase{"A1B2C3D4E5F60708090A0B0C0D0E0F101C000000E3FFFFFF0102030405060708",
                             false}));

}  // namespace

}  // namespace EngineTest
