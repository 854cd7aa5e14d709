// Registers on a port: what is read and written, in which bytes and how often.

#include <sys/resource.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <limits>

#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "NodeGraph.h"

namespace EngineTest {

namespace {

using Bytes = std::vector<uint8_t>;
using Accesses = std::vector<TestPort::Access>;

/// What differs from one register to the next; the rest is always the same.
std::string Reg(const std::string& type, const std::string& name, const std::string& address,
                int length, const std::string& rest) {
    return RegXml{.name = name,
                  .caching = "",
                  .tail = rest,
                  .type = type,
                  .place = address,
                  .length = Element("Length", std::to_string(length)),
                  .sign = "",
                  .endianess = ""}();
}

std::string Number(const char* sign, const char* endianess) {
    return std::string("<Sign>") + sign + "</Sign><Endianess>" + endianess + "</Endianess>";
}

// Integers.

struct IntegerCase {
    const char* name;
    int length;
    const char* sign;
    const char* endianess;
    Bytes bytes;
    int64_t value;
    int64_t min;
    int64_t max;
};

void PrintTo(const IntegerCase& test, std::ostream* out) {
    *out << test.name;
}

const IntegerCase kIntegers[] = {
    {"SignedByte", 1, "Signed", "LittleEndian", {0x80}, -128, -128, 127},
    {"UnsignedByte", 1, "Unsigned", "LittleEndian", {0x80}, 128, 0, 255},
    {"ThreeBytesSignedBig", 3, "Signed", "BigEndian", {0xFF, 0xFF, 0xFE}, -2, -8388608, 8388607},
    {"ThreeBytesUnsignedLittle",
     3,
     "Unsigned",
     "LittleEndian",
     {0xFE, 0xFF, 0xFF},
     16777214,
     0,
     16777215},
    {"FourBytesBig", 4, "Unsigned", "BigEndian", {1, 2, 3, 4}, 0x01020304, 0, 4294967295},
    {"FourBytesLittle",
     4,
     "Signed",
     "LittleEndian",
     {1, 2, 3, 0x84},
     -2080177663,
     -2147483648,
     2147483647},
    {"EightBytesSigned",
     8,
     "Signed",
     "BigEndian",
     {0x80, 0, 0, 0, 0, 0, 0, 1},
     INT64_MIN + 1,
     INT64_MIN,
     INT64_MAX},
    {"EightBytesUnsigned",
     8,
     "Unsigned",
     "LittleEndian",
     {1, 0, 0, 0, 0, 0, 0, 0x7F},
     0x7F00000000000001,
     0,
     INT64_MAX},
};

class IntegerRegister : public testing::TestWithParam<IntegerCase> {
protected:
    XmlNodeMap map{Reg("IntReg", "R", At(16), GetParam().length,
                       Number(GetParam().sign, GetParam().endianess))};
};

TEST_P(IntegerRegister, ReadsItsBytes) {
    map.Port().PutBytes(16, GetParam().bytes);
    auto& number = map.Get<IInteger>("R");
    EXPECT_EQ(number.GetValue(), GetParam().value);
    EXPECT_EQ(number.GetMin(), GetParam().min);
    EXPECT_EQ(number.GetMax(), GetParam().max);
    EXPECT_EQ(number.GetInc(), 1);
}

TEST_P(IntegerRegister, WritesItsBytesAndNoOthers) {
    map.Port().PutBytes(15, Bytes(10, 0xEE));
    map.Get<IInteger>("R").SetValue(GetParam().value);
    EXPECT_EQ(map.Port().PeekBytes(16, GetParam().length), GetParam().bytes);
    EXPECT_EQ(map.Port().PeekBytes(15, 1), Bytes{0xEE});
    EXPECT_EQ(map.Port().PeekBytes(16 + GetParam().length, 1), Bytes{0xEE});
}

INSTANTIATE_TEST_SUITE_P(All, IntegerRegister, testing::ValuesIn(kIntegers),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(IntegerRegisterLength, MustLieBetweenOneAndEight) {
    const auto failureWith = [](int length) {
        return DescriptionOf<OutOfRangeException>([length] {
            XmlNodeMap map("<Integer Name=\"N\"><Value>" + std::to_string(length) +
                           "</Value></Integer><IntReg Name=\"R\"><Address>0</Address>"
                           "<pLength>N</pLength><AccessMode>RW</AccessMode><pPort>Device</pPort>" +
                           Number("Signed", "LittleEndian") + "</IntReg>");
            map.Get<IInteger>("R").GetValue();
        });
    };
    EXPECT_EQ(failureWith(0), "Value = 0 must be equal or greater than Min = 1");
    EXPECT_EQ(failureWith(9), "Value = 9 must be equal or smaller than Max = 8");
    EXPECT_EQ(failureWith(8), "");
}

// Fields of bits.

std::string Masked(const char* name, int length, int lsb, int msb, const char* sign,
                   const char* endianess) {
    return Reg("MaskedIntReg", name, At(0), length,
               "<LSB>" + std::to_string(lsb) + "</LSB><MSB>" + std::to_string(msb) + "</MSB>" +
                   Number(sign, endianess));
}

TEST(MaskedRegister, OfOneBitIsZeroOrOne) {
    XmlNodeMap map(Masked("Bit", 2, 5, 5, "Unsigned", "LittleEndian"));
    auto& bit = map.Get<IInteger>("Bit");
    EXPECT_EQ(bit.GetMin(), 0);
    EXPECT_EQ(bit.GetMax(), 1);
    map.Port().PutBytes(0, {0xDF, 0xFF});
    EXPECT_EQ(bit.GetValue(), 0);
    bit.SetValue(1);
    EXPECT_EQ(map.Port().PeekBytes(0, 2), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(bit.GetValue(), 1);
}

TEST(MaskedRegister, OfOneSignedBitIsZeroOrMinusOne) {
    XmlNodeMap map(Masked("Bit", 1, 7, 7, "Signed", "LittleEndian"));
    map.Port().PutBytes(0, {0x80});
    EXPECT_EQ(map.Get<IInteger>("Bit").GetValue(), -1);
    EXPECT_EQ(map.Get<IInteger>("Bit").GetMin(), -1);
    EXPECT_EQ(map.Get<IInteger>("Bit").GetMax(), 0);
}

TEST(MaskedRegister, CountsBigEndianBitsFromTheTop) {
    XmlNodeMap map(Masked("Top", 2, 3, 0, "Unsigned", "BigEndian"));
    map.Port().PutBytes(0, {0xA5, 0xC3});
    auto& top = map.Get<IInteger>("Top");
    EXPECT_EQ(top.GetValue(), 0xA);
    EXPECT_EQ(top.GetMax(), 15);
    top.SetValue(0x3);
    EXPECT_EQ(map.Port().PeekBytes(0, 2), (Bytes{0x35, 0xC3}));
}

TEST(MaskedRegister, ReadsBeforeItWritesUnlessTheBytesAreKnown) {
    XmlNodeMap map(Masked("Field", 2, 4, 7, "Unsigned", "LittleEndian"));
    map.Port().PutBytes(0, {0x12, 0x34});
    auto& field = map.Get<IInteger>("Field");
    field.SetValue(9, false);
    EXPECT_EQ(map.Port().PeekBytes(0, 2), (Bytes{0x92, 0x34}));
    EXPECT_EQ(map.Port().GetAccesses(), (Accesses{{false, 0, 2}, {true, 0, 2}}));
    map.Port().ForgetAccesses();
    field.SetValue(7, false);
    EXPECT_EQ(map.Port().GetAccesses(), (Accesses{{true, 0, 2}}));
    EXPECT_EQ(map.Port().PeekBytes(0, 2), (Bytes{0x72, 0x34}));
}

struct BadField {
    int lsb;
    int msb;
    const char* endianess;
    const char* text;
};

TEST(MaskedRegister, RefusesFieldsThatDoNotFit) {
    const BadField fields[] = {
        {4, 3, "LittleEndian",
         "Node 'F' : For a little endian integer MSB must be greater or equal than LSB"},
        {0, 16, "LittleEndian",
         "Node 'F' : For a little endian integer MSB must be smaller than 8 * Length"},
        {3, 4, "BigEndian",
         "Node 'F' : For a big endian integer LSB must be greater or equal than MSB"},
        {16, 0, "BigEndian",
         "Node 'F' : For a big endian integer LSB must be smaller than 8 * Length"},
    };
    for (const BadField& field : fields) {
        EXPECT_EQ(
            DescriptionOf<RuntimeException>([&] {
                XmlNodeMap map(Masked("F", 2, field.lsb, field.msb, "Unsigned", field.endianess));
            }),
            field.text);
    }
}

// Addresses.

TEST(RegisterAddress, AddsIndicesTimesTheirOffsets) {
    XmlNodeMap map("<Integer Name=\"Index\"><Value>3</Value></Integer>" +
                   Reg("IntReg", "R",
                       "<Address>0x1000</Address><pIndex Offset=\"8\">Index</pIndex>", 4,
                       Number("Unsigned", "LittleEndian")));
    EXPECT_EQ(map.Get<IRegister>("R").GetAddress(), 0x1018);
}

TEST(RegisterAddress, AddsAllItsParts) {
    XmlNodeMap map("<Integer Name=\"Base\"><Value>0x200</Value></Integer>" +
                   Reg("IntReg", "R",
                       "<Address>0x1000</Address><Address>4</Address><pAddress>Base</pAddress>", 4,
                       Number("Unsigned", "LittleEndian")));
    EXPECT_EQ(map.Get<IRegister>("R").GetAddress(), 0x1204);
    EXPECT_EQ(map.Get<IRegister>("R").GetLength(), 4);
}

TEST(RegisterAddress, ThatMovesReadsAnew) {
    XmlNodeMap map(
        Reg("IntReg", "Base", At(0), 4, Number("Unsigned", "LittleEndian")) +
        Reg("IntReg", "R", "<pAddress>Base</pAddress>", 4, Number("Unsigned", "LittleEndian")));
    map.Port().Put<uint32_t>(0x100, 1);
    map.Port().Put<uint32_t>(0x200, 2);
    auto& base = map.Get<IInteger>("Base");
    auto& number = map.Get<IInteger>("R");
    base.SetValue(0x100);
    EXPECT_EQ(number.GetValue(), 1);
    base.SetValue(0x200);
    EXPECT_EQ(number.GetValue(), 2);
}

// Raw access and the port's cache.

class RawRegister : public testing::Test {
protected:
    XmlNodeMap map{Reg("Register", "R", At(0), 2, "")};
    IRegister& reg = map.Get<IRegister>("R");
    uint8_t bytes[4] = {};
};

TEST_F(RawRegister, ReadShorterLeavesTheCacheAlone) {
    map.Port().PutBytes(0, {1, 2});
    reg.Get(bytes, 1);
    EXPECT_EQ(bytes[0], 1);
    reg.Get(bytes, 2);
    EXPECT_EQ(map.Port().GetAccesses(), (Accesses{{false, 0, 1}, {false, 0, 2}}));
    reg.Get(bytes, 2);
    EXPECT_EQ(map.Port().GetReads(), 2U) << "the whole is cached";
}

TEST_F(RawRegister, WrittenShorterForgetsTheCache) {
    reg.Get(bytes, 2);
    bytes[0] = 9;
    reg.Set(bytes, 1);
    map.Port().ForgetAccesses();
    reg.Get(bytes, 2);
    EXPECT_EQ(map.Port().GetReads(), 1U);
    EXPECT_EQ(bytes[0], 9);
}

TEST_F(RawRegister, WrittenWholeIsKnown) {
    bytes[0] = 5;
    reg.Set(bytes, 2);
    map.Port().ForgetAccesses();
    reg.Get(bytes, 2);
    EXPECT_EQ(map.Port().GetReads(), 0U);
    EXPECT_EQ(bytes[0], 5);
}

TEST_F(RawRegister, RefusesBadArguments) {
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { reg.Get(nullptr, 2); }),
              "CRegisterImpl::InternalGet : pBuffer must not be NULL");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { reg.Set(nullptr, 2); }),
              "CRegisterImpl::InternalSet : pBuffer must not be NULL");
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { reg.Get(bytes, 3); }),
              "CRegisterImpl::InternalGet : more data requested than hold by the register");
}

TEST_F(RawRegister, HasItsBytesAsText) {
    map.Port().PutBytes(0, {0x1F, 0xA0});
    auto& value = map.Get<IValue>("R");
    EXPECT_EQ(std::string(value.ToString().c_str()).size(), 6U);
    value.FromString("0x0102");
    EXPECT_EQ(map.Port().PeekBytes(0, 2), (Bytes{1, 2}));
    EXPECT_EQ(DescriptionOf<GenericException>([&] { value.FromString("no bytes"); }),
              "Node 'R' : cannot convert hex string");
}

TEST_F(RawRegister, AFailedAccessPassesAndLeavesAllAsItWas) {
    reg.Get(bytes, 2);
    map.Port().FailAccess(1);
    bytes[0] = 7;
    EXPECT_EQ(DescriptionOf<TimeoutException>([&] { reg.Set(bytes, 2); }), "Access failed");
    map.Port().ForgetAccesses();
    reg.Get(bytes, 2);
    EXPECT_EQ(bytes[0], 0);
    EXPECT_EQ(map->GetLock().TryLock(), true);
    map->GetLock().Unlock();
}

// Floats and texts.

TEST(FloatRegister, TakesFourOrEightBytesInEitherOrder) {
    XmlNodeMap map(Reg("FloatReg", "F", At(0), 4, "<Endianess>BigEndian</Endianess>") +
                   Reg("FloatReg", "D", At(8), 8, "<Endianess>LittleEndian</Endianess>"));
    map.Port().PutBytes(0, {0x3F, 0xC0, 0, 0});
    EXPECT_EQ(map.Get<IFloat>("F").GetValue(), 1.5);
    EXPECT_EQ(map.Get<IFloat>("F").GetMax(), 3.4028234663852886e38);
    map.Get<IFloat>("F").SetValue(-2);
    EXPECT_EQ(map.Port().PeekBytes(0, 4), (Bytes{0xC0, 0, 0, 0}));
    map.Get<IFloat>("D").SetValue(0.1);
    EXPECT_EQ(map.Port().Peek<double>(8), 0.1);
    EXPECT_EQ(map.Get<IFloat>("D").GetMin(), -1.7976931348623157e308);
}

TEST(StringRegister, KeepsRoomForTheTerminator) {
    XmlNodeMap map(Reg("StringReg", "S", At(0), 4, ""));
    auto& text = map.Get<IString>("S");
    EXPECT_EQ(text.GetMaxLength(), 4);
    map.Port().PutBytes(0, {'x', 'x', 'x', 'x'});
    EXPECT_EQ(text.GetValue(), "xxxx");
    text.SetValue("abc");
    EXPECT_EQ(map.Port().PeekBytes(0, 4), (Bytes{'a', 'b', 'c', 0}));
    text.SetValue("a");
    EXPECT_EQ(map.Port().PeekBytes(0, 4), (Bytes{'a', 0, 0, 0}));
    EXPECT_EQ(DescriptionOf<OutOfRangeException>([&] { text.SetValue("abcd"); }),
              "String exceeds maximum length. Max length is 4");
}

// Ports.

namespace {

/// A device that has one text for whatever is read.
class TextPort : public IPort {
public:
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t /*address*/, int64_t length) override {
        lengths.push_back(length);
        std::memcpy(buffer, "text", 4);
    }
    void Write(const void* /*buffer*/, int64_t /*address*/, int64_t length) override {
        lengths.push_back(length);
    }

    std::vector<int64_t> lengths;
};

constexpr int64_t kLongestRegister = std::numeric_limits<int32_t>::max();

std::string UncachedText(int64_t length) {
    return RegXml{.name = "S",
                  .caching = "NoCache",
                  .type = "StringReg",
                  .length = Element("Length", std::to_string(length)),
                  .sign = "",
                  .endianess = ""}();
}

/// Lets the process have no more than so many further bytes of addresses.
class AddressLimit {
public:
    explicit AddressLimit(rlim_t bytes) {
        getrlimit(RLIMIT_AS, &m_Old);
        size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        rlimit limit = m_Old;
        limit.rlim_cur = pages * static_cast<size_t>(sysconf(_SC_PAGESIZE)) + bytes;
        EXPECT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
    }
    ~AddressLimit() { setrlimit(RLIMIT_AS, &m_Old); }
    AddressLimit(const AddressLimit&) = delete;
    AddressLimit& operator=(const AddressLimit&) = delete;

private:
    rlimit m_Old{};
};

}  // namespace

TEST(LongRegister, IsReadAndWrittenWhateverItsLength) {
    for (const int64_t length :
         {int64_t{257}, int64_t{1} << 20, (int64_t{1} << 20) + 1, kLongestRegister}) {
        XmlNodeMap nodes(UncachedText(length));
        TextPort port;
        nodes->Connect(&port);
        auto& text = nodes.Get<IString>("S");
        EXPECT_EQ(text.GetValue(), "text") << length;
        text.SetValue("other", false);
        EXPECT_EQ(port.lengths, (std::vector<int64_t>{length, length}));
    }
}

TEST(LongRegister, FailsWhereThereIsNoMemoryForIt) {
    XmlNodeMap nodes(UncachedText(kLongestRegister));
    TextPort port;
    nodes->Connect(&port);
    auto& text = nodes.Get<IString>("S");
    const auto failure = [&] {
        const AddressLimit limit(rlim_t{1} << 30);
        return DescriptionOf<RuntimeException>([&] { text.GetValue(); });
    };
    EXPECT_EQ(failure(), "Node 'S' : no memory for a length of 2147483647");
    EXPECT_EQ(port.lengths, std::vector<int64_t>());
    EXPECT_EQ(text.GetValue(), "text");
}

TEST(Port, WithoutImplementationIsNotThereYetWithAChunk) {
    XmlNodeMap map("<Port Name=\"Bare\"/><Port Name=\"Chunk\"><ChunkID>1F</ChunkID></Port>");
    EXPECT_EQ(map.Map().GetNode("Bare")->GetAccessMode(), NI);
    EXPECT_EQ(map.Map().GetNode("Chunk")->GetAccessMode(), NA);
    EXPECT_EQ(map.Map().GetNode("Device")->GetAccessMode(), RW);
}

TEST(Port, WithAnEmptyIdentifierIsNoChunkPort) {
    XmlNodeMap map(
        "<Port Name=\"Empty\"><pChunkID>None</pChunkID></Port>"
        "<Port Name=\"Told\"><pChunkID>Some</pChunkID></Port>"
        "<String Name=\"None\"><Value></Value></String>"
        "<String Name=\"Some\"><Value>1F</Value></String>");
    EXPECT_EQ(map.Get("Empty").GetAccessMode(), NI);
    EXPECT_EQ(map.Get("Told").GetAccessMode(), NA);
}

TEST(Port, WithAnEmptyIdentifierHasAddressesOfADevice) {
    XmlNodeMap map(
        "<Port Name=\"Device\"><pChunkID>None</pChunkID></Port>"
        "<String Name=\"None\"><Value></Value></String>"
        "<IntReg Name=\"Reg\"><pAddress>Where</pAddress><Length>4</Length>"
        "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>"
        "<Integer Name=\"Where\"><Value>-4</Value></Integer>");
    EXPECT_EQ(map.Get<IRegister>("Reg").GetAddress(), -4);
    EXPECT_EQ(map.Port().GetReads(), 0U);
}

}  // namespace

}  // namespace EngineTest
