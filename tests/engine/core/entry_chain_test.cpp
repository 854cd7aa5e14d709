// The call that a client made is known, all the way down to the port, by the
// node and the operation that it was made with.

#include <functional>
#include <set>

#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "NodeGraph.h"

namespace EngineTest {

namespace {

/// Notes the entry point of the map at each access.
class EntryPort : public TestPort {
public:
    explicit EntryPort(INodeMapPrivate& map) : m_Map(map) {}

    void Read(void* buffer, int64_t address, int64_t length) override {
        entries.insert(m_Map.GetEntryPoint().c_str());
        TestPort::Read(buffer, address, length);
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        entries.insert(m_Map.GetEntryPoint().c_str());
        TestPort::Write(buffer, address, length);
    }

    std::set<std::string> entries;

private:
    INodeMapPrivate& m_Map;
};

std::string ChainDescription() {
    const std::string available = Element("pIsAvailable", "Switch");
    const std::string limits = "<pMin>Min</pMin><pMax>Max</pMax>";
    return RegXml{.name = "Switch", .address = 0, .caching = "NoCache"}() +
           RegXml{.name = "Min", .address = 4, .caching = "NoCache"}() +
           RegXml{.name = "Max", .address = 8, .caching = "NoCache"}() +
           RegXml{.name = "Inc", .address = 0, .caching = "NoCache"}() +
           RegXml{.name = "Reg", .address = 12, .caching = "NoCache"}() +
           IntegerXml("Inner", available, "<pValue>Reg</pValue>" + limits + "<pInc>Inc</pInc>") +
           IntegerXml("Integer", "", "<pValue>Inner</pValue>") +
           "<Float Name=\"Float\"><pValue>Inner</pValue></Float>"
           "<Command Name=\"Command\">" +
           available +
           "<pValue>Inner</pValue><CommandValue>1</CommandValue></Command>"
           "<Enumeration Name=\"Choice\"><EnumEntry Name=\"A\"><Value>1</Value></EnumEntry>"
           "<pValue>Inner</pValue></Enumeration>"
           "<StringReg Name=\"Text\"><Address>32</Address><Length>8</Length>"
           "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable>"
           "</StringReg><String Name=\"String\"><pValue>Text</pValue></String>";
}

struct EntryCase {
    const char* name;  ///< what the call is known by, without the brackets
    const char* node;
    std::function<void(INode&)> call;
};

void PrintTo(const EntryCase& test, std::ostream* out) {
    *out << test.name;
}

template <class Interface, class Call>
EntryCase Entry(const char* name, const char* node, const Call& call) {
    return {name, node, [call](INode& target) { call(dynamic_cast<Interface&>(target)); }};
}

const EntryCase kEntries[] = {
    Entry<INode>("Integer.GetAccessMode", "Integer", [](INode& n) { n.GetAccessMode(); }),
    Entry<IValue>("Integer.ToString", "Integer", [](IValue& n) { n.ToString(true); }),
    Entry<IValue>("Integer.FromString", "Integer", [](IValue& n) { n.FromString("1"); }),
    Entry<IInteger>("Integer.GetValue", "Integer", [](IInteger& n) { n.GetValue(true); }),
    Entry<IInteger>("Integer.SetValue", "Integer", [](IInteger& n) { n.SetValue(1); }),
    Entry<IInteger>("Integer.GetMin", "Integer", [](IInteger& n) { n.GetMin(); }),
    Entry<IInteger>("Integer.GetMax", "Integer", [](IInteger& n) { n.GetMax(); }),
    Entry<IInteger>("Integer.GetInc", "Integer", [](IInteger& n) { n.GetInc(); }),
    Entry<IFloat>("Float.GetValue", "Float", [](IFloat& n) { n.GetValue(true); }),
    Entry<IFloat>("Float.SetValue", "Float", [](IFloat& n) { n.SetValue(1); }),
    Entry<IFloat>("Float.GetMin", "Float", [](IFloat& n) { n.GetMin(); }),
    Entry<IFloat>("Float.GetInc", "Float", [](IFloat& n) { n.GetInc(); }),
    Entry<ICommand>("Command.Execute", "Command", [](ICommand& n) { n.Execute(); }),
    Entry<ICommand>("Command.IsDone", "Command", [](ICommand& n) { n.IsDone(); }),
    Entry<IValue>("Command.ToString", "Command", [](IValue& n) { n.ToString(); }),
    Entry<IEnumeration>("Choice.SetIntValue", "Choice", [](IEnumeration& n) { n.SetIntValue(1); }),
    Entry<IEnumeration>("Choice.GetIntValue", "Choice", [](IEnumeration& n) { n.GetIntValue(); }),
    Entry<IEnumeration>("Choice.FromString", "Choice", [](IEnumeration& n) { n = "A"; }),
    Entry<IString>("String.SetValue", "String", [](IString& n) { n.SetValue("a"); }),
    Entry<IString>("String.GetValue", "String", [](IString& n) { n.GetValue(); }),
    Entry<IRegister>("Reg.Set", "Reg",
                     [](IRegister& n) {
                         const uint8_t bytes[4] = {};
                         n.Set(bytes, sizeof(bytes));
                     }),
    Entry<IRegister>("Reg.Get", "Reg",
                     [](IRegister& n) {
                         uint8_t bytes[4];
                         n.Get(bytes, sizeof(bytes));
                     }),
};

class EntryChain : public testing::TestWithParam<EntryCase> {};

TEST_P(EntryChain, IsKnownByTheOutermostCall) {
    XmlNodeMap nodes(ChainDescription());
    EntryPort port(dynamic_cast<INodeMapPrivate&>(nodes.Map()));
    nodes->Connect(&port);
    port.Put(0, 1);
    port.Put(8, 10);
    port.Put(12, 1);
    GetParam().call(nodes.Get(GetParam().node));
    EXPECT_THAT(port.entries, testing::ElementsAre(std::string(GetParam().name) + "()"));
    EXPECT_EQ(dynamic_cast<INodeMapPrivate&>(nodes.Map()).GetEntryPoint(), "");
}

INSTANTIATE_TEST_SUITE_P(Of, EntryChain, testing::ValuesIn(kEntries));

}  // namespace

}  // namespace EngineTest
