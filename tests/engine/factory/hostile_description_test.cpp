// Descriptions with a fault in one node: they load, the fault is raised when that
// node is used, all others can be used, and nothing ends the process, whichever
// way the description comes.

#include <optional>

#include "BagSupport.h"
#include "CacheSupport.h"
#include "support/EveryUse.h"

namespace EngineTest {

namespace {

/// A node at fault and what it raises.
struct Fault {
    const char* name;
    std::string body;
    /// Injected over the body where it isn't empty.
    std::string injected = {};
    /// Empty where the fault shows in what the node does, and not in its mode.
    const char* node = "";
    std::string text = {};

    friend void PrintTo(const Fault& fault, std::ostream* stream) { *stream << fault.name; }
};

std::string Bits(const std::string& lsb, const std::string& msb) {
    return NodeXml("MaskedIntReg", "Bad",
                   "<Address>0</Address><Length>8</Length><AccessMode>RW</AccessMode>"
                   "<pPort>Device</pPort>" +
                       Element("LSB", lsb) + Element("MSB", msb) +
                       "<Endianess>LittleEndian</Endianess>");
}

std::string Lock(const std::string& length) {
    return NodeXml("AdvFeatureLock", "Bad",
                   kStreamable + "<Address>0</Address>" + length +
                       "<AccessMode>RW</AccessMode><pPort>Device</pPort>");
}

std::string FloatRegOf(const std::string& length) {
    return NodeXml("FloatReg", "Bad",
                   kStreamable + "<Address>0</Address>" + length +
                       "<AccessMode>RW</AccessMode><pPort>Device</pPort>") +
           IntegerXml("Three", "", "<Value>3</Value>") + IntegerXml("Nine", "", "<Value>9</Value>");
}

const std::string kRoot = "_RegisterDescription";

/// A link of a node to the root element, by the link's name.
std::string LinkText(const std::string& link) {
    return "Node 'Bad' : the link '" + link + "' leads to no node";
}

const std::string kConverter =
    "<Converter Name=\"Bad\"><Streamable>Yes</Streamable><FormulaTo>FROM</FormulaTo>"
    "<FormulaFrom>TO</FormulaFrom><pValue>Good</pValue></Converter>";

std::vector<Fault> Faults() {
    std::vector<Fault> faults = {
        {"AFormulaThatIsNone", NodeXml("IntSwissKnife", "Bad", "<Formula>1 +* ((</Formula>"), "",
         "Bad",
         "Bad : Failed to parse formula '1 +* ((' : error message is '#Brackets do not match!'"},
        {"AFormulaOfAConverter",
         "<Converter Name=\"Bad\"><FormulaTo>FROM*(2</FormulaTo><FormulaFrom>TO</FormulaFrom>"
         "<pValue>Good</pValue></Converter>",
         "", "Bad",
         "Bad_ConvertTo : Failed to parse formula 'FROM*(2' : error message is "
         "'#Brackets do not match!'"},
        {"AFormulaOfAnAddress",
         NodeXml("IntReg", "Bad",
                 "<IntSwissKnife Name=\"Where\"><Formula>(1</Formula></IntSwissKnife>"
                 "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>")},
        {"ALowBitBeyondTheNumber", Bits("64", "3"), "", "Bad", "m_LSB < 64"},
        {"AHighBitBeyondTheNumber", Bits("0", "4294967295"), "", "Bad", "m_MSB < 64"},
        {"ALockOfAnotherLength", Lock("<Length>4</Length>")},
        {"ALockOfALengthThatAnotherNodeTells", Lock("<pLength>Good</pLength>")},
        {"AFloatOfThreeBytes", FloatRegOf("<pLength>Three</pLength>")},
        {"AFloatOfNineBytes", FloatRegOf("<pLength>Nine</pLength>")},
        {"ASelectorOfItself", IntegerXml("Bad", kStreamable, "<Value>0</Value>" + Selects({"Bad"})),
         "", "Bad", "ERROR : pSelected cycle detected : Bad -> Bad"},
        {"ASelectorThatReadsWhatItSelects",
         IntegerXml("Bad", "", "<Value>0</Value><pMin>Good</pMin>" + Selects({"Good"})), "", "Bad",
         "ERROR : pSelected cycle detected : Bad -> Bad"},
        {"AChunkIdentifierOfThreeDigits", NodeXml("Port", "Bad", "<ChunkID>123</ChunkID>")},
        {"AChunkIdentifierThatADeviceTells",
         NodeXml("Port", "Bad", "<pChunkID>Text</pChunkID>") +
             NodeXml("StringReg", "Text",
                     "<Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>"
                     "<pPort>Device</pPort>")},
        {"AnEventIdentifierOfThreeDigits", NodeXml("Node", "Bad", "<EventID>123</EventID>")},
        {"AnErrorWithoutAnEntry",
         IntegerXml("Bad", "<pError>Errors</pError>") +
             NodeXml("Enumeration", "Errors",
                     "<EnumEntry Name=\"None\"><Value>0</Value></EnumEntry><Value>7</Value>")},
        {"AnInjectedKnifeOfAnotherType", kConverter,
         "<Integer Name=\"Bad_ConvertTo\" MergePriority=\"1\"><Value>1</Value></Integer>", "Bad",
         "The 'pSwissKnifeTo' of a converter is no formula of its kind."},
        {"AnInjectedKnifeOfIntegers", kConverter,
         "<IntSwissKnife Name=\"Bad_ConvertFrom\" MergePriority=\"1\"><Formula>1</Formula>"
         "</IntSwissKnife>",
         "Bad", "The 'pSwissKnifeFrom' of a converter is no formula of its kind."},
        {"ACategoryThatIsTheAliasOfAnEmptyOne",
         "<Category Name=\"Inner\"><pFeature>Good</pFeature></Category>"
         "<Category Name=\"Empty\"><pAlias>Inner</pAlias></Category>"},
    };
    for (const char* const link : {"pIsImplemented", "pIsAvailable", "pIsLocked", "pBlockPolling",
                                   "pError", "pAlias", "pCastAlias"}) {
        faults.push_back(
            {link, IntegerXml("Bad", Element(link, kRoot)), "", "Bad", LinkText(link)});
    }
    for (const char* const link : {"pMin", "pMax", "pInc", "pSelected"}) {
        faults.push_back({link, IntegerXml("Bad", "", "<Value>1</Value>" + Element(link, kRoot)),
                          "", "Bad", LinkText(link)});
    }
    const auto add = [&](const char* name, const std::string& body, const char* link) {
        faults.push_back({name, body, "", "Bad", LinkText(link)});
    };
    const auto reg = [](const std::string& address, const std::string& length,
                        const std::string& port) {
        return NodeXml("IntReg", "Bad",
                       address + length + "<AccessMode>RW</AccessMode>" + Element("pPort", port));
    };
    const std::string zero = "<Address>0</Address>";
    const std::string four = "<Length>4</Length>";
    add("pPort", reg(zero, four, kRoot), "pPort");
    add("pAddress", reg(Element("pAddress", kRoot), four, "Device"), "pAddress");
    add("pLength", reg(zero, Element("pLength", kRoot), "Device"), "pLength");
    add("pIndex", reg(Element("pIndex", kRoot), four, "Device"), "pIndex");
    add("pOffset", reg("<pIndex pOffset=\"" + kRoot + "\">Good</pIndex>", four, "Device"),
        "pOffset");
    add("pInvalidator",
        NodeXml("Integer", "Bad", Element("pInvalidator", kRoot) + "<Value>1</Value>"),
        "pInvalidator");
    add("pValue", IntegerXml("Bad", "", Element("pValue", kRoot)), "pValue");
    add("pValueOfABoolean", NodeXml("Boolean", "Bad", Element("pValue", kRoot)), "pValue");
    add("pValueOfAText", NodeXml("String", "Bad", Element("pValue", kRoot)), "pValue");
    add("pValueOfAnEnumeration",
        NodeXml("Enumeration", "Bad",
                "<EnumEntry Name=\"A\"><Value>0</Value></EnumEntry>" + Element("pValue", kRoot)),
        "pValue");
    add("pValueOfACommand",
        NodeXml("Command", "Bad", Element("pValue", kRoot) + "<CommandValue>1</CommandValue>"),
        "pValue");
    add("pCommandValue",
        NodeXml("Command", "Bad", "<pValue>Good</pValue>" + Element("pCommandValue", kRoot)),
        "pCommandValue");
    add("pValueOfAConverter",
        "<Converter Name=\"Bad\"><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>" +
            Element("pValue", kRoot) + "</Converter>",
        "pValue");
    add("pValueCopy", IntegerXml("Bad", "", "<pValue>Good</pValue>" + Element("pValueCopy", kRoot)),
        "pValueCopy");
    add("pValueIndexed",
        IntegerXml("Bad", "",
                   "<pIndex>Good</pIndex><pValueIndexed Index=\"1\">" + kRoot +
                       "</pValueIndexed><ValueDefault>0</ValueDefault>"),
        "pValueIndexed");
    add("pVariable",
        NodeXml("SwissKnife", "Bad",
                "<pVariable Name=\"X\">" + kRoot + "</pVariable><Formula>X</Formula>"),
        "pVariable");
    add("pFeature", NodeXml("Category", "Bad", Element("pFeature", kRoot)), "pFeature");
    add("p1212Parser", NodeXml("IntKey", "Bad", Element("p1212Parser", kRoot) + "<Key>1</Key>"),
        "p1212Parser");
    faults.push_back({"pChunkID", NodeXml("Port", "Bad", Element("pChunkID", kRoot))});
    return faults;
}

/// A feature that can be used, beside one that can't.
std::string Body(const std::string& body) {
    const bool hasBad = !body.starts_with("<Category") && !body.starts_with("<Port");
    return body + RegXml{.name = "Good", .address = 8, .common = kStreamable}() +
           NodeXml("Category", "Root",
                   std::string("<pFeature>Good</pFeature>") +
                       (hasBad ? "<pFeature>Bad</pFeature>" : ""));
}

/// A description whose port gives way to that of another one.
CNodeMapFactory Yielding(const std::string& body) {
    return CNodeMapFactory(Description(body + "<Port Name=\"Device\" MergePriority=\"-1\"/>"));
}

class HostileDescription : public testing::TestWithParam<Fault> {
protected:
    /// The live nodes, over memory of zeros.
    void Load(CNodeMapFactory factory) {
        if (!GetParam().injected.empty()) {
            factory.AddInjectionData(Yielding(GetParam().injected));
        }
        m_Map.emplace(factory.CreateNodeMap());
        (*m_Map)->Connect(&m_Port);
        m_Port.Put<int32_t>(8, 1);
    }

    /// What the node at fault raises is raised by every use of it.
    void CheckFault() {
        INode* const node = (*m_Map)->GetNode(GetParam().node);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->GetAccessMode(), NA);
        auto& value = dynamic_cast<IValue&>(*node);
        EXPECT_EQ(DescriptionOf<GenericException>([&] { value.ToString(); }), GetParam().text);
        EXPECT_EQ(DescriptionOf<GenericException>([&] { value.FromString("1"); }), GetParam().text);
        EXPECT_EQ(DescriptionOf<GenericException>([&] { value.ToString(true, true); }),
                  GetParam().text);
    }

    /// The other nodes are saved and loaded again.
    void CheckSettings() {
        CFeatureBag bag;
        gcstring_vector errors;
        INodeMap& map = *(*m_Map).operator->();
        EXPECT_GT(bag.StoreToBag(&map), 0);
        EXPECT_TRUE(bag.GetNames().contains("Good"));
        EXPECT_TRUE(bag.LoadFromBag(&map, true, &errors));
    }

    void Check() {
        EXPECT_EQ(m_Map->ValueOf("Good"), 1);
        if (*GetParam().node != '\0') {
            CheckFault();
        }
        CheckSettings();
        UseEverything(*(*m_Map).operator->());
    }

    gcstring Text() { return Description(Body(GetParam().body)); }

    TestPort m_Port;
    std::optional<MapOwner> m_Map;
};

}  // namespace

TEST_P(HostileDescription, LoadsAndRaisesItsFaultWhereItIsUsed) {
    Load(CNodeMapFactory(Text()));
    Check();
}

TEST_P(HostileDescription, DoesTheSameFromTheDiskCache) {
    const CacheFolder folder;
    Load(CNodeMapFactory(Text(), CacheUsage_ForceWrite));
    Load(CNodeMapFactory(Text(), CacheUsage_ForceRead));
    Check();
}

TEST_P(HostileDescription, DoesTheSameWhenItIsInjected) {
    CNodeMapFactory whole(Description("<Node Name=\"Main\"/>"));
    whole.AddInjectionData(Yielding(Body(GetParam().body)));
    Load(whole);
    Check();
}

TEST_P(HostileDescription, DoesTheSameAfterItsNodesWereDescribed) {
    Load(CNodeMapFactory(Text()));
    CNodeMapFactory again = CNodeMapFactory::CreateNodeDataFromNodeMap((*m_Map).operator->());
    const MapOwner map(again.CreateNodeMap());
    map->Connect(&m_Port);
    EXPECT_EQ(map.ValueOf("Good"), 1);
    UseEverything(*map.operator->());
}

INSTANTIATE_TEST_SUITE_P(With, HostileDescription, testing::ValuesIn(Faults()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace EngineTest
