// Unpacking of descriptions: what is well formed, and what a camera may send.

#include "TLClassXML/Zip.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "ZipBytes.h"

namespace OVTLClass {
namespace {

/// Text that deflate shrinks, with repetitions farther apart than 256 bytes.
std::string LongText() {
    std::string text;
    for (int i = 0; i < 2000; ++i) {
        text += "<Node Name=\"Node" + std::to_string(i % 37) + "\"/>";
    }
    return text;
}

/// What comes out, which has to be called a success.
std::string Unpacked(const Bytes& in) {
    Bytes out = ToBytes("something old");
    EXPECT_TRUE(CZip::Uncompress(in, out));
    return ToText(out);
}

TEST(Zip, UnpacksAnArchive) {
    EXPECT_EQ(Unpacked(ZipEntry(LongText()).Build()), LongText());
}

TEST(Zip, SkipsTheNameAndTheExtraField) {
    ZipEntry entry("text");
    entry.name = std::string(300, 'n');
    entry.extra = std::string(65535, 'x');
    EXPECT_EQ(Unpacked(entry.Build()), "text");
}

TEST(Zip, TakesAnEntryWithoutAName) {
    ZipEntry entry("text");
    entry.name.clear();
    EXPECT_EQ(Unpacked(entry.Build()), "text");
}

TEST(Zip, UnpacksTheFirstEntryOnly) {
    Bytes archive = ZipEntry("first").Build();
    const Bytes second = ZipEntry("second").Build();
    archive.insert(archive.end(), second.begin(), second.end());
    EXPECT_EQ(Unpacked(archive), "first");
}

TEST(Zip, LeavesBytesBehindTheArchiveAlone) {
    Bytes archive = ZipEntry("text").Build();
    archive.resize(archive.size() + 5000);
    EXPECT_EQ(Unpacked(archive), "text");
}

TEST(Zip, KeepsZeroBytesOfAnEntry) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(Unpacked(ZipEntry(text).Build()), text);
}

TEST(Zip, GivesTheDeclaredSizeWhenTheEntryIsShorter) {
    ZipEntry entry("text");
    entry.size = 6;
    EXPECT_EQ(Unpacked(entry.Build()), std::string("text\0\0", 6));
}

TEST(Zip, UnpacksAnEntryThatIsStored) {
    for (const std::string& text : {std::string(), std::string("a\0b", 3), LongText()}) {
        ZipEntry entry(text);
        entry.Store(text);
        EXPECT_EQ(Unpacked(entry.Build()), text);
    }
}

TEST(Zip, UnpacksAnEntryWhoseSizesFollowItsData) {
    for (const std::string& text :
         {std::string("text"), LongText(), std::string(3000000, 'x'), std::string("a\0b", 3)}) {
        for (const bool hasMagic : {false, true}) {
            ZipEntry entry(text);
            entry.MoveSizesBehind(text, hasMagic);
            Bytes archive = entry.Build();
            EXPECT_EQ(Unpacked(archive), text);
            archive.resize(archive.size() + 100);
            EXPECT_EQ(Unpacked(archive), text);
        }
    }
}

TEST(Zip, UnpacksAStoredEntryWhoseSizesFollowItsData) {
    for (const std::string& text : {std::string(), std::string("PK\7\10 text"), LongText()}) {
        for (const bool hasMagic : {false, true}) {
            ZipEntry entry(text);
            entry.Store(text);
            entry.MoveSizesBehind(text, hasMagic);
            const Bytes second = ZipEntry("second").Build();
            Bytes archive = entry.Build();
            archive.insert(archive.end(), second.begin(), second.end());
            EXPECT_EQ(Unpacked(archive), text);
        }
    }
}

struct Damage {
    const char* name;
    void (*apply)(ZipEntry& entry);
};

class BrokenZip : public ::testing::TestWithParam<Damage> {};

TEST_P(BrokenZip, GivesTheTextOfAFailure) {
    ZipEntry entry(LongText());
    GetParam().apply(entry);
    EXPECT_EQ(Unpacked(entry.Build()), "Unable to uncompress ZIP file");
}

INSTANTIATE_TEST_SUITE_P(
    With, BrokenZip,
    ::testing::Values(
        Damage{"SizesBehindTheData",
               [](ZipEntry& entry) {
                   entry.packedSize = 0;
                   entry.size = 0;
               }},
        Damage{"FewerBytesDeclaredThanComeOut", [](ZipEntry& entry) { --entry.size; }},
        Damage{"AnEntryPackedInAnotherWay", [](ZipEntry& entry) { entry.method = 12; }},
        Damage{"MoreStoredBytesThanThereAre",
               [](ZipEntry& entry) {
                   entry.Store(LongText());
                   entry.data.pop_back();
               }},
        Damage{"TwoSizesOfStoredData",
               [](ZipEntry& entry) {
                   entry.Store(LongText());
                   --entry.size;
               }},
        Damage{"StoredDataThatNoRecordEnds",
               [](ZipEntry& entry) {
                   entry.Store(LongText());
                   entry.MoveSizesBehind(LongText(), true);
                   entry.descriptor.pop_back();
               }},
        Damage{"PackedDataThatHasNoEnd",
               [](ZipEntry& entry) {
                   entry.MoveSizesBehind(LongText(), true);
                   entry.data.resize(entry.data.size() / 2);
                   entry.descriptor.clear();
               }},
        Damage{"ACutInItsData", [](ZipEntry& entry) { entry.data.resize(entry.data.size() / 2); }},
        Damage{"ACutThatItsHeaderTells",
               [](ZipEntry& entry) {
                   entry.data.resize(entry.data.size() / 2);
                   entry.packedSize = static_cast<uint32_t>(entry.data.size());
               }},
        Damage{"MorePackedBytesDeclaredThanThereAre",
               [](ZipEntry& entry) { entry.packedSize = 0xFFFFFFFF; }},
        Damage{"MoreBytesDeclaredThanDataCanHold",
               [](ZipEntry& entry) { entry.size = 0xFFFFFFFF; }},
        Damage{"DamagedData", [](ZipEntry& entry) { entry.data.assign(entry.data.size(), 0xFF); }}),
    [](const auto& damage) { return std::string(damage.param.name); });

TEST(Zip, WhoseNameReachesBeyondItsEndFails) {
    Bytes archive = ZipEntry("text").Build();
    archive[26] = 0xFF;
    archive[27] = 0xFF;
    EXPECT_EQ(Unpacked(archive), "Unable to uncompress ZIP file");
}

class CutHeader : public ::testing::TestWithParam<size_t> {};

TEST_P(CutHeader, IsAnExceptionAndThusNoSuccess) {
    Bytes archive = ZipEntry("text").Build();
    archive.resize(GetParam());
    Bytes out;
    EXPECT_FALSE(CZip::Uncompress(archive, out));
}

INSTANTIATE_TEST_SUITE_P(After, CutHeader, ::testing::Values(4U, 18U, 25U, 29U));

TEST(Stream, IsUnpackedUpToItsFirstZeroByte) {
    EXPECT_EQ(Unpacked(Deflate("text", 15)), "text");
    EXPECT_EQ(Unpacked(Deflate(std::string("a\0b", 3), 15)), "a");
}

TEST(Stream, ThatGrowsAlmostHundredfoldStillFits) {
    const std::string text(2000, 'x');
    const Bytes packed = Deflate(text, 15);
    ASSERT_LE(text.size(), 100 * packed.size());
    EXPECT_EQ(Unpacked(packed), text);
}

TEST(Stream, ThatGrowsMoreThanHundredfoldStaysPacked) {
    const Bytes packed = Deflate(std::string(1000000, 'x'), 15);
    ASSERT_GT(1000000U, 100 * packed.size());
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(Unpacked(packed), ToText(packed));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Unable to uncompress XML data\n");
}

class PlainData : public ::testing::TestWithParam<std::string> {};

TEST_P(PlainData, StaysAsItIsWithAWordOnTheOutput) {
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(Unpacked(ToBytes(GetParam())), GetParam());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Unable to uncompress XML data\n");
}

INSTANTIATE_TEST_SUITE_P(Of, PlainData,
                         ::testing::Values(std::string(), std::string("P"), std::string("PK\3"),
                                           std::string("<?xml version=\"1.0\"?>"),
                                           std::string("PK\5\6 an empty archive", 20)));

}  // namespace
}  // namespace OVTLClass
