// All settings of a device with its sets, and back.

#include <algorithm>
#include <map>

#include "BagSupport.h"
#include "GenApi/FeatureBagger.h"

namespace EngineTest {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr int kVolatileOffset = 0x104;

/// Where a device keeps the nodes of one kind of sets.
struct SetAddresses {
    int selector;
    int load;
    int save;
    int featureSelector;
    int featureEnable;  ///< one register for each feature
};
constexpr SetAddresses kUser = {0x10, 0x14, 0x18, 0x1c, 0x20};
constexpr SetAddresses kSequencer = {0x50, 0x54, 0x58, 0x5c, 0x60};

std::string Enable(const std::string& name, const std::string& selector, int address) {
    return NodeXml("IntReg", name + "Reg",
                   Element("Address", std::to_string(address)) + "<pIndex Offset=\"4\">" +
                       selector +
                       "</pIndex><Length>4</Length><AccessMode>RW</AccessMode>"
                       "<pPort>Device</pPort><Sign>Signed</Sign>"
                       "<Endianess>LittleEndian</Endianess>") +
           NodeXml("Boolean", name, Element("pValue", name + "Reg"), true);
}

std::string FeatureSelector(const std::string& set, const SetAddresses& at) {
    const std::string name = set + "FeatureSelector";
    return EnumSelectorXml(name, at.featureSelector, {{"Gain"}, {"Offset"}}, {}, true) +
           Enable(set + "FeatureEnable", name, at.featureEnable);
}

/// Loading a set changes it behind all caches.
std::string Volatile(const char* name, int address) {
    return RegXml{.name = name, .address = address, .caching = "NoCache", .common = kStreamable}();
}

const std::string kFeatures =
    RootXml({"Gain", "Offset"}) + Volatile("Gain", kGain) + Volatile("Offset", kVolatileOffset);
const std::string kUserSets = EnumSelectorXml("UserSetSelector", kUser.selector,
                                              {{"Default"}, {"First"}, {"Second"}}, {}, true) +
                              CommandXml("UserSetLoad", kUser.load) +
                              CommandXml("UserSetSave", kUser.save);
const std::string kSequencerSets =
    IntSelectorXml("SequencerSetSelector", kSequencer.selector,
                   "<Min>2</Min><Max>7</Max><Inc>4</Inc>", {}, true) +
    CommandXml("SequencerSetLoad", kSequencer.load) +
    CommandXml("SequencerSetSave", kSequencer.save);
const std::string kPersistence = CommandXml("DeviceFeaturePersistenceStart", 0x80) +
                                 CommandXml("DeviceFeaturePersistenceEnd", 0x84);

/// "Gain" and "Offset" with sets that the device loads and saves. Each set holds
/// its own gain at first: 10 and its number, or 20 and its number.
class SetDevice {
public:
    explicit SetDevice(const std::string& sets) : m_Device(kFeatures + sets) {
        for (int set = 0; set < 8; ++set) {
            m_Sets[kUser.selector][set] = {10 + set, 1};
            m_Sets[kSequencer.selector][set] = {20 + set, 2};
        }
        Put(kGain, 5);
        Put(kVolatileOffset, 6);
        Put(kUser.selector, 1);
        Put(kSequencer.selector, 2);
        m_Device.Port().onWrite = [this](int64_t address) { Act(address); };
    }

    struct Settings {
        int gain;
        int offset;
        bool operator==(const Settings&) const = default;
    };

    INodeMap* Map() { return m_Device.Map(); }
    void Put(int address, int value) { m_Device.Port().Put<int32_t>(address, value); }
    int Peek(int address) { return m_Device.Port().Peek<int32_t>(address); }
    Settings Current() { return {Peek(kGain), Peek(kVolatileOffset)}; }
    Settings UserSet(int set) { return m_Sets[kUser.selector][set]; }
    Settings SequencerSet(int set) { return m_Sets[kSequencer.selector][set]; }
    Device& Nodes() { return m_Device; }
    /// The commands that arrived, with the set that was selected.
    std::vector<std::string> calls;
    /// The command at this address fails.
    int failing = 0;

private:
    void Act(int64_t address) {
        if (address == failing) {
            RUNTIME_EXCEPTION("Lost");
        }
        for (const SetAddresses& at : {kUser, kSequencer}) {
            const int set = Peek(at.selector);
            if (address == at.load) {
                calls.push_back("load " + std::to_string(set));
                const Settings& settings = m_Sets[at.selector][set];
                Put(kGain, settings.gain);
                Put(kVolatileOffset, settings.offset);
            } else if (address == at.save) {
                calls.push_back("save " + std::to_string(set));
                m_Sets[at.selector][set] = Current();
            }
        }
        if (address == 0x80 || address == 0x84) {
            calls.emplace_back(address == 0x80 ? "start" : "end");
        }
    }

    Device m_Device;
    std::map<int, std::map<int, Settings>> m_Sets;
};

/// Name and entries of each bag.
std::vector<std::string> BagsOf(const CFeatureBagger& bagger) {
    std::vector<std::string> texts;
    for (const CFeatureBag* const bag : bagger) {
        std::string text = bag->GetBagName().c_str();
        for (const std::string& entry : EntriesOf(*bag)) {
            text += " " + entry;
        }
        texts.push_back(text);
    }
    return texts;
}

class Bagger : public testing::Test {
protected:
    CFeatureBag& Add(const char* name, const char* gain) {
        CFeatureBag& bag = *m_Bagger.AddBag(name);
        bag.Append("Gain", gain);
        return bag;
    }

    CFeatureBagger m_Bagger;
    gcstring_vector m_Errors;
};

}  // namespace

TEST_F(Bagger, PutsTheCurrentSettingsIntoABagOfTheirOwn) {
    SetDevice device("");
    EXPECT_EQ(m_Bagger.Bag(device.Map()), 2);
    EXPECT_THAT(BagsOf(m_Bagger), ElementsAre("All Gain=5 Offset=6"));
}

TEST_F(Bagger, LoadsEachUserSetForItsBag) {
    SetDevice device(kUserSets);
    EXPECT_EQ(m_Bagger.Bag(device.Map(), false, true, false), 6);
    EXPECT_THAT(BagsOf(m_Bagger),
                ElementsAre("UserSet.Default Gain=10 Offset=1", "UserSet.First Gain=11 Offset=1",
                            "UserSet.Second Gain=12 Offset=1"));
    EXPECT_THAT(device.calls, ElementsAre("load 0", "load 1", "load 2"));
}

TEST_F(Bagger, LeavesTheDeviceAsFound) {
    SetDevice device(kUserSets + kSequencerSets);
    m_Bagger.Bag(device.Map());
    EXPECT_EQ(device.Current(), (SetDevice::Settings{5, 6}));
    EXPECT_EQ(device.Peek(kUser.selector), 1);
    EXPECT_EQ(device.Peek(kSequencer.selector), 2);
}

TEST_F(Bagger, LoadsEachSequencerSetForItsBag) {
    SetDevice device(kSequencerSets);
    EXPECT_EQ(m_Bagger.Bag(device.Map(), false, false, true), 4);
    EXPECT_THAT(BagsOf(m_Bagger),
                ElementsAre("SequencerSet.2 Gain=22 Offset=2", "SequencerSet.6 Gain=26 Offset=2"));
    EXPECT_THAT(device.calls, ElementsAre("load 2", "load 6"));
}

TEST_F(Bagger, TakesAllKindsInOrder) {
    SetDevice device(kUserSets + kSequencerSets + kPersistence);
    m_Bagger.Bag(device.Map());
    std::vector<std::string> names;
    for (const CFeatureBag* const bag : m_Bagger) {
        names.emplace_back(bag->GetBagName());
    }
    EXPECT_THAT(names, ElementsAre("All", "UserSet.Default", "UserSet.First", "UserSet.Second",
                                   "SequencerSet.2", "SequencerSet.6"));
    EXPECT_THAT(device.calls,
                ElementsAre("start", "load 0", "load 1", "load 2", "load 2", "load 6", "end"));
}

TEST_F(Bagger, TakesOnlyTheFeaturesThatBelongToAUserSet) {
    SetDevice device(kUserSets + FeatureSelector("UserSet", kUser));
    device.Put(kUser.featureSelector, 1);
    device.Put(kUser.featureEnable + 4, 1);
    m_Bagger.Bag(device.Map(), true, true, false);
    EXPECT_THAT(BagsOf(m_Bagger), ElementsAre("All Gain=5 Offset=6", "UserSet.Default Offset=1",
                                              "UserSet.First Offset=1", "UserSet.Second Offset=1"));
    EXPECT_EQ(device.Peek(kUser.featureSelector), 1) << "left as found";
}

TEST_F(Bagger, TakesNothingOfASetToWhichNoFeatureBelongs) {
    SetDevice device(kUserSets + FeatureSelector("UserSet", kUser));
    m_Bagger.Bag(device.Map(), false, true, false);
    EXPECT_THAT(BagsOf(m_Bagger),
                ElementsAre("UserSet.Default", "UserSet.First", "UserSet.Second"));
}

TEST_F(Bagger, TakesOnlyTheFeaturesThatBelongToASequencerSet) {
    SetDevice device(kSequencerSets + FeatureSelector("Sequencer", kSequencer));
    device.Put(kSequencer.featureEnable, 1);
    m_Bagger.Bag(device.Map(), false, false, true);
    EXPECT_THAT(BagsOf(m_Bagger), ElementsAre("SequencerSet.2 Gain=22", "SequencerSet.6 Gain=26"));
}

TEST_F(Bagger, LimitsEachBag) {
    SetDevice device(kUserSets);
    EXPECT_EQ(m_Bagger.Bag(device.Map(), true, true, true, 1), 4);
    EXPECT_THAT(BagsOf(m_Bagger), ElementsAre("All Gain=5", "UserSet.Default Gain=10",
                                              "UserSet.First Gain=11", "UserSet.Second Gain=12"));
    EXPECT_EQ(device.Current(), (SetDevice::Settings{5, 6})) << "not limited by it";
}

TEST_F(Bagger, LeavesTheDeviceAsFoundAfterAFailure) {
    SetDevice device(kUserSets + kSequencerSets + kPersistence);
    device.failing = kSequencer.load;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Bagger.Bag(device.Map()); }), "Lost");
    EXPECT_EQ(device.Current(), (SetDevice::Settings{5, 6}));
    EXPECT_EQ(device.Peek(kUser.selector), 1);
    EXPECT_EQ(device.Peek(kSequencer.selector), 2);
    EXPECT_EQ(device.calls.back(), "end");
    EXPECT_EQ(m_Bagger.size(), 4U) << "no bag of a set that didn't load";
}

TEST_F(Bagger, NeedsANodeMap) {
    const char* const text = "Nodemap pointer is NULL";
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { m_Bagger.Bag(nullptr); }), text);
    EXPECT_EQ(DescriptionOf<InvalidArgumentException>([&] { m_Bagger.UnBag(nullptr); }), text);
}

TEST_F(Bagger, PassesOverSetsWhoseNodesAreOfAnotherKind) {
    SetDevice device(IntSelectorXml("UserSetSelector", kUser.selector, "", {}, true) +
                     CommandXml("UserSetLoad", kUser.load) + CommandXml("UserSetSave", kUser.save));
    EXPECT_EQ(m_Bagger.Bag(device.Map(), false), 0);
    Add("UserSet.First", "31");
    EXPECT_TRUE(m_Bagger.UnBag(device.Map(), true, &m_Errors));
    EXPECT_THAT(device.calls, IsEmpty());
    EXPECT_EQ(device.Current(), (SetDevice::Settings{5, 6}));
}

TEST_F(Bagger, FillsAndSavesEachSetAndEndsWithTheCurrentSettings) {
    SetDevice device(kUserSets + kSequencerSets);
    Add("All", "30");
    Add("UserSet.First", "31");
    Add("UserSet.Second", "32");
    Add("SequencerSet.6", "36");
    EXPECT_TRUE(m_Bagger.UnBag(device.Map(), true, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors), IsEmpty());
    EXPECT_THAT(device.calls, ElementsAre("save 1", "save 2", "save 6"));
    EXPECT_EQ(device.UserSet(1).gain, 31);
    EXPECT_EQ(device.UserSet(2).gain, 32);
    EXPECT_EQ(device.SequencerSet(6).gain, 36);
    EXPECT_EQ(device.Current().gain, 30);
}

TEST_F(Bagger, LeavesTheDefaultUserSetToItsMaker) {
    SetDevice device(kUserSets);
    Add("UserSet.Default", "30");
    EXPECT_TRUE(m_Bagger.UnBag(device.Map(), true, &m_Errors));
    EXPECT_THAT(device.calls, IsEmpty());
    EXPECT_EQ(device.Current().gain, 5);
}

TEST_F(Bagger, LeavesBagsOfOtherNamesAlone) {
    SetDevice device(kUserSets);
    Add("Mine", "30");
    EXPECT_TRUE(m_Bagger.UnBag(device.Map()));
    EXPECT_EQ(device.Current().gain, 5);
}

TEST_F(Bagger, GivesADeviceBackAllThatItHeld) {
    SetDevice device(kUserSets + kSequencerSets);
    m_Bagger.Bag(device.Map());
    SetDevice other(kUserSets + kSequencerSets);
    other.Put(kGain, 0);
    for (const int address : {kUser.save, kSequencer.save}) {
        for (const int set : {1, 2, 6}) {
            other.Put(kUser.selector, set);
            other.Put(kSequencer.selector, set);
            other.Nodes().Port().Write("\1\0\0\0", address, 4);
        }
    }
    ASSERT_EQ(other.UserSet(1).gain, 0);
    EXPECT_TRUE(m_Bagger.UnBag(other.Map(), true, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors), IsEmpty());
    EXPECT_EQ(other.Current(), device.Current());
    EXPECT_EQ(other.UserSet(2), device.UserSet(2));
    EXPECT_EQ(other.SequencerSet(6), device.SequencerSet(6));
}

TEST_F(Bagger, NotesFailuresOfOneSetAndFillsTheOthers) {
    SetDevice device(kUserSets);
    Add("UserSet.Third", "31");
    Add("UserSet.First", "blue");
    Add("UserSet.Second", "33");
    EXPECT_FALSE(m_Bagger.UnBag(device.Map(), false, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors),
                ElementsAre(StartsWith("Error while writing node 'UserSetSelector': Feature "
                                       "'UserSetSelector' : cannot convert value 'Third', the "
                                       "value is invalid."),
                            StartsWith("Error while writing node 'Gain': ")));
    EXPECT_THAT(device.calls, ElementsAre("save 1", "save 2"));
    EXPECT_EQ(device.UserSet(2).gain, 33);
}

TEST_F(Bagger, NotesASaveThatFails) {
    SetDevice device(kUserSets);
    Add("UserSet.First", "31");
    Add("All", "32");
    device.failing = kUser.save;
    EXPECT_FALSE(m_Bagger.UnBag(device.Map(), false, &m_Errors));
    EXPECT_THAT(TextsOf(m_Errors),
                ElementsAre(StartsWith("Error while writing node 'UserSetSave': Lost : ")));
    EXPECT_EQ(device.Current().gain, 32);
}

TEST_F(Bagger, GivesItsInfoToTheBagsToCome) {
    m_Bagger.AddBag("A");
    m_Bagger.SetInfo("Mine");
    const CFeatureBag* const added = m_Bagger.AddBag("B");
    EXPECT_EQ(added, m_Bagger.at(1));
    EXPECT_EQ(m_Bagger.at(0)->GetInfo(), "");
    EXPECT_EQ(m_Bagger.at(1)->GetInfo(), "Mine");
}

TEST_F(Bagger, ListsItsBagsAndDeletesThem) {
    m_Bagger.AddBag("A");
    m_Bagger.AddBag("B");
    const auto isB = [](const CFeatureBag* bag) { return bag->GetBagName() == "B"; };
    CFeatureBagger::const_iterator found = std::find_if(m_Bagger.begin(), m_Bagger.end(), isB);
    EXPECT_EQ(*found++, m_Bagger.at(1));
    EXPECT_TRUE(found == m_Bagger.end());
    EXPECT_EQ(m_Bagger.size(), 2U);
    EXPECT_THROW(m_Bagger.at(2), OutOfRangeException);
    m_Bagger.DeleteAllBags();
    EXPECT_EQ(m_Bagger.size(), 0U);
    EXPECT_TRUE(m_Bagger.begin() == m_Bagger.end());
}

}  // namespace EngineTest
