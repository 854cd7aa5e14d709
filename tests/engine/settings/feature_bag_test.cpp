// Features of a device in a bag, and back.

#include <algorithm>
#include <new>
#include <stdexcept>

#include "BagSupport.h"
#include "GenApi/FeatureBag.h"

namespace EngineTest {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr int kPlainOffset = 0x20;

const std::string kRegisters =
    RegXml{.name = "Offset", .address = kPlainOffset, .common = kStreamable}() +
    RegXml{.name = "Status", .address = 0x24, .access = "RO", .common = kStreamable}() +
    RegXml{.name = "Volatile", .address = 0x28}() +
    RegXml{.name = "Hidden", .address = 0x2c, .common = kStreamable}();

/// A device with one plain streamable feature, "Offset", beside others that
/// aren't streamed.
class PlainDevice : public testing::Test {
protected:
    PlainDevice() { m_Device.Port().Put<int32_t>(kPlainOffset, 7); }

    Device m_Device{RootXml({"Offset", "Status", "Volatile"}) + kRegisters};
    CFeatureBag m_Bag;
    gcstring_vector m_Errors;
};

/// "Gain" for two channels and three banks; bank 1 is selected.
class SelectedDevice : public testing::Test {
protected:
    SelectedDevice() {
        m_Device.Port().Put<int32_t>(kBank, 1);
        for (int i = 0; i < 6; ++i) {
            m_Device.Port().Put<int32_t>(AddressOf(i), 100 + i);
        }
    }

    /// The i-th combination, where the bank runs fastest.
    static int64_t AddressOf(int i) { return kGain + 4 * (i % 3) + 16 * (i / 3); }
    bool IsAsFound() {
        return m_Device.Port().Peek<int32_t>(kBank) == 1 &&
               m_Device.Port().Peek<int32_t>(kChannel) == 0;
    }

    Device m_Device{RootXml({"Gain"}) + SelectedXml("Gain", kGain, {{"Bank", 4}, {"Channel", 16}}) +
                    IntSelectorXml("Bank", kBank, "<Min>0</Min><Max>2</Max>", {"Gain"}) +
                    EnumSelectorXml("Channel", kChannel, {{"Red"}, {"Blue"}}, {"Gain"})};
    CFeatureBag m_Bag;
};

const std::vector<std::string> kSelectedEntries = {
    "Bank=0",       "Channel=Red",  "Gain=100",    "Bank=1",       "Channel=Red",
    "Gain=101",     "Bank=2",       "Channel=Red", "Gain=102",     "Bank=0",
    "Channel=Blue", "Gain=103",     "Bank=1",      "Channel=Blue", "Gain=104",
    "Bank=2",       "Channel=Blue", "Gain=105",    "Bank=1",       "Channel=Red"};

/// Commands that a device is told of a persistence step by, and what of them
/// and of the offset arrives.
class CommandedDevice : public testing::Test {
protected:
    static constexpr int kFirstCommand = 0x40;

    CommandedDevice() {
        m_Device.Port().onWrite = [this](int64_t address) { NoteWrite(address); };
        m_Device.Port().onRead = [this](int64_t address) { NoteRead(address); };
    }

    static std::string Describe() {
        std::string body = RootXml({"Offset"}) + kRegisters;
        int address = kFirstCommand;
        for (const char* const name : kCommands) {
            body += CommandXml(name, address, "RW");
            address += 4;
        }
        return body;
    }

    static constexpr const char* kCommands[] = {
        "DeviceFeaturePersistenceStart", "DeviceFeaturePersistenceEnd",
        "DeviceRegistersStreamingStart", "DeviceRegistersStreamingEnd"};
    std::vector<std::string> m_Calls;
    Device m_Device{Describe()};
    CFeatureBag m_Bag;

private:
    static const char* CommandAt(int64_t address) {
        const int64_t index = (address - kFirstCommand) / 4;
        return index >= 0 && index < 4 ? kCommands[index] : nullptr;
    }
    void NoteWrite(int64_t address) {
        const char* const command = CommandAt(address);
        m_Calls.emplace_back(command != nullptr ? command : "write");
    }
    /// A command is done when it is asked about for the second time.
    void NoteRead(int64_t address) {
        if (CommandAt(address) == nullptr) {
            m_Calls.emplace_back("read");
            return;
        }
        m_Calls.emplace_back("busy");
        m_Device.Port().Put<int32_t>(address, 0);
    }
};

}  // namespace

TEST_F(PlainDevice, YieldsOneEntryForAFeatureWithoutSelectors) {
    EXPECT_EQ(m_Bag.StoreToBag(m_Device.Map()), 1);
    EXPECT_THAT(EntriesOf(m_Bag), ElementsAre("Offset=7"));
}

TEST(BagOfADevice, PassesByFeaturesAtFault) {
    const EngineLog log;
    Device device(
        RootXml({"Offset", "Formula", "Length", "Over"}) +
        RegXml{.name = "Offset", .address = kPlainOffset, .common = kStreamable}() +
        NodeXml("IntSwissKnife", "Formula", kStreamable + "<Formula>(1</Formula>") +
        NodeXml("FloatReg", "Length",
                kStreamable +
                    "<Address>0</Address><pLength>Three</pLength><AccessMode>RW</AccessMode>"
                    "<pPort>Device</pPort>") +
        NodeXml("Float", "Over", kStreamable + "<pValue>Length</pValue>") +
        IntegerXml("Three", "", "<Value>3</Value>"));
    CFeatureBag bag;
    EXPECT_EQ(bag.StoreToBag(device.Map()), 1);
    EXPECT_THAT(EntriesOf(bag), ElementsAre("Offset=0"));
    const auto warnings = [&](const std::string& name) {
        std::vector<std::string> texts;
        for (const EngineLog::Line& line : log.Lines("GenApi.Device.Misc." + name)) {
            if (line.level == LogWarning) {
                texts.push_back(line.text);
            }
        }
        return texts;
    };
    EXPECT_THAT(warnings("Formula"),
                ElementsAre("Node 'Formula' is passed by : Formula : Failed to parse formula '(1' "
                            ": error message is '#Brackets do not match!'"));
    EXPECT_THAT(warnings("Length"),
                ElementsAre("Node 'Length' is passed by : Length == kDoubleLength"));
    EXPECT_THAT(warnings("Over"),
                ElementsAre("Node 'Over' is passed by : Length == kDoubleLength"));
}

TEST_F(PlainDevice, TellsInTheBagWhatItIs) {
    m_Bag.StoreToBag(m_Device.Map());
    EXPECT_EQ(m_Bag.GetInfo(),
              "Vendor.Model::A camera = Device version = 4.5.6"
              " -- Product GUID = 11111111-2222-3333-4444-555555555555"
              " -- Product version GUID = 66666666-7777-8888-9999-AAAAAAAAAAAA");
}

TEST_F(PlainDevice, StoresNoneButTheFeaturesOfTheFilter) {
    gcstring_vector filter;
    EXPECT_EQ(m_Bag.StoreToBag(m_Device.Map(), -1, &filter), 0);
    filter.push_back("Offset");
    filter.push_back("Volatile");
    EXPECT_EQ(m_Bag.StoreToBag(m_Device.Map(), -1, &filter), 1);
    EXPECT_THAT(EntriesOf(m_Bag), ElementsAre("Offset=7"));
}

TEST_F(PlainDevice, AppendsToWhatTheBagHolds) {
    m_Bag.Append("Before", "1");
    m_Bag.StoreToBag(m_Device.Map());
    EXPECT_THAT(EntriesOf(m_Bag), ElementsAre("Before=1", "Offset=7"));
}

TEST(FeatureBag, NeedsANodeMap) {
    CFeatureBag bag;
    const char* const text = "Nodemap pointer is NULL";
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { bag.StoreToBag(nullptr); }), text);
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { bag.LoadFromBag(nullptr); }), text);
}

TEST(FeatureBag, TakesFeaturesOneByOneAsAScript) {
    Device device(kRegisters + RootXml({}) +
                  NodeXml("Category", "C", Element("pFeature", "Offset")));
    CFeatureBag bag("Mine");
    IPersistScript& script = bag;
    script.SetInfo("By hand");
    script.PersistFeature(device.Get<IValue>("Volatile"));
    EXPECT_EQ(bag.GetBagName(), "Mine");
    EXPECT_EQ(bag.GetInfo(), "By hand");
    EXPECT_THAT(EntriesOf(bag), ElementsAre("Volatile=0"));
}

TEST(FeatureBag, EndsItselfWhereItWasMadeWithNew) {
    class Watched : public CFeatureBag {
    public:
        explicit Watched(bool& hasEnded) : m_HasEnded(hasEnded) {}
        ~Watched() override { m_HasEnded = true; }

    private:
        bool& m_HasEnded;
    };
    bool hasEnded = false;
    CFeatureBag* const bag = new Watched(hasEnded);
    bag->Append("A", "1");
    EXPECT_FALSE(hasEnded);
    bag->Destroy();
    EXPECT_TRUE(hasEnded);
}

TEST(FeatureBag, EqualsAnotherWithTheSameEntries) {
    CFeatureBag a("A");
    CFeatureBag b("B");
    b.SetInfo("Other");
    EXPECT_TRUE(a == b);
    a.Append("Gain", "1");
    EXPECT_FALSE(a == b);
    b.Append("Gain", "2");
    EXPECT_TRUE(a != b);
    CFeatureBag c;
    c.Append("Gain", "1");
    EXPECT_TRUE(a == c);
    c.Append("Gain", "1");
    EXPECT_FALSE(a == c);
}

TEST_F(SelectedDevice, YieldsAllCombinationsAndTheSelectorsAsFound) {
    EXPECT_EQ(m_Bag.StoreToBag(m_Device.Map()), 20);
    EXPECT_EQ(EntriesOf(m_Bag), kSelectedEntries);
    EXPECT_TRUE(IsAsFound());
}

TEST_F(SelectedDevice, YieldsTheCurrentValueOfASelectorThatCannotBeWritten) {
    m_Device.Get("Bank").ImposeAccessMode(RO);
    m_Bag.StoreToBag(m_Device.Map());
    EXPECT_THAT(EntriesOf(m_Bag),
                ElementsAre("Channel=Red", "Gain=101", "Channel=Blue", "Gain=104", "Channel=Red"));
}

TEST_F(SelectedDevice, YieldsNothingForAFeatureThatCannotBeWritten) {
    m_Device.Get("Gain").ImposeAccessMode(RO);
    EXPECT_EQ(m_Bag.StoreToBag(m_Device.Map()), 0);
    EXPECT_TRUE(IsAsFound());
}

TEST_F(SelectedDevice, GetsAllCombinationsBack) {
    m_Bag.StoreToBag(m_Device.Map());
    for (int i = 0; i < 6; ++i) {
        m_Device.Port().Put<int32_t>(AddressOf(i), 0);
    }
    m_Device.Port().Put<int32_t>(kBank, 2);
    m_Device.Map()->InvalidateNodes();
    gcstring_vector errors;
    EXPECT_TRUE(m_Bag.LoadFromBag(m_Device.Map(), true, &errors));
    EXPECT_THAT(TextsOf(errors), IsEmpty());
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(m_Device.Port().Peek<int32_t>(AddressOf(i)), 100 + i);
    }
    EXPECT_TRUE(IsAsFound());
}

/// Each read in turn fails; in the last round there is none left to fail.
TEST_F(SelectedDevice, HasItsSelectorsBackAfterAnyFailedRead) {
    size_t failing = 0;
    for (bool hasFailed = true; hasFailed; ++failing) {
        m_Device.Map()->InvalidateNodes();
        size_t reads = 0;
        m_Device.Port().onRead = [&](int64_t) {
            if (reads++ == failing) {
                RUNTIME_EXCEPTION("Lost");
            }
        };
        CFeatureBag bag;
        hasFailed =
            DescriptionOf<RuntimeException>([&] { bag.StoreToBag(m_Device.Map()); }) == "Lost";
        EXPECT_TRUE(IsAsFound()) << "read " << failing;
        m_Bag = bag;
    }
    EXPECT_GT(failing, 6U);
    EXPECT_EQ(EntriesOf(m_Bag), kSelectedEntries);
}

class EntryLimit : public SelectedDevice, public testing::WithParamInterface<int> {};

TEST_P(EntryLimit, CutsTheBag) {
    const int limit = GetParam();
    EXPECT_EQ(m_Bag.StoreToBag(m_Device.Map(), limit), std::min(limit, 20));
    const auto count = std::min<ptrdiff_t>(limit, 20);
    EXPECT_EQ(EntriesOf(m_Bag),
              std::vector(kSelectedEntries.begin(), kSelectedEntries.begin() + count));
    EXPECT_TRUE(IsAsFound());
}

INSTANTIATE_TEST_SUITE_P(Of, EntryLimit, testing::Values(0, 1, 2, 3, 4, 18, 19, 20, 21));

TEST_F(CommandedDevice, IsToldOfTheBeginAndTheEndOfAStoreAndWaitedFor) {
    m_Bag.StoreToBag(m_Device.Map());
    EXPECT_THAT(m_Calls,
                ElementsAre(kCommands[0], "busy", "busy", "read", kCommands[1], "busy", "busy"));
}

TEST_F(CommandedDevice, IsToldOfTheEndOfAStoreThatFails) {
    auto note = m_Device.Port().onRead;
    m_Device.Port().onRead = [&](int64_t address) {
        note(address);
        if (address == kPlainOffset) {
            RUNTIME_EXCEPTION("Lost");
        }
    };
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Bag.StoreToBag(m_Device.Map()); }), "Lost");
    EXPECT_THAT(m_Calls,
                ElementsAre(kCommands[0], "busy", "busy", "read", kCommands[1], "busy", "busy"));
}

TEST_F(CommandedDevice, IsToldOfTheBeginAndTheEndOfALoad) {
    m_Bag.Append("Offset", "3");
    EXPECT_TRUE(m_Bag.LoadFromBag(m_Device.Map(), false));
    EXPECT_THAT(m_Calls,
                ElementsAre(kCommands[2], "busy", "busy", "write", kCommands[3], "busy", "busy"));
}

TEST_F(CommandedDevice, IsVerifiedAfterTheEndOfTheLoad) {
    m_Bag.Append("Offset", "3");
    EXPECT_TRUE(m_Bag.LoadFromBag(m_Device.Map(), true));
    EXPECT_THAT(m_Calls, ElementsAre(kCommands[2], "busy", "busy", "write", kCommands[3], "busy",
                                     "busy", "write", "read"));
}

TEST_F(CommandedDevice, NotesACommandThatFailsAndLoadsTheRest) {
    m_Bag.Append("Offset", "3");
    m_Device.Get("DeviceRegistersStreamingStart").ImposeAccessMode(RO);
    gcstring_vector errors;
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), false, &errors));
    EXPECT_THAT(TextsOf(errors),
                ElementsAre(StartsWith("Error while writing node 'DeviceRegistersStreamingStart': "
                                       "Node is not writable. : AccessException thrown")));
    EXPECT_THAT(m_Calls, ElementsAre("write", kCommands[3], "busy", "busy"));
}

TEST(FeatureBag, PassesOverPersistenceNodesThatAreNoCommands) {
    Device device(RootXml({}) +
                  NodeXml("Integer", "DeviceFeaturePersistenceStart", "<Value>1</Value>", true) +
                  NodeXml("Integer", "DeviceRegistersStreamingStart", "<Value>1</Value>", true) +
                  NodeXml("Category", "C", Element("pFeature", "DeviceFeaturePersistenceStart")));
    CFeatureBag bag;
    EXPECT_EQ(bag.StoreToBag(device.Map()), 0);
    EXPECT_TRUE(bag.LoadFromBag(device.Map()));
}

TEST_F(PlainDevice, TakesAnEmptyBag) {
    EXPECT_TRUE(m_Bag.LoadFromBag(m_Device.Map(), true, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors), IsEmpty());
}

TEST_F(PlainDevice, PassesOverWhatCannotBeWritten) {
    m_Bag.Append("Status", "5");
    m_Bag.Append("Root", "5");
    m_Bag.Append("Device", "5");
    EXPECT_TRUE(m_Bag.LoadFromBag(m_Device.Map(), true, &m_Errors));
    EXPECT_EQ(m_Device.Port().GetWrites(), 0U);
}

TEST_F(PlainDevice, NotesFailuresInOrderAndLoadsTheRest) {
    m_Bag.Append("Missing", "1");
    m_Bag.Append("Volatile", "blue");
    m_Bag.Append("Offset", "9");
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), false, &m_Errors));
    EXPECT_THAT(
        TextsOf(m_Errors),
        ElementsAre("Error while writing node: 'Missing' not found ",
                    StartsWith("Error while writing node 'Volatile': Node 'Volatile' : cannot "
                               "convert string 'blue' to int. : InvalidArgumentException "
                               "thrown in node 'Volatile' while calling "
                               "'Volatile.FromString()' (file '")));
    EXPECT_EQ(m_Device.Port().Peek<int32_t>(kPlainOffset), 9);
}

TEST_F(PlainDevice, SaysThatTheLoadFailedWhenNoOneTakesTheNotes) {
    m_Bag.Append("Missing", "1");
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map()));
}

TEST_F(PlainDevice, AppendsItsNotesToThoseOfOthers) {
    m_Errors.push_back("Before");
    m_Bag.Append("Missing", "1");
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), false, &m_Errors));
    EXPECT_EQ(m_Errors.size(), 2U);
    EXPECT_EQ(m_Errors[0], "Before");
}

TEST_F(PlainDevice, NotesAMissingNodeOnceWhenVerifying) {
    m_Bag.Append("Missing", "1");
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), true, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors), ElementsAre("Error while writing node: 'Missing' not found "));
}

TEST_F(PlainDevice, NotesFailuresOfTheTransportToo) {
    m_Device.Port().onWrite = [](int64_t) { throw std::runtime_error("Cable unplugged"); };
    m_Bag.Append("Offset", "9");
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), false, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors),
                ElementsAre("Error while writing node 'Offset': Cable unplugged"));
}

TEST_F(PlainDevice, NotesThatMemoryRanOut) {
    m_Bag.Append("Offset", "9");
    m_Device.Port().onWrite = [](int64_t) { throw std::bad_alloc(); };
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), false, &m_Errors));
    m_Device.Port().onWrite = [](int64_t) { ThrowBadAlloc(__FILE__, __LINE__); };
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), false, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors), ElementsAre("Out of memory", "Out of memory"));
}

TEST_F(PlainDevice, NotesAValueThatCannotBeReadBack) {
    m_Bag.Append("Offset", "9");
    m_Device.Port().onRead = [](int64_t) { RUNTIME_EXCEPTION("Lost"); };
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), true, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors),
                ElementsAre(StartsWith("Error while verifying the value of node 'Offset': Lost : "
                                       "RuntimeException thrown")));
}

TEST_F(PlainDevice, ComparesNothingThatCannotBeRead) {
    m_Bag.Append("Offset", "9");
    m_Device.Get("Offset").ImposeAccessMode(WO);
    EXPECT_TRUE(m_Bag.LoadFromBag(m_Device.Map(), true, &m_Errors));
    EXPECT_EQ(m_Device.Port().GetReads(), 0U);
    EXPECT_EQ(m_Device.Port().GetWrites(), 2U);
}

TEST(FeatureBag, ReportsAFloatThatTheDeviceRounds) {
    Device device(RootXml({"Time"}) +
                  NodeXml("FloatReg", "Time",
                          kStreamable +
                              "<Address>0</Address><Length>8</Length><AccessMode>RW</AccessMode>"
                              "<pPort>Device</pPort><Endianess>LittleEndian</Endianess>"));
    device.Port().onWrite = [&](int64_t) { device.Port().Put(0, 0.5); };
    CFeatureBag bag;
    bag.Append("Time", "0.3");
    gcstring_vector errors;
    EXPECT_TRUE(bag.LoadFromBag(device.Map(), false, &errors));
    EXPECT_FALSE(bag.LoadFromBag(device.Map(), true, &errors));
    EXPECT_THAT(TextsOf(errors),
                ElementsAre("Error while verifying node 'Time'. Expected '0.3', but found '0.5'"));
}

TEST(FeatureBag, NotesWhatOnlyTheChecksOfVerifyingRefuse) {
    Device device(RootXml({"Level"}) + RegXml{.name = "LevelReg", .address = 0}() +
                  NodeXml("Integer", "Level",
                          kStreamable + "<pValue>LevelReg</pValue><Min>0</Min><Max>5</Max>"));
    CFeatureBag bag;
    bag.Append("Level", "9");
    gcstring_vector errors;
    EXPECT_TRUE(bag.LoadFromBag(device.Map(), false, &errors));
    EXPECT_FALSE(bag.LoadFromBag(device.Map(), true, &errors));
    EXPECT_THAT(TextsOf(errors), ElementsAre(StartsWith(
                                     "Error while writing node 'Level': Value = 9 must be equal or "
                                     "smaller than Max = 5. : OutOfRangeException thrown")));
}

namespace {

/// "Offset" and the read-only "Status" whose device tells of an error by the
/// register at 0.
class FaultyDevice : public testing::Test {
protected:
    static std::string Faulty(const char* name, int address, const char* access) {
        return RegXml{.name = name,
                      .address = address,
                      .access = access,
                      .common = "<pError>Fault</pError>" + kStreamable}();
    }

    Device m_Device{RootXml({"Offset", "Status"}) + Faulty("Offset", kPlainOffset, "RW") +
                    Faulty("Status", 0x24, "RO") +
                    RegXml{.name = "FaultReg", .address = 0, .caching = "NoCache"}() +
                    NodeXml("Enumeration", "Fault",
                            NodeXml("EnumEntry", "None", "<Value>0</Value>") +
                                NodeXml("EnumEntry", "Hot",
                                        "<ToolTip>Let it cool</ToolTip><DisplayName>Too "
                                        "hot</DisplayName><Value>1</Value>") +
                                "<pValue>FaultReg</pValue>")};
    CFeatureBag m_Bag;
    gcstring_vector m_Errors;
};

}  // namespace

TEST_F(FaultyDevice, IsAskedForItsErrorsOnceForEachNode) {
    m_Device.Port().Put<int32_t>(0, 1);
    m_Bag.Append("Status", "1");
    m_Bag.Append("Status", "2");
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), true, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors),
                ElementsAre(StartsWith("Error checking node 'Status': Too hot : Let it cool : "
                                       "RuntimeException thrown in node 'Status'")));
}

TEST_F(FaultyDevice, IsNotAskedWithoutVerifying) {
    m_Device.Port().Put<int32_t>(0, 1);
    m_Bag.Append("Status", "1");
    m_Bag.Append("Offset", "1");
    EXPECT_TRUE(m_Bag.LoadFromBag(m_Device.Map(), false, &m_Errors));
}

TEST_F(FaultyDevice, HasItsErrorsNotedInTheOrderOfThePasses) {
    m_Device.Port().Put<int32_t>(0, 1);
    m_Bag.Append("Offset", "1");
    m_Bag.Append("Missing", "1");
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), true, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors),
                ElementsAre("Error while writing node: 'Missing' not found ",
                            StartsWith("Error while writing node 'Offset': Too hot : Let it cool"),
                            StartsWith("Error checking node 'Offset': Too hot : Let it cool")));
}

TEST_F(FaultyDevice, TellsOfAnErrorWhileItIsReadBack) {
    m_Bag.Append("Offset", "1");
    m_Device.Port().onRead = [&](int64_t address) {
        if (address == kPlainOffset) {
            m_Device.Port().Put<int32_t>(0, 1);
        }
    };
    EXPECT_FALSE(m_Bag.LoadFromBag(m_Device.Map(), true, &m_Errors));
    EXPECT_THAT(
        TextsOf(m_Errors),
        ElementsAre(
            StartsWith("Error while verifying the value of node 'Offset': Too hot : Let it"),
            StartsWith("Error checking node 'Offset': Too hot")));
}

}  // namespace EngineTest
