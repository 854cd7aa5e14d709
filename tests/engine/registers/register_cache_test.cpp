// The bytes that a port keeps: what makes them old, and what doesn't.

#include <functional>
#include <random>

#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IPortReplay.h"
#include "GenApi/IPortWriteList.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "NodeGraph.h"
#include "ports/PortWriteList.h"
#include "ports/ValueCache.h"

namespace EngineTest {

namespace {

using Accesses = std::vector<TestPort::Access>;

constexpr TestPort::Access Read(int64_t address, int64_t length = 4) {
    return {false, address, length};
}
constexpr TestPort::Access Written(int64_t address, int64_t length = 4) {
    return {true, address, length};
}

/// A register of any type and place.
struct AnyReg {
    std::string type = "IntReg";
    std::string name;
    std::string address = Element("Address", "0");
    int length = 4;
    std::string caching = "WriteThrough";
    std::string rest = {};  ///< invalidators and what the type adds
    std::string common = {};

    std::string operator()() const {
        return "<" + type + " Name=\"" + name + "\">" + common + address +
               Element("Length", std::to_string(length)) + Element("AccessMode", "RW") +
               Element("pPort", "Device") + Element("Cachable", caching) + rest + "</" + type + ">";
    }
};

std::string Field(const std::string& name, int lsb, int msb,
                  const std::string& caching = "WriteThrough", const std::string& rest = "") {
    return AnyReg{.type = "MaskedIntReg",
                  .name = name,
                  .caching = caching,
                  .rest = rest + Element("LSB", std::to_string(lsb)) +
                          Element("MSB", std::to_string(msb)) +
                          Element("Endianess", "LittleEndian")}();
}

std::string Invalidated(const std::string& name, int address, const std::string& by) {
    return AnyReg{.name = name,
                  .address = Element("Address", std::to_string(address)),
                  .rest = Element("pInvalidator", by)}();
}

// What sets a register invalid.

struct Cause {
    const char* name;
    std::function<void(XmlNodeMap&)> happens;
};

void PrintTo(const Cause& cause, std::ostream* out) {
    *out << cause.name;
}

class Register : public testing::TestWithParam<Cause> {
protected:
    XmlNodeMap m_Nodes{
        IntReg("Switch", 4) +
        AnyReg{.name = "Reg",
               .rest = Element("PollingTime", "10") + Element("pInvalidator", "Switch")}() +
        IntegerXml("Node", "", Element("pValue", "Reg"))};
    IInteger& m_Reg = m_Nodes.Get<IInteger>("Reg");
};

const Cause kCauses[] = {
    {"InvalidateNode", [](XmlNodeMap& nodes) { nodes.Get("Reg").InvalidateNode(); }},
    {"InvalidateNodeOfAValueOverIt", [](XmlNodeMap& nodes) { nodes.Get("Node").InvalidateNode(); }},
    {"InvalidateNodes", [](XmlNodeMap& nodes) { nodes->InvalidateNodes(); }},
    {"Poll", [](XmlNodeMap& nodes) { nodes->Poll(10); }},
    {"Connect", [](XmlNodeMap& nodes) { nodes->Connect(&nodes.Port()); }},
    {"Replay",
     [](XmlNodeMap& nodes) {
         CPortWriteList list;
         nodes.Get<IPortReplay>("Device").Replay(&list, true);
     }},
    {"AWriteOfAnInvalidator", [](XmlNodeMap& nodes) { nodes.Get<IInteger>("Switch").SetValue(1); }},
    {"ARawWriteOfAnInvalidator",
     [](XmlNodeMap& nodes) {
         const uint8_t bytes[4] = {1};
         nodes.Get<IRegister>("Switch").Set(bytes, 4);
     }},
    {"AFailedWriteOfAnInvalidator",
     [](XmlNodeMap& nodes) {
         nodes.Port().FailAccess(1);
         EXPECT_THROW(nodes.Get<IInteger>("Switch").SetValue(1), TimeoutException);
     }},
    {"AnImposedAccessMode", [](XmlNodeMap& nodes) { nodes.Get("Reg").ImposeAccessMode(RO); }},
    {"AReadThatIgnoresTheCache",
     [](XmlNodeMap& nodes) {
         nodes.Get<IInteger>("Node").GetValue(false, true);
         nodes.Port().Put(0, 9);
     }},
};

}  // namespace

TEST_P(Register, ForgetsItsBytesWhenItIsSetInvalid) {
    EXPECT_EQ(m_Reg.GetValue(), 0);
    m_Nodes.Port().Put(0, 7);
    ASSERT_EQ(m_Reg.GetValue(), 0) << "nothing has happened yet";
    GetParam().happens(m_Nodes);
    const auto now = m_Nodes.Port().Peek<int32_t>(0);
    EXPECT_EQ(m_Nodes.Get<IInteger>("Node").GetValue(), now);
    EXPECT_EQ(m_Reg.GetValue(), now);
}

INSTANTIATE_TEST_SUITE_P(Causes, Register, testing::ValuesIn(kCauses),
                         [](const auto& cause) { return std::string(cause.param.name); });

TEST(RegisterBytes, AreReadOnceForAllRegistersOfOneRange) {
    XmlNodeMap nodes(IntReg("One", 0) + IntReg("Other", 0) + Field("Bits", 0, 7));
    for (const char* const name : {"One", "Other", "Bits"}) {
        nodes.Get<IInteger>(name).GetValue();
    }
    EXPECT_EQ(nodes.Port().GetAccesses(), Accesses{Read(0)});
}

TEST(RegisterBytes, AreKeptForEachLengthAtAnAddress) {
    XmlNodeMap nodes(AnyReg{.name = "Short", .length = 2}() + AnyReg{.name = "Long"}());
    uint8_t bytes[4] = {};
    for (int i = 0; i < 2; ++i) {
        nodes.Get<IRegister>("Short").Get(bytes, 2);
        nodes.Get<IRegister>("Long").Get(bytes, 4);
    }
    EXPECT_EQ(nodes.Port().GetAccesses(), (Accesses{Read(0, 2), Read(0, 4)}));
}

TEST(RegisterBytes, AreThoseOfTheAddressThatWasUsedLast) {
    XmlNodeMap nodes(
        IntReg("Index", 0x40) +
        AnyReg{.name = "Reg", .address = Element("Address", "0x100") + "<pIndex>Index</pIndex>"}());
    auto& index = nodes.Get<IInteger>("Index");
    auto& reg = nodes.Get<IInteger>("Reg");
    nodes.Port().Put(0x100, 1);
    nodes.Port().Put(0x104, 2);
    EXPECT_EQ(reg.GetValue(), 1);
    index.SetValue(1);
    EXPECT_EQ(reg.GetValue(), 2);
    nodes.Port().Put(0x100, 3);
    nodes.Port().Put(0x104, 4);
    nodes.Port().ForgetAccesses();
    nodes.Get("Reg").InvalidateNode();
    EXPECT_EQ(nodes.Port().GetAccesses(), Accesses{}) << "invalidating computes nothing";
    EXPECT_EQ(reg.GetValue(), 4);
    index.SetValue(0);
    EXPECT_EQ(reg.GetValue(), 3);
}

TEST(RegisterBytes, AreForgottenWithThePort) {
    XmlNodeMap nodes(IntReg("Switch", 4) + IntReg("Reg", 0) +
                     "<Port Name=\"Device\"><pInvalidator>Switch</pInvalidator></Port>");
    auto& reg = nodes.Get<IInteger>("Reg");
    reg.GetValue();
    nodes.Port().Put(0, 7);
    nodes.Get<IInteger>("Switch").SetValue(1);
    EXPECT_EQ(reg.GetValue(), 7);
}

TEST(RegisterBytes, AreThoseOfTheDeviceThatIsConnected) {
    XmlNodeMap nodes(IntReg("Reg", 0));
    auto& reg = nodes.Get<IInteger>("Reg");
    reg.SetValue(5);
    TestPort other;
    other.Put(0, 6);
    nodes->Connect(&other);
    EXPECT_EQ(reg.GetValue(), 6);
    nodes->Connect(&nodes.Port());
    EXPECT_EQ(reg.GetValue(), 5);
}

TEST(RegisterBytes, OfAnInvalidatedRegisterTakeTheValuesOfAllThatShareThem) {
    XmlNodeMap nodes(IntReg("Switch", 4) + Invalidated("Named", 0, "Switch") +
                     IntReg("Unnamed", 0) +
                     AnyReg{.type = "StringReg", .name = "Text", .length = 16}() +
                     IntegerXml("Node", "", Element("pValue", "Unnamed")));
    auto& node = nodes.Get<IInteger>("Node");
    auto& text = nodes.Get<IString>("Text");
    nodes.Get<IInteger>("Named").GetValue();
    node.GetValue();
    text.GetValue();
    nodes.Port().Put(0, 0x3839);
    nodes.Get<IInteger>("Switch").SetValue(1);
    EXPECT_EQ(node.GetValue(), 0x3839);
    EXPECT_EQ(text.GetValue(), "98");
}

TEST(RegisterBytes, OfAFeatureThatNamesInvalidatorsAreOfAnyRegisterBelowIt) {
    XmlNodeMap nodes(
        IntReg("Switch", 4) + IntReg("Reg", 0) +
        IntegerXml("Between", "", Element("pValue", "Reg")) +
        IntegerXml("Node", Element("pInvalidator", "Switch"), Element("pValue", "Between")) +
        "<IntSwissKnife Name=\"Knife\"><pInvalidator>Switch</pInvalidator>"
        "<pVariable Name=\"A\">Other</pVariable><Formula>A+1</Formula>"
        "</IntSwissKnife>" +
        IntReg("Other", 8));
    nodes.Get<IInteger>("Node").GetValue();
    nodes.Get<IInteger>("Knife").GetValue();
    nodes.Port().Put(0, 7);
    nodes.Port().Put(8, 8);
    nodes.Get<IInteger>("Switch").SetValue(1);
    EXPECT_EQ(nodes.Get<IInteger>("Node").GetValue(), 7);
    EXPECT_EQ(nodes.Get<IInteger>("Knife").GetValue(), 9);
}

TEST(RegisterBytes, BelowAFormulaAreForgottenWhenTheFormulaIsSetInvalid) {
    XmlNodeMap nodes(IntReg("Reg", 0) +
                     "<IntSwissKnife Name=\"Knife\"><pVariable Name=\"A\">Reg</pVariable>"
                     "<Formula>A+1</Formula></IntSwissKnife>");
    auto& knife = nodes.Get<IInteger>("Knife");
    knife.GetValue();
    nodes.Port().Put(0, 7);
    nodes.Get("Knife").InvalidateNode();
    EXPECT_EQ(knife.GetValue(), 8);
}

// Own writes.

namespace {

/// A write through one of the faces of a register.
struct Face {
    const char* name;
    const char* node;
    std::function<void(INode&)> write;
    /// The lengths of what is read and written, and nothing else.
    Accesses accesses;
};

void PrintTo(const Face& face, std::ostream* out) {
    *out << face.name;
}

const uint8_t kBytes[16] = {1, 2, 3, 4};

const Face kFaces[] = {
    {"Integer",
     "Int",
     [](INode& node) { dynamic_cast<IInteger&>(node).SetValue(5); },
     {Written(0)}},
    {"Register",
     "Int",
     [](INode& node) { dynamic_cast<IRegister&>(node).Set(kBytes, 4); },
     {Written(0)}},
    {"Text", "Int", [](INode& node) { dynamic_cast<IValue&>(node).FromString("5"); }, {Written(0)}},
    {"Bytes",
     "Raw",
     [](INode& node) { dynamic_cast<IValue&>(node).FromString("0x01020304"); },
     {Written(0)}},
    {"BitField",
     "Bits",
     [](INode& node) { dynamic_cast<IInteger&>(node).SetValue(5); },
     {Read(0), Written(0)}},
    {"Float", "Real", [](INode& node) { dynamic_cast<IFloat&>(node).SetValue(0.5); }, {Written(0)}},
    {"String",
     "Text",
     [](INode& node) { dynamic_cast<IString&>(node).SetValue("abc"); },
     {Written(0)}},
    {"Reference",
     "Node",
     [](INode& node) { dynamic_cast<IInteger&>(node).SetValue(5); },
     {Written(0)}},
    {"Unverified",
     "Int",
     [](INode& node) { dynamic_cast<IInteger&>(node).SetValue(5, false); },
     {Written(0)}},
};

class OwnWrite : public testing::TestWithParam<Face> {
protected:
    XmlNodeMap m_Nodes{IntReg("Int", 0) + AnyReg{.type = "Register", .name = "Raw"}() +
                       Field("Bits", 0, 7) + AnyReg{.type = "FloatReg", .name = "Real"}() +
                       AnyReg{.type = "StringReg", .name = "Text"}() +
                       IntegerXml("Node", "", Element("pValue", "Int"))};
    uint8_t m_Bytes[4] = {};

    IRegister& TheRegister() {
        const char* const name = GetParam().node;
        return m_Nodes.Get<IRegister>(std::string(name) == "Node" ? "Int" : name);
    }
};

}  // namespace

TEST_P(OwnWrite, SparesTheBytes) {
    GetParam().write(m_Nodes.Get(GetParam().node));
    TheRegister().Get(m_Bytes, 4);
    EXPECT_EQ(m_Nodes.Port().GetAccesses(), GetParam().accesses);
    EXPECT_EQ(std::vector<uint8_t>(m_Bytes, m_Bytes + 4), m_Nodes.Port().PeekBytes(0, 4));
}

TEST_P(OwnWrite, SparesTheBytesOnce) {
    GetParam().write(m_Nodes.Get(GetParam().node));
    m_Nodes.Port().ForgetAccesses();
    dynamic_cast<INode&>(TheRegister()).InvalidateNode();
    TheRegister().Get(m_Bytes, 4);
    EXPECT_EQ(m_Nodes.Port().GetAccesses(), Accesses{Read(0)});
}

TEST_P(OwnWrite, SparesNothingWhenItFails) {
    TheRegister().Get(m_Bytes, 4);
    m_Nodes.Port().FailAccess(1);
    EXPECT_THROW(GetParam().write(m_Nodes.Get(GetParam().node)), TimeoutException);
    m_Nodes.Port().ForgetAccesses();
    TheRegister().Get(m_Bytes, 4);
    EXPECT_EQ(m_Nodes.Port().GetAccesses(), Accesses{Read(0)});
}

INSTANTIATE_TEST_SUITE_P(ThroughThe, OwnWrite, testing::ValuesIn(kFaces),
                         [](const auto& face) { return std::string(face.param.name); });

namespace {

std::string ErrorXml() {
    return "<Enumeration Name=\"Error\"><EnumEntry Name=\"Fine\"><Value>0</Value></EnumEntry>"
           "<EnumEntry Name=\"Refused\"><Value>1</Value></EnumEntry><pValue>ErrorReg</pValue>"
           "</Enumeration>" +
           IntReg("ErrorReg", 0x20, "NoCache");
}

}  // namespace

TEST(WriteWithAnError, SparesNothing) {
    XmlNodeMap nodes(ErrorXml() + AnyReg{.name = "Reg", .common = Element("pError", "Error")}());
    auto& reg = nodes.Get<IInteger>("Reg");
    uint8_t bytes[4] = {9};
    const std::function<void()> writes[] = {
        [&] { reg.SetValue(9); },
        [&] { nodes.Get<IRegister>("Reg").Set(bytes, 4); },
        [&] { nodes.Get<IValue>("Reg").FromString("9"); },
    };
    for (const auto& write : writes) {
        nodes.Port().Put(0x20, 0);
        reg.SetValue(3);
        nodes.Port().Put(0x20, 1);
        EXPECT_THROW(write(), RuntimeException);
        nodes.Port().Put(0, 3);  // what the device thinks of it
        EXPECT_EQ(reg.GetValue(), 3);
    }
}

TEST(WriteWithAnError, OfTheNodeAboveSparesNothing) {
    XmlNodeMap nodes(ErrorXml() + IntReg("Reg", 0) +
                     IntegerXml("Node", Element("pError", "Error"), Element("pValue", "Reg")));
    nodes.Port().Put(0x20, 1);
    auto& node = nodes.Get<IInteger>("Node");
    EXPECT_THROW(node.SetValue(9), RuntimeException);
    nodes.Port().Put(0, 3);
    EXPECT_EQ(nodes.Get<IInteger>("Reg").GetValue(), 3);
    EXPECT_EQ(node.GetValue(), 3);
    nodes.Port().Put(0x20, 0);
    node.SetValue(4);
    nodes.Port().ForgetAccesses();
    EXPECT_EQ(node.GetValue(), 4);
    EXPECT_EQ(nodes.Port().GetReads(), 0U) << "the next write is spared again";
}

TEST(OwnWriteOfOne, YieldsToTheInvalidationOfAnotherAtTheSameAddress) {
    XmlNodeMap nodes(IntReg("Reg", 0) + Invalidated("Twin", 0, "Reg"));
    auto& reg = nodes.Get<IInteger>("Reg");
    auto& twin = nodes.Get<IInteger>("Twin");
    twin.GetValue();
    reg.SetValue(5);
    nodes.Port().Put(0, 6);  // the device makes something else of it
    EXPECT_EQ(twin.GetValue(), 6);
    EXPECT_EQ(reg.GetValue(), 6);
    EXPECT_EQ(nodes.Port().GetReads(), 2U) << "one for each time that the bytes were unknown";
}

// Verified reads.

namespace {

struct VerifiedRead {
    const char* node;
    std::function<int64_t(INode&)> read;
};

void PrintTo(const VerifiedRead& test, std::ostream* out) {
    *out << test.node;
}

int64_t VerifiedInteger(INode& node) {
    return dynamic_cast<IInteger&>(node).GetValue(true);
}

const VerifiedRead kVerifiedReads[] = {
    {"Int", VerifiedInteger},
    {"Bits", VerifiedInteger},
    {"Node", VerifiedInteger},
    {"Above", VerifiedInteger},
    {"Indexed", VerifiedInteger},
    {"Knife", VerifiedInteger},
    {"Converter", VerifiedInteger},
    {"Flag", [](INode& node) -> int64_t { return dynamic_cast<IBoolean&>(node).GetValue(true); }},
    {"Choice", [](INode& node) { return dynamic_cast<IEnumeration&>(node).GetIntValue(true); }},
    {"Real",
     [](INode& node) { return static_cast<int64_t>(dynamic_cast<IFloat&>(node).GetValue(true)); }},
    {"Text",
     [](INode& node) -> int64_t { return dynamic_cast<IString&>(node).GetValue(true).size(); }},
    {"Raw",
     [](INode& node) -> int64_t {
         uint8_t bytes[4] = {};
         dynamic_cast<IRegister&>(node).Get(bytes, 4, true);
         return bytes[0];
     }},
    {"Raw",
     [](INode& node) -> int64_t {
         return dynamic_cast<IValue&>(node).ToString(true) == "0x01000000";
     }},
};

class Verified : public testing::TestWithParam<VerifiedRead> {
protected:
    XmlNodeMap m_Nodes{
        IntReg("Int", 0) + Field("Bits", 0, 7) + IntegerXml("Node", "", Element("pValue", "Int")) +
        IntegerXml("Above", "", Element("pValue", "Node")) +
        IntegerXml("Indexed", "",
                   "<pIndex>Index</pIndex><pValueIndexed Index=\"0\">Int</pValueIndexed>"
                   "<ValueDefault>0</ValueDefault>") +
        IntReg("Index", 0x40) +
        "<IntSwissKnife Name=\"Knife\"><pVariable Name=\"A\">Int</pVariable>"
        "<Formula>A</Formula></IntSwissKnife>"
        "<IntConverter Name=\"Converter\"><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>"
        "<pValue>Int</pValue></IntConverter>"
        "<Boolean Name=\"Flag\"><pValue>Int</pValue></Boolean>"
        "<Enumeration Name=\"Choice\"><EnumEntry Name=\"A\"><Value>0</Value></EnumEntry>"
        "<EnumEntry Name=\"B\"><Value>1</Value></EnumEntry><pValue>Int</pValue></Enumeration>"
        "<Float Name=\"Real\"><pValue>Int</pValue></Float>"
        "<String Name=\"Text\"><pValue>TextReg</pValue></String>" +
        AnyReg{.type = "StringReg", .name = "TextReg"}() +
        AnyReg{.type = "Register", .name = "Raw"}()};
};

}  // namespace

TEST_P(Verified, ReadsTheRegisterFromTheDevice) {
    INode& node = m_Nodes.Get(GetParam().node);
    EXPECT_EQ(GetParam().read(node), 0);
    m_Nodes.Port().Put(0, 1);
    m_Nodes.Port().ForgetAccesses();
    EXPECT_EQ(GetParam().read(node), 1);
    EXPECT_EQ(m_Nodes.Port().GetAccesses(), Accesses{Read(0)});
}

INSTANTIATE_TEST_SUITE_P(Values, Verified, testing::ValuesIn(kVerifiedReads), [](const auto& test) {
    return std::string(test.param.node) + std::to_string(test.index);
});

TEST(VerifiedAccess, TakesAddressesIndexesAndLengthsFromTheCache) {
    XmlNodeMap nodes(IntReg("Base", 0x40) + IntReg("Index", 0x44) + IntReg("Step", 0x48) +
                     IntReg("Length", 0x4C) +
                     "<IntReg Name=\"Reg\"><pAddress>Base</pAddress>"
                     "<pIndex pOffset=\"Step\">Index</pIndex><pLength>Length</pLength>"
                     "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>");
    nodes.Port().Put(0x4C, 4);
    auto& reg = nodes.Get<IInteger>("Reg");
    reg.GetValue();
    nodes.Port().ForgetAccesses();
    reg.GetValue(true);
    reg.SetValue(5, true);
    EXPECT_EQ(nodes.Port().GetAccesses(), (Accesses{Read(0), Written(0)}));
}

TEST(VerifiedAccess, TakesTheOtherBitsOfAFieldFromTheCache) {
    XmlNodeMap nodes(Field("Bits", 0, 7));
    auto& bits = nodes.Get<IInteger>("Bits");
    bits.GetValue();
    nodes.Port().ForgetAccesses();
    bits.SetValue(5, true);
    EXPECT_EQ(nodes.Port().GetAccesses(), Accesses{Written(0)});
}

TEST(VerifiedAccess, ThatFindsOtherBytesMakesOldWhatWasMadeOfTheKnownOnes) {
    XmlNodeMap nodes(IntReg("One", 0) + IntReg("Other", 0) +
                     IntegerXml("Node", "", Element("pValue", "Other")));
    auto& node = nodes.Get<IInteger>("Node");
    node.GetValue();
    nodes.Port().Put(0, 7);
    EXPECT_EQ(nodes.Get<IInteger>("One").GetValue(true), 7);
    EXPECT_EQ(node.GetValue(), 7);
    EXPECT_EQ(nodes.Port().GetReads(), 2U);
}

// Writes over bytes that others have cached.

namespace {

struct OverWrite {
    const char* name;
    std::function<void(XmlNodeMap&)> write;
};

void PrintTo(const OverWrite& test, std::ostream* out) {
    *out << test.name;
}

/// Writes the third and the fourth byte.
CPortWriteList TwoBytes() {
    static constexpr uint8_t kTwo[] = {0x44, 0x55};
    CPortWriteList list;
    list.Write(kTwo, 2, 2);
    return list;
}

/// A transport that has a quicker way for many writes.
class ReplayingPort : public TestPort, public IPortReplay {
public:
    explicit ReplayingPort(TestPort& port) : m_Port(port) {}
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        m_Port.Read(buffer, address, length);
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        m_Port.Write(buffer, address, length);
    }
    void Replay(IPortWriteList* list, bool /*invalidate*/) override { list->Replay(&m_Port); }

private:
    TestPort& m_Port;
};

template <class Interface, class Value>
void Set(XmlNodeMap& nodes, const char* name, const Value& value) {
    nodes.Get<Interface>(name).SetValue(value);
}

const OverWrite kOverWrites[] = {
    {"Uncached", [](XmlNodeMap& nodes) { Set<IInteger>(nodes, "Uncached", 0x5544); }},
    {"WrittenAround", [](XmlNodeMap& nodes) { Set<IInteger>(nodes, "Around", 0x5544); }},
    {"WrittenThrough", [](XmlNodeMap& nodes) { Set<IInteger>(nodes, "Through", 0x5544); }},
    {"APart",
     [](XmlNodeMap& nodes) {
         const uint8_t byte = 0x77;
         nodes.Get<IRegister>("Through").Set(&byte, 1);
     }},
    {"ThroughThePort",
     [](XmlNodeMap& nodes) {
         const uint8_t bytes[] = {0x44, 0x55};
         nodes.Get<IPort>("Device").Write(bytes, 2, 2);
     }},
    {"AReplay",
     [](XmlNodeMap& nodes) {
         CPortWriteList list = TwoBytes();
         nodes.Get<IPortReplay>("Device").Replay(&list, false);
     }},
    {"AReplayOfTheTransport",
     [](XmlNodeMap& nodes) {
         ReplayingPort port(nodes.Port());
         nodes->Connect(&port);
         nodes.Get<IInteger>("Int").GetValue();
         nodes.Get<IString>("Text").GetValue();
         nodes.Get<IInteger>("Node").GetValue();
         CPortWriteList list = TwoBytes();
         nodes.Get<IPortReplay>("Device").Replay(&list, false);
         EXPECT_EQ(nodes.Get<IInteger>("Int").GetValue(), nodes.Port().Peek<int32_t>(0));
         nodes->Connect(&nodes.Port());
     }},
    {"AFailedOneThatArrived",
     [](XmlNodeMap& nodes) {
         nodes.Port().FailAccess(1);
         EXPECT_THROW(Set<IInteger>(nodes, "Uncached", 0x5544), TimeoutException);
         nodes.Port().Put<uint16_t>(2, 0x5544);
     }},
};

class Overlapping : public testing::TestWithParam<OverWrite> {
protected:
    static std::string Two(const char* name, const char* caching) {
        return AnyReg{
            .name = name, .address = Element("Address", "2"), .length = 2, .caching = caching}();
    }

    XmlNodeMap m_Nodes{IntReg("Int", 0) + Two("Uncached", "NoCache") +
                       Two("Around", "WriteAround") + Two("Through", "WriteThrough") +
                       AnyReg{.type = "StringReg", .name = "Text", .length = 64}() +
                       IntReg("After", 4) + IntegerXml("Node", "", Element("pValue", "Int")) +
                       Invalidated("Invalidated", 0x80, "Int")};
    IInteger& m_Int = m_Nodes.Get<IInteger>("Int");
};

}  // namespace

TEST_P(Overlapping, WriteMakesOldWhatOthersHaveOfTheseBytes) {
    m_Nodes.Port().PutBytes(0, {0x31, 0x32, 0x33, 0x34});
    EXPECT_EQ(m_Int.GetValue(), 0x34333231);
    EXPECT_EQ(m_Nodes.Get<IString>("Text").GetValue(), "1234");
    EXPECT_EQ(m_Nodes.Get<IInteger>("Node").GetValue(), 0x34333231);
    EXPECT_EQ(m_Nodes.Get<IInteger>("Invalidated").GetValue(), 0);
    m_Nodes.Port().Put(0x80, 1);
    GetParam().write(m_Nodes);
    EXPECT_EQ(m_Nodes.Get<IInteger>("Node").GetValue(), m_Nodes.Port().Peek<int32_t>(0));
    EXPECT_EQ(m_Int.GetValue(), m_Nodes.Port().Peek<int32_t>(0));
    const auto bytes = m_Nodes.Port().PeekBytes(0, 4);
    EXPECT_EQ(m_Nodes.Get<IString>("Text").GetValue(),
              gcstring(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    EXPECT_EQ(m_Nodes.Get<IInteger>("Invalidated").GetValue(), 1)
        << "the register that it depends on was written, if by another name";
}

TEST_P(Overlapping, WriteLeavesOtherBytesAlone) {
    auto& after = m_Nodes.Get<IInteger>("After");
    after.SetValue(1);
    const bool connects = std::string(GetParam().name) == "AReplayOfTheTransport";
    GetParam().write(m_Nodes);
    m_Nodes.Port().ForgetAccesses();
    EXPECT_EQ(after.GetValue(), 1);
    EXPECT_EQ(m_Nodes.Port().GetReads(), connects ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Of, Overlapping, testing::ValuesIn(kOverWrites),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(BitField, WritesTheBitsThatItsUncachedNeighbourLeft) {
    XmlNodeMap nodes(Field("Size", 0, 15) + Field("DoNotFragment", 30, 30, "NoCache"));
    auto& size = nodes.Get<IInteger>("Size");
    size.GetValue();
    nodes.Get<IInteger>("DoNotFragment").SetValue(1);
    size.SetValue(1500);
    EXPECT_EQ(nodes.Port().Peek<uint32_t>(0), 0x40000000U + 1500);
}

TEST(BitField, KeepsWhatItWroteWhenItsNeighbourIsToldOfIt) {
    XmlNodeMap nodes(Field("Low", 0, 7) + Field("High", 8, 15));
    auto& low = nodes.Get<IInteger>("Low");
    auto& high = nodes.Get<IInteger>("High");
    low.GetValue();
    high.GetValue();
    low.SetValue(3);
    high.SetValue(4);
    EXPECT_EQ(low.GetValue(), 3);
    EXPECT_EQ(high.GetValue(), 4);
    EXPECT_EQ(nodes.Port().GetAccesses(), (Accesses{Read(0), Written(0), Written(0)}));
}

// Registers that share bytes pass an invalidation on, and so do those that depend
// on them: however many take turns, the stack bears it.
TEST(Invalidation, PassesThroughALongRowOfRegisters) {
    constexpr int kRow = 4000;
    std::string body = IntReg("R0", 0);
    for (int i = 0; i < kRow; ++i) {
        const std::string number = std::to_string(i);
        body += IntReg("S" + number, 8 * i) +
                Invalidated("R" + std::to_string(i + 1), 8 * (i + 1), "S" + number);
    }
    XmlNodeMap nodes(body);
    node_vector list;
    nodes->GetNodes(list);
    for (INode* const node : list) {
        if (auto* const value = dynamic_cast<IInteger*>(node)) {
            value->GetValue();
        }
    }
    const std::string last = "R" + std::to_string(kRow);
    nodes.Port().Put(8 * kRow, 7);
    nodes.Get<IInteger>("R0").SetValue(1);
    EXPECT_EQ(nodes.Get<IInteger>(last.c_str()).GetValue(), 7);
}

// Addresses.

TEST(RegisterIndex, WithAnOffsetOfZeroCountsNothing) {
    const auto addressWith = [](const char* index) {
        XmlNodeMap nodes(
            "<Integer Name=\"Index\"><Value>3</Value></Integer>"
            "<Integer Name=\"Zero\"><Value>0</Value></Integer>" +
            AnyReg{.name = "Reg", .address = Element("Address", "0x100") + index}());
        return nodes.Get<IRegister>("Reg").GetAddress();
    };
    EXPECT_EQ(addressWith("<pIndex Offset=\"0\">Index</pIndex>"), 0x100);
    EXPECT_EQ(addressWith("<pIndex pOffset=\"Zero\">Index</pIndex>"), 0x100);
    EXPECT_EQ(addressWith("<pIndex>Index</pIndex>"), 0x10C);
}

// The cache by itself.

namespace {

class NotedUser : public IBytesUser {
public:
    void ForgetBytes() override { ++told; }
    int told = 0;
};

struct KnownRange {
    uint64_t first;
    uint64_t last;
    CValueCache::Entry* entry;
    NotedUser user;
};

}  // namespace

TEST(ValueCache, ForgetsExactlyWhatSharesAByteWithAWrite) {
    std::mt19937_64 random(1);
    const auto below = [&random](uint64_t end) { return random() % end; };
    CValueCache cache;
    CInvalidationQueue queue;
    const std::vector<uint8_t> bytes(5000);
    std::vector<std::unique_ptr<KnownRange>> ranges;
    for (int i = 0; i < 2000; ++i) {
        const auto length = static_cast<int64_t>(1 + (below(8) == 0 ? below(5000) : below(9)));
        // About the middle and about the end of all addresses.
        const uint64_t first = (below(2) == 0 ? uint64_t{1} << 63 : ~uint64_t{0} - 20000) +
                               below(20000 - static_cast<uint64_t>(length));
        auto& entry = cache.GetEntry(static_cast<int64_t>(first), length);
        ranges.push_back(std::make_unique<KnownRange>(
            KnownRange{first, first + static_cast<uint64_t>(length) - 1, &entry, {}}));
        entry.AddUser(ranges.back()->user);
        entry.Store(bytes.data());
        const KnownRange& victim = *ranges[below(ranges.size())];
        const bool byEntry = below(2) == 0;
        const uint64_t begin = byEntry ? victim.first : victim.last;
        const uint64_t end = byEntry ? victim.last : victim.last + std::min(~victim.last, below(9));
        std::vector<int> toldBefore;
        std::vector<bool> validBefore;
        for (const auto& range : ranges) {
            toldBefore.push_back(range->user.told);
            validBefore.push_back(range->entry->IsValid());
        }
        if (byEntry) {
            cache.Forget(*victim.entry, queue);
        } else {
            cache.ForgetRange(static_cast<int64_t>(begin), static_cast<int64_t>(end - begin + 1),
                              queue);
        }
        queue.Run();
        for (size_t k = 0; k < ranges.size(); ++k) {
            const bool overlaps = ranges[k]->first <= end && ranges[k]->last >= begin;
            ASSERT_EQ(ranges[k]->entry->IsValid(), !overlaps && validBefore[k]) << i << " " << k;
            ASSERT_LE(ranges[k]->user.told, toldBefore[k] + (overlaps ? 1 : 0));
        }
        ASSERT_EQ(ranges.back()->user.told,
                  ranges.back()->first <= end && ranges.back()->last >= begin ? 1 : 0);
    }
}

TEST(ValueCache, TellsAUserOnce) {
    CValueCache cache;
    CInvalidationQueue queue;
    NotedUser user;
    auto& entry = cache.GetEntry(0, 4);
    entry.AddUser(user);
    cache.Forget(entry, queue);
    cache.Forget(entry, queue);
    queue.Run();
    EXPECT_EQ(user.told, 1);
    entry.AddUser(user);
    entry.RemoveUser(user);
    cache.Forget(entry, queue);
    queue.Run();
    EXPECT_EQ(user.told, 1);
}

TEST(ValueCache, PassesNoEndOfTheAddresses) {
    CValueCache cache;
    CInvalidationQueue queue;
    const uint8_t bytes[8] = {};
    auto& low = cache.GetEntry(0, 4);
    auto& high = cache.GetEntry(-4, 8);
    low.Store(bytes);
    high.Store(bytes);
    cache.ForgetRange(-1, 2, queue);
    EXPECT_TRUE(low.IsValid());
    EXPECT_FALSE(high.IsValid());
    cache.ForgetRange(0, 0, queue);
    EXPECT_TRUE(low.IsValid());
}

}  // namespace EngineTest
