// Numbers and addresses as text: which are taken, and which are refused.

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

#include "ValueGraph.h"
#include "text/Value2String.h"

namespace ValueTest {

namespace {

std::optional<int64_t> Read(const char* text, ERepresentation representation) {
    int64_t value = -77;
    if (String2Value(text, &value, representation)) {
        return value;
    }
    EXPECT_EQ(value, -77) << "a text that is refused leaves the value alone";
    return std::nullopt;
}

std::optional<double> ReadFloat(const char* text) {
    double value = 0;
    return String2Value(text, &value) ? std::optional(value) : std::nullopt;
}

std::optional<bool> ReadFlag(const char* text) {
    bool value = false;
    return String2Value(gcstring(text), &value) ? std::optional(value) : std::nullopt;
}

constexpr ERepresentation kAll[] = {Linear,    Logarithmic, Boolean,    PureNumber,
                                    HexNumber, IPV4Address, MACAddress, _UndefinedRepresentation};

}  // namespace

TEST(AddressText, IsTakenWhenItIsWhole) {
    EXPECT_EQ(Read("192.168.0.1", IPV4Address), 0xC0A80001);
    EXPECT_EQ(Read("255.255.255.255", IPV4Address), 0xFFFFFFFF);
    EXPECT_EQ(Read("0.0.0.0", IPV4Address), 0);
    EXPECT_EQ(Read("010.001.000.009", IPV4Address), 0x0A010009);
    EXPECT_EQ(Read("00:11:22:aa:BB:fF", MACAddress), 0x001122AABBFF);
    EXPECT_EQ(Read("00-11-22-aa-BB-fF", MACAddress), 0x001122AABBFF);
    EXPECT_EQ(Read("0:1:2:3:4:5", MACAddress), 0x000102030405);
}

TEST(AddressText, MayBeTheNumberThatItIs) {
    for (const ERepresentation representation : {IPV4Address, MACAddress}) {
        EXPECT_EQ(Read("3232235521", representation), 3232235521);
        EXPECT_EQ(Read("0xC0A80001", representation), 0xC0A80001);
    }
}

TEST(AddressText, IsRefusedInParts) {
    for (const char* const text : {"256.1.1.1",
                                   "1.1.1.256",
                                   "192.168.0",
                                   "192.168.0.",
                                   "1.2.3.4.5",
                                   "1.2.3.4.",
                                   "192.168.0.1 ",
                                   " 192.168.0.1",
                                   "192.168.0.1\r",
                                   "1. 2.3.4",
                                   "1.+2.3.4",
                                   "1.-2.3.4",
                                   "1..2.3",
                                   ".1.2.3",
                                   "0x1.2.3.4",
                                   "1.2.3.4x",
                                   "1,2,3,4",
                                   "1:2:3:4",
                                   "0001.2.3.4",
                                   "12 ",
                                   "",
                                   " ",
                                   "."}) {
        EXPECT_EQ(Read(text, IPV4Address), std::nullopt) << "'" << text << "'";
    }
    for (const char* const text : {"00:11:22",
                                   "00:11:22:33:44",
                                   "00:11:22:33:44:55:66",
                                   "00:11:22:33:44:55 ",
                                   " 00:11:22:33:44:55",
                                   "00:11:22:33:44:55:",
                                   "00:11:22:33:44:",
                                   "100:11:22:33:44:55",
                                   "000:11:22:33:44:55",
                                   "00:11:22:33:44:5g",
                                   "00-11:22-33:44-55",
                                   "00:11-22:33-44:55",
                                   "00.11.22.33.44.55",
                                   "0x0:11:22:33:44:55",
                                   "00:-1:22:33:44:55",
                                   "00:+1:22:33:44:55",
                                   "00: 1:22:33:44:55",
                                   "::::::",
                                   "00:11",
                                   "12 ",
                                   "",
                                   "-"}) {
        EXPECT_EQ(Read(text, MACAddress), std::nullopt) << "'" << text << "'";
    }
}

TEST(AddressText, IsTakenBackAsItIsPrinted) {
    for (const ERepresentation representation : kAll) {
        for (const int64_t value : {0LL, 1LL, 0x0A0B0C0DLL, 0xFFFFFFFFLL}) {
            gcstring text;
            Value2String(value, text, representation);
            EXPECT_EQ(Read(text.c_str(), representation),
                      representation == Boolean ? value != 0 : value)
                << text;
        }
    }
}

TEST(NumberText, IsTakenWhenItIsWhole) {
    for (const ERepresentation representation : {Linear, Logarithmic, PureNumber, HexNumber}) {
        EXPECT_EQ(Read("12", representation), 12);
        EXPECT_EQ(Read("-12", representation), -12);
        EXPECT_EQ(Read("+12", representation), 12);
        EXPECT_EQ(Read(" 12", representation), 12);
        EXPECT_EQ(Read("0012", representation), 12);
        EXPECT_EQ(Read("0x1f", representation), 0x1F);
        EXPECT_EQ(Read("0xFFFFFFFFFFFFFFFF", representation), -1);
        EXPECT_EQ(Read("9223372036854775807", representation), std::numeric_limits<int64_t>::max());
        EXPECT_EQ(Read("-9223372036854775808", representation),
                  std::numeric_limits<int64_t>::min());
    }
}

TEST(NumberText, MayEndInTheBlanksOfALine) {
    EXPECT_EQ(Read("12\r", PureNumber), 12);
    EXPECT_EQ(Read("12 \t\n", PureNumber), 12);
    EXPECT_EQ(ReadFloat("1.5\r"), 1.5);
    EXPECT_EQ(ReadFloat(" 1.5 "), 1.5);
}

TEST(NumberText, IsRefusedWithRubbishBehindIt) {
    for (const ERepresentation representation : kAll) {
        for (const char* const text :
             {"12abc", "5.9", "5.0", "1e3", "12 13", "12,", "0x", "0xg", "0x12g", "--1", "+", "-",
              "abc", "", " ", "9223372036854775808", "0x10000000000000000"}) {
            EXPECT_EQ(Read(text, representation), std::nullopt) << "'" << text << "'";
        }
    }
}

TEST(NumberText, OfAFloatIsRefusedWithRubbishBehindIt) {
    EXPECT_EQ(ReadFloat("12"), 12.0);
    EXPECT_EQ(ReadFloat("-1.5e-3"), -1.5e-3);
    EXPECT_EQ(ReadFloat(".5"), 0.5);
    for (const char* const text :
         {"12abc", "1.5.2", "1,5", "1.5 2", "1.5e", "0x10", "1e999", "abc", "", " ", "e5"}) {
        EXPECT_EQ(ReadFloat(text), std::nullopt) << "'" << text << "'";
    }
}

TEST(NumberText, OfABooleanIsRefusedWithRubbishBehindIt) {
    EXPECT_EQ(ReadFlag("1"), true);
    EXPECT_EQ(ReadFlag("0"), false);
    EXPECT_EQ(ReadFlag("0x0"), false);
    EXPECT_EQ(ReadFlag("True"), true);
    for (const char* const text : {"1abc", "0.5", "true ", "yes", ""}) {
        EXPECT_EQ(ReadFlag(text), std::nullopt) << "'" << text << "'";
    }
}

class WrittenText : public ValueGraph {};

TEST_F(WrittenText, ReachesNoDeviceWhenItIsRefused) {
    AddReg("Reg", 0);
    AddInteger("Number", {{ID::pValue_ID, "Reg"}});
    AddInteger("Address", {{ID::pValue_ID, "Reg"}})
        .AddProperty(ID::Representation_ID, CProperty::ERepresentation_ID, IPV4Address);
    Add(CNodeData::Float_ID, "Float", {{ID::pValue_ID, "Reg"}});
    Build();
    EXPECT_THROW(Get<IInteger>("Number").FromString("5.9"), InvalidArgumentException);
    EXPECT_THROW(Get<IInteger>("Address").FromString("192.168.0"), InvalidArgumentException);
    EXPECT_THROW(Get<IFloat>("Float").FromString("12abc"), InvalidArgumentException);
    EXPECT_EQ(m_Port.writes, 0);
    Get<IInteger>("Address").FromString("10.0.0.1");
    EXPECT_EQ(Get<IInteger>("Address").ToString(), "10.0.0.1");
}

}  // namespace ValueTest
