// Anything in any order, on a map that keeps what it may, over registers that share
// bytes, depend on one another and differ in what they keep. A second map that
// keeps nothing says what is right.

#include <random>

#include "CacheCompare.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IPortReplay.h"
#include "GenApi/IRegister.h"
#include "NodeGraph.h"
#include "ports/PortWriteList.h"

namespace EngineTest {

namespace {

constexpr int kMemory = 0x100;

std::string Reg(const std::string& name, const std::string& address, int length,
                const std::string& caching, const std::string& rest = "",
                const std::string& type = "IntReg", const std::string& common = "") {
    return RegXml{.name = name,
                  .caching = caching,
                  .common = common,
                  .tail = rest,
                  .type = type,
                  .place = address,
                  .length = length == 0 ? Element("pLength", "Length")
                                        : Element("Length", std::to_string(length)),
                  .sign = "",
                  .endianess = ""}();
}

std::string Bits(const std::string& name, int lsb, int msb, const std::string& caching,
                 const std::string& rest = "") {
    return Reg(name, At(0x10), 4, caching,
               rest + Element("LSB", std::to_string(lsb)) + Element("MSB", std::to_string(msb)) +
                   Element("Endianess", "LittleEndian"),
               "MaskedIntReg");
}

std::string Knife(const std::string& name, const std::string& formula,
                  const std::vector<std::pair<std::string, std::string>>& variables,
                  const std::string& common = "") {
    std::string xml = "<IntSwissKnife Name=\"" + name + "\">" + common;
    for (const auto& [variable, node] : variables) {
        xml.append("<pVariable Name=\"").append(variable).append("\">");
        xml.append(node).append("</pVariable>");
    }
    return xml + Element("Formula", formula) + "</IntSwissKnife>";
}

const std::string kBySwitch = Element("pInvalidator", "Switch");

std::string Registers() {
    return Reg("A", At(0), 4, "WriteThrough") + Reg("B", At(0), 4, "WriteAround") +
           Reg("C", At(0), 4, "NoCache") + Reg("Half", At(2), 2, "WriteThrough") +
           Reg("Bytes", At(1), 7, "WriteThrough", "", "Register") +
           Bits("Low", 0, 7, "WriteThrough") + Bits("Second", 8, 15, "NoCache") +
           Bits("High", 16, 30, "WriteAround", kBySwitch) + Bits("Bit", 31, 31, "WriteThrough") +
           Reg("Switch", At(0x20), 1, "WriteThrough") +
           Reg("SwitchTwin", At(0x20), 1, "WriteThrough", kBySwitch) +
           Reg("Dependent", At(0x24), 4, "WriteThrough", kBySwitch) +
           Reg("Sharing", At(0x26), 2, "WriteThrough") + Reg("Index", At(0x30), 1, "WriteThrough") +
           Reg("Length", At(0x31), 1, "WriteThrough") +
           Reg("Array", At(0x40) + "<pIndex>Index</pIndex>", 4, "WriteThrough") +
           Reg("ByKnife", Element("pAddress", "Place"), 2, "WriteThrough") +
           Reg("InArray", At(0x48), 4, "WriteThrough") +
           Reg("Text", At(0x60), 0, "WriteThrough", "", "StringReg") +
           Reg("Real", At(0x68), 8, "WriteThrough", kBySwitch, "FloatReg") +
           Reg("InReal", At(0x6C), 4, "WriteThrough") +
           Reg("Polled", At(0x80), 4, "WriteThrough", Element("PollingTime", "10")) +
           Reg("ByPolled", At(0x84), 4, "WriteThrough", Element("pInvalidator", "Polled")) +
           Reg("CommandReg", At(0x88), 1, "WriteThrough") +
           Reg("ErrorReg", At(0x89), 1, "NoCache") + Reg("Shift", At(0x8A), 1, "NoCache") +
           Reg("Checked", At(0x8C), 4, "WriteThrough", "", "IntReg", Element("pError", "Error"));
}

std::string Values() {
    return IntegerXml("Node", "", Element("pValue", "A") + Element("pMax", "Dependent")) +
           IntegerXml("Above", Element("pIsLocked", "Flag"), Element("pValue", "Node")) +
           IntegerXml("Both", "", Element("pValue", "Array") + Element("pValueCopy", "InReal")) +
           IntegerXml("Chosen", "",
                      "<pIndex>Index</pIndex><pValueIndexed Index=\"0\">A</pValueIndexed>"
                      "<pValueIndexed Index=\"1\">Low</pValueIndexed>"
                      "<pValueDefault>Dependent</pValueDefault>") +
           IntegerXml("Told", Element("pInvalidator", "Switch"), Element("pValue", "Sharing")) +
           IntegerXml("Conditional", Element("pIsAvailable", "Flag") + Element("pError", "Error"),
                      Element("pValue", "Second")) +
           "<Boolean Name=\"Flag\"><pValue>Bit</pValue></Boolean>"
           "<Enumeration Name=\"Choice\"><EnumEntry Name=\"Zero\"><Value>0</Value></EnumEntry>"
           "<EnumEntry Name=\"One\"><pIsAvailable>Flag</pIsAvailable><Value>1</Value></EnumEntry>"
           "<EnumEntry Name=\"Two\"><Value>2</Value></EnumEntry><pValue>Index</pValue>"
           "</Enumeration>"
           "<Enumeration Name=\"Error\"><EnumEntry Name=\"Fine\"><Value>0</Value></EnumEntry>"
           "<EnumEntry Name=\"Refused\"><Value>1</Value></EnumEntry><pValue>ErrorCode</pValue>"
           "</Enumeration>" +
           Knife("Place", "64+2*I", {{"I", "Index"}}) +
           Knife("Sum", "(A+L*D)%1000", {{"A", "A"}, {"L", "Low"}, {"D", "Dependent"}}) +
           Knife("Limit", "M.Max+X.Max", {{"M.Max", "Node"}, {"X.Max", "Above"}}) +
           Knife("ErrorCode", "E%2", {{"E", "ErrorReg"}}) +
           Knife("OfKnives", "P+S", {{"P", "Place"}, {"S", "Sum"}}) +
           Knife("Mode", "M.AccessMode", {{"M.AccessMode", "Above"}}) +
           "<IntConverter Name=\"Converted\"><pVariable Name=\"S\">Shift</pVariable>"
           "<FormulaTo>FROM-S</FormulaTo><FormulaFrom>TO+S</FormulaFrom><pValue>InArray</pValue>"
           "</IntConverter>"
           "<Command Name=\"Run\"><pValue>CommandReg</pValue><CommandValue>1</CommandValue>"
           "</Command><String Name=\"Label\"><pValue>Text</pValue></String>"
           "<Float Name=\"Shown\"><pValue>Real</pValue></Float>";
}

class Anything {
public:
    explicit Anything(uint64_t seed)
        : m_Random(seed),
          m_Cached(Registers() + Values()),
          m_Uncached(WithoutCaching(Registers() + Values())),
          m_Comparison(m_Cached.Map(), m_Uncached.Map()) {
        m_Uncached->Connect(&Port());
        ChangeMemory(0, kMemory);
    }

    void Run(int steps) {
        for (int i = 0; i < steps; ++i) {
            const std::string what = Step();
            m_Comparison.CompareAll(what + ", step " + std::to_string(i));
            if (testing::Test::HasFailure()) {
                return;
            }
            ForgetSome();
        }
    }
    const MapComparison& Comparison() const { return m_Comparison; }
    size_t NumWritten() const { return m_NumWritten; }
    size_t NumRefused() const { return m_NumRefused; }

private:
    TestPort& Port() { return m_Cached.Port(); }
    int Below(int end) { return static_cast<int>(m_Random() % static_cast<uint64_t>(end)); }
    INode& Any() {
        return *m_Comparison
                    .All()[static_cast<size_t>(Below(static_cast<int>(m_Comparison.All().size())))];
    }

    /// What lies behind nodes that tell a mode or a number of entries stays small.
    void ChangeMemory(int address, int length) {
        std::vector<uint8_t> bytes(static_cast<size_t>(length));
        for (int i = 0; i < length; ++i) {
            const int place = address + i;
            const bool isSmall = (place >= 0x30 && place < 0x34) || place == 0x89;
            bytes[static_cast<size_t>(i)] = static_cast<uint8_t>(Below(isSmall ? 3 : 256));
        }
        Port().PutBytes(address, bytes);
    }

    /// An operation of a client, refused or not.
    template <class Action>
    bool Try(const Action& action) {
        try {
            action();
            ++m_NumWritten;
            return true;
        } catch (const GenericException&) {
            ++m_NumRefused;
            return false;
        }
    }

    std::string Step() {
        switch (Below(10)) {
            case 0:
                return ChangeAll();
            case 1:
                return WriteRaw();
            case 2:
                return WriteBytes();
            case 3:
                return ChangeBySwitch();
            case 4:
                return ReadPastTheCache();
            case 5:
                Port().FailAccess(static_cast<size_t>(1 + Below(3)));
                break;
            default:
                break;
        }
        const std::string what = WriteValue();
        Port().FailAccess(0);
        return what;
    }

    std::string WriteValue() {
        INode& node = Any();
        const std::string name = node.GetName().c_str();
        if (auto* const command = dynamic_cast<ICommand*>(&node)) {
            if (Try([&] { command->Execute(); })) {
                Port().FailAccess(0);
                Port().PutBytes(0x88, {static_cast<uint8_t>(Below(2))});
                Try([&] { command->IsDone(); });
            }
            return "a command";
        }
        static const char* const kTexts[] = {"0",   "1",    "2",    "200", "0x01020304050607",
                                             "One", "Zero", "true", "0.5", "false"};
        const char* const text = kTexts[Below(static_cast<int>(std::size(kTexts)))];
        auto* const integer = dynamic_cast<IInteger*>(&node);
        if (integer != nullptr && Below(2) == 0) {
            const int value = Below(256);
            Try([&] { integer->SetValue(value); });
            return name + " = " + std::to_string(value);
        }
        if (auto* const value = dynamic_cast<IValue*>(&node)) {
            Try([&] { value->FromString(text); });
        }
        return name + " = '" + text + "'";
    }

    std::string WriteBytes() {
        static const char* const kNames[] = {"A",   "B",    "C",    "Half",
                                             "Low", "Text", "Real", "Switch"};
        auto& reg = m_Cached.Get<IRegister>(kNames[Below(static_cast<int>(std::size(kNames)))]);
        const uint8_t bytes[8] = {static_cast<uint8_t>(Below(256)), 1, 2};
        const int64_t length = 1 + Below(static_cast<int>(std::max<int64_t>(reg.GetLength(), 1)));
        Try([&] { reg.Set(bytes, std::min<int64_t>(length, 8)); });
        return "bytes";
    }

    std::string WriteRaw() {
        const uint8_t bytes[] = {static_cast<uint8_t>(Below(3)), 0, 1, 2};
        const int address = Below(kMemory - 4);
        if (Below(2) == 0) {
            m_Cached.Get<IPort>("Device").Write(bytes, address, 1 + Below(4));
            return "a raw write";
        }
        CPortWriteList list;
        list.Write(bytes, address, 1 + Below(4));
        list.Write(bytes, Below(kMemory - 4), 1 + Below(4));
        m_Cached.Get<IPortReplay>("Device").Replay(&list, Below(2) == 0);
        return "a replay";
    }

    std::string ChangeAll() {
        ChangeMemory(0, kMemory);
        switch (Below(3)) {
            case 0:
                m_Cached->InvalidateNodes();
                return "InvalidateNodes";
            case 1:
                m_Cached->Connect(&Port());
                return "Connect";
            default:
                m_Cached.Get("Device").InvalidateNode();
                return "a new port";
        }
    }

    std::string ChangeBySwitch() {
        if (Below(2) == 0) {
            ChangeMemory(0x80, 8);
            m_Cached->Poll(10);
            return "Poll";
        }
        ChangeMemory(0x10, 4);
        ChangeMemory(0x24, 4);
        ChangeMemory(0x68, 8);
        switch (Below(3)) {
            case 0:
                m_Cached.Get("Switch").InvalidateNode();
                return "the invalidated switch";
            case 1:
                m_Cached.Get<IValue>("Switch").FromString("1");
                return "the written switch";
            default:
                m_Cached.Get<IInteger>("Switch").SetValue(Below(256));
                return "the switch";
        }
    }

    std::string ReadPastTheCache() {
        INode& node = Any();
        auto* const value = dynamic_cast<IValue*>(&node);
        if (value != nullptr) {
            const bool verifies = Below(2) == 0;
            Try([&] { value->ToString(verifies, !verifies); });
        }
        return "a read of " + std::string(node.GetName().c_str());
    }

    /// So that not all is known before each step.
    void ForgetSome() {
        for (int i = Below(4); i > 0; --i) {
            Any().InvalidateNode();
        }
    }

    std::mt19937_64 m_Random;
    XmlNodeMap m_Cached;
    XmlNodeMap m_Uncached;
    MapComparison m_Comparison;
    size_t m_NumWritten = 0;
    size_t m_NumRefused = 0;
};

class RandomSteps : public testing::TestWithParam<uint64_t> {};

}  // namespace

TEST_P(RandomSteps, LeaveNothingOldInTheCaches) {
    Anything test(GetParam());
    test.Run(400);
    std::printf("seed %d: %zu values compared, %zu stale, %zu calls succeeded, %zu refused\n",
                static_cast<int>(GetParam()), test.Comparison().NumCompared(),
                test.Comparison().NumStale(), test.NumWritten(), test.NumRefused());
    EXPECT_EQ(test.Comparison().NumStale(), 0U);
    EXPECT_GT(test.NumWritten(), 100U);
    EXPECT_GT(test.NumRefused(), 10U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSteps, testing::Range<uint64_t>(1, 11));

}  // namespace EngineTest
