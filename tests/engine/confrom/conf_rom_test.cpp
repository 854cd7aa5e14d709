// The Configuration ROM of IEEE 1394 cameras, and the nodes that show it.

#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "NodeGraph.h"
#include "confrom/ConfRomReader.h"

namespace EngineTest {

namespace {

constexpr uint32_t kSpecifier = 0xA02D;
constexpr int64_t kRomAddress = 0x400;
constexpr const char* kOutOfRange = "p=0x[0-9a-f]+ out of range \\[0x[0-9a-f]+,0x[0-9a-f]+\\)";

constexpr uint32_t Entry(uint32_t key, uint32_t value) {
    return key << 24 | (value & 0xFFFFFF);
}
constexpr uint32_t Length(uint32_t quadlets) {
    return quadlets << 16;
}
constexpr uint32_t Letters(const char (&text)[5]) {
    return uint32_t(text[0]) << 24 | uint32_t(text[1]) << 16 | uint32_t(text[2]) << 8 |
           uint32_t(text[3]);
}

/// A ROM with a vendor and a described number in the root, and one unit whose
/// dependent directory holds an offset and a model name.
std::vector<uint32_t> Rom() {
    return {
        0x04040000,       // 0: information block of four quadlets
        Letters("1394"),  // 1
        0,                // 2
        0x00112233,
        0x44556677,               // 3: what the unit is called on all buses
        Length(4),                // 5: root directory
        Entry(0x03, 0xABCDEF),    // 6: vendor, described by the next
        Entry(0x81, 8),           // 7: text at 15
        Entry(0x0C, 0x83C0),      // 8
        Entry(0xD1, 1),           // 9: unit directory at 10
        Length(2),                // 10
        Entry(0x12, kSpecifier),  // 11
        Entry(0xD4, 7),           // 12: dependent directory at 19
        0,
        0,          // 13
        Length(3),  // 15: a text of four letters
        0,
        0,
        Letters("Acme"),        // 16
        Length(2),              // 19
        Entry(0x40, 0x3C0000),  // 20
        Entry(0x82, 1),         // 21: text at 22
        Length(4),              // 22
        0,
        0,
        Letters("Came"),
        'r' << 24 | 'a' << 16,  // 23
    };
}

std::vector<uint8_t> BytesOf(const std::vector<uint32_t>& rom) {
    std::vector<uint8_t> bytes;
    for (const uint32_t quadlet : rom) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes.push_back(static_cast<uint8_t>(quadlet >> shift));
        }
    }
    return bytes;
}

std::string KeyXml(const char* element, const char* name, uint32_t key) {
    return "<" + std::string(element) + " Name=\"" + name + "\">" + std::to_string(key) + "</" +
           element + ">";
}

/// A description of the ROM with nodes for some of its keys.
class RomCamera {
public:
    explicit RomCamera(const std::vector<uint32_t>& rom = Rom())
        : m_Map("<ConfRom Name=\"Rom\"><Unit>" + std::to_string(kSpecifier) +
                "</Unit><Address>1024</Address><Length>" + std::to_string(rom.size() * 4) +
                "</Length><pPort>Device</pPort>" + KeyXml("IntKey", "Vendor", 0x03) +
                KeyXml("TextDesc", "VendorText", 0x03) + KeyXml("IntKey", "Base", 0x40) +
                KeyXml("TextDesc", "Model", 0x82) + KeyXml("IntKey", "Missing", 0x2A) +
                KeyXml("IntKey", "Directory", 0xD1) + "</ConfRom>") {
        Put(rom);
    }

    void Put(const std::vector<uint32_t>& rom) { Port().PutBytes(kRomAddress, BytesOf(rom)); }
    TestPort& Port() { return m_Map.Port(); }
    XmlNodeMap& operator*() { return m_Map; }
    int64_t Integer(const char* name) { return m_Map.Get<IInteger>(name).GetValue(false, true); }
    std::string Text(const char* name) {
        return m_Map.Get<IString>(name).GetValue(false, true).c_str();
    }

private:
    XmlNodeMap m_Map;
};

/// The failure of a ROM that differs from the good one in one quadlet.
std::string FailureWith(size_t place, uint32_t quadlet, const char* node = "Missing") {
    std::vector<uint32_t> rom = Rom();
    rom[place] = quadlet;
    RomCamera camera(rom);
    return DescriptionOf<RuntimeException>([&] { camera.Integer(node); });
}

}  // namespace

TEST(ConfRom, GivesNumbersAndTextsOfAllItsDirectories) {
    RomCamera camera;
    EXPECT_EQ(camera.Integer("Vendor"), 0xABCDEF);
    EXPECT_EQ(camera.Text("VendorText"), "Acme");
    EXPECT_EQ(camera.Integer("Base"), 0x3C0000);
    EXPECT_EQ(camera.Text("Model"), "Camera");
}

TEST(ConfRom, HasItsKeysReadableAndNothingMore) {
    RomCamera camera;
    EXPECT_EQ((*camera).Get("Vendor").GetAccessMode(), RO);
    EXPECT_EQ((*camera).Get("Model").GetAccessMode(), RO);
    EXPECT_EQ((*camera).Get("Rom").GetAccessMode(), RO);
    EXPECT_EQ((*camera).Get("Vendor").GetPrincipalInterfaceType(), intfIInteger);
    EXPECT_EQ((*camera).Get("Model").GetPrincipalInterfaceType(), intfIString);
    EXPECT_EQ((*camera).Get<IInteger>("Vendor").GetMin(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ((*camera).Get<IInteger>("Vendor").GetMax(), std::numeric_limits<int64_t>::max());
    camera.Port().SetAccessMode(NA);
    (*camera)->InvalidateNodes();
    EXPECT_EQ((*camera).Get("Vendor").GetAccessMode(), NA);
}

TEST(ConfRom, TellsTheKeyThatItLacks) {
    RomCamera camera;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { camera.Integer("Missing"); }),
              "Key 0x2a, not found");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { camera.Text("VendorText"); }), "");
}

TEST(ConfRom, KeepsTheKindsOfEntriesApart) {
    std::vector<uint32_t> rom = Rom();
    rom[7] = Entry(0x0D, 1);  // no text describes the vendor
    RomCamera camera(rom);
    EXPECT_EQ(camera.Integer("Vendor"), 0xABCDEF);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { camera.Text("VendorText"); }),
              "Key 0x3, not found");
}

TEST(ConfRom, FindsATextInADirectoryOfTexts) {
    std::vector<uint32_t> rom = Rom();
    rom[7] = Entry(0xC1, 20);  // a directory at 27 in the place of the text
    rom.insert(rom.end(), {Length(4), Entry(0x0D, 0), Entry(0x81, 3), Entry(0x81, 6),
                           Entry(0x81, 5),                             // the last of four
                           Length(3), 0, 0x00000409, Letters("Mots"),  // another language
                           Length(3), 0, 0, Letters("Text")});
    RomCamera camera(rom);
    EXPECT_EQ(camera.Text("VendorText"), "Text");
}

TEST(ConfRom, HasNoTextWhereADirectoryOfTextsHasNone) {
    std::vector<uint32_t> rom = Rom();
    rom[7] = Entry(0xC1, 20);
    rom.insert(rom.end(), {Length(1), Entry(0x0D, 0)});
    RomCamera camera(rom);
    EXPECT_EQ(camera.Integer("Vendor"), 0xABCDEF);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { camera.Text("VendorText"); }),
              "Key 0x3, not found");
}

TEST(ConfRom, FindsKeysOfAUnitItself) {
    const std::vector<uint8_t> bytes = BytesOf(Rom());
    ConfRomEntries entries;
    ConfRomReader(bytes).Find(0x12, kSpecifier, entries);
    EXPECT_EQ(entries.integers, (std::map<uint32_t, int64_t>{{0x12, kSpecifier}}));
    EXPECT_EQ(ConfRomReader(bytes).UnitIdentifier(), 0x0011223344556677U);
}

TEST(ConfRom, PassesOverTextsInOtherFormsAndLanguages) {
    for (const auto& [place, quadlet] : {std::pair<size_t, uint32_t>{16, 0x01000000},
                                         {16, 0x00000001},
                                         {17, 0x00010000},
                                         {17, 0x00000409}}) {
        std::vector<uint32_t> rom = Rom();
        rom[place] = quadlet;
        RomCamera camera(rom);
        EXPECT_EQ(DescriptionOf<RuntimeException>([&] { camera.Text("VendorText"); }),
                  "Key 0x3, not found");
    }
}

TEST(ConfRom, LooksOnlyIntoUnitsOfItsSpecifier) {
    EXPECT_EQ(FailureWith(11, Entry(0x12, kSpecifier + 1), "Base"), "Key 0x40, not found");
}

TEST(ConfRom, HasToBeOfItsBus) {
    EXPECT_EQ(FailureWith(1, Letters("1395")), "unsupported bus");
    EXPECT_EQ(FailureWith(0, 0x03030000), "DirLenQuad >= 4");
}

TEST(ConfRom, RefusesDirectoriesInThePlaceOfValues) {
    RomCamera camera;
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { camera.Integer("Directory"); }),
              "Key type is directory (key=0xD1)?!");
}

TEST(ConfRom, NeverReadsBeyondItsEnd) {
    const auto isRefused = [](const std::string& failure) {
        return testing::Value(failure, testing::MatchesRegex(kOutOfRange));
    };
    EXPECT_TRUE(isRefused(FailureWith(0, 0xFF040000)));
    EXPECT_TRUE(isRefused(FailureWith(5, Length(0xFFFF))));
    EXPECT_TRUE(isRefused(FailureWith(9, Entry(0xD1, 0xFFFFFF))));
    EXPECT_TRUE(isRefused(FailureWith(12, Entry(0xD4, 0x1000))));
    EXPECT_TRUE(isRefused(FailureWith(7, Entry(0x81, 0xFFFFFF), "Vendor")));
    EXPECT_TRUE(isRefused(FailureWith(15, Length(0xFFFF), "Vendor")));
}

TEST(ConfRom, FollowsDirectoriesThatLeadToThemselvesNoFurther) {
    EXPECT_THAT(FailureWith(12, Entry(0xD4, 0)), testing::MatchesRegex(kOutOfRange));
    EXPECT_THAT(FailureWith(9, Entry(0xD1, 0)), testing::MatchesRegex(kOutOfRange));
}

TEST(ConfRom, IsSearchedOnceHoweverManyEntriesLeadToADirectory) {
    // Each entry leads to the one next directory: followed every time, the
    // search would have no end that anyone waits for.
    constexpr uint32_t kMany = 0x8000;
    std::vector<uint32_t> rom = Rom();
    rom.resize(5);
    const auto add = [&rom](uint32_t key) {
        rom.push_back(Length(kMany));
        for (uint32_t i = kMany; i > 0; --i) {
            rom.push_back(Entry(key, i));
        }
    };
    add(0xD1);
    add(0xD4);
    rom.back() = Entry(0x12, kSpecifier);
    add(0x17);
    const std::vector<uint8_t> bytes = BytesOf(rom);
    ConfRomEntries entries;
    ConfRomReader(bytes).Find(0x2A, kSpecifier, entries);
    EXPECT_TRUE(entries.IsEmpty());
}

TEST(ConfRom, EndsInAnExceptionForEveryByteThatIsWrong) {
    const std::vector<uint8_t> good = BytesOf(Rom());
    for (size_t place = 0; place < good.size(); ++place) {
        for (const int bits : {0x01, 0x80, 0xFF}) {
            std::vector<uint8_t> bytes = good;
            bytes[place] = static_cast<uint8_t>(bytes[place] ^ bits);
            for (const uint32_t key : {0x03U, 0x2AU, 0x40U, 0x82U}) {
                ConfRomEntries entries;
                const ConfRomReader rom(bytes);
                try {
                    rom.UnitIdentifier();
                    rom.Find(key, kSpecifier, entries);
                } catch (const RuntimeException& failure) {
                    EXPECT_STRNE(failure.GetDescription(), "");
                }
            }
        }
    }
}

TEST(ConfRom, MayBeOfAnyLength) {
    const std::vector<uint8_t> good = BytesOf(Rom());
    for (size_t length = 0; length < good.size(); ++length) {
        // Of just that size, so that a read behind the end doesn't go unnoticed.
        const std::vector<uint8_t> part(good.begin(),
                                        good.begin() + static_cast<ptrdiff_t>(length));
        const ConfRomReader rom(part);
        ConfRomEntries entries;
        EXPECT_THROW(rom.Find(0x82, kSpecifier, entries), RuntimeException) << length;
    }
}

TEST(ConfRom, HoldsNothingAfterAFailureThatTellsOfTheNode) {
    RomCamera camera;
    camera.Integer("Vendor");
    const Failure failure = FailureOf<RuntimeException>([&] { camera.Integer("Directory"); });
    EXPECT_EQ(failure.description, "Key type is directory (key=0xD1)?!");
    EXPECT_THAT(failure.what, testing::HasSubstr("'Rom'"));
    EXPECT_EQ((*camera).Get<IValue>("Rom").ToString(), "CIEEE1212Parser: -");
    EXPECT_EQ(camera.Integer("Vendor"), 0xABCDEF);
}

TEST(ConfRom, AsksTheDeviceNothingBeforeAKeyIsWanted) {
    RomCamera camera;
    (*camera)->InvalidateNodes();
    EXPECT_EQ(camera.Port().GetAccesses().size(), 0U);
}

TEST(ConfRom, KeepsWhatItFoundWhileTheUnitIsTheSame) {
    RomCamera camera;
    camera.Integer("Vendor");
    camera.Port().ForgetAccesses();
    (*camera)->InvalidateNodes();
    const size_t looks = camera.Port().GetReads();
    EXPECT_EQ(looks, 1U);  // at the ROM's head
    EXPECT_EQ(camera.Integer("Vendor"), 0xABCDEF);
    EXPECT_EQ(camera.Port().GetReads(), looks);
}

TEST(ConfRom, IsParsedAnewForAnotherUnit) {
    RomCamera camera;
    EXPECT_EQ(camera.Integer("Vendor"), 0xABCDEF);
    std::vector<uint32_t> other = Rom();
    other[4] = 1;
    other[6] = Entry(0x03, 0x1234);
    camera.Put(other);
    EXPECT_EQ(camera.Integer("Vendor"), 0xABCDEF);
    dynamic_cast<INodePrivate&>((*camera).Get("Rom")).SetInvalid(simAll);
    EXPECT_EQ((*camera).Get<IInteger>("Vendor").GetValue(), 0x1234);
}

TEST(ConfRom, LeavesWhatItFoundAloneWhileItCannotBeRead) {
    RomCamera camera;
    camera.Integer("Vendor");
    camera.Port().SetAccessMode(NA);
    dynamic_cast<INodePrivate&>((*camera).Get("Device")).SetInvalid(simAll);
    camera.Port().ForgetAccesses();
    (*camera)->InvalidateNodes();
    EXPECT_EQ(camera.Port().GetReads(), 0U);
    camera.Port().SetAccessMode(RW);
    dynamic_cast<INodePrivate&>((*camera).Get("Device")).SetInvalid(simAll);
    camera.Port().FailAccess(1);
    EXPECT_NO_THROW((*camera)->InvalidateNodes());  // a look that fails forgets
    EXPECT_EQ(camera.Integer("Vendor"), 0xABCDEF);
}

TEST(ConfRom, ShowsItsKeysAsText) {
    RomCamera camera;
    EXPECT_EQ((*camera).Get<IValue>("Rom").ToString(), "CIEEE1212Parser: -");
    camera.Integer("Vendor");
    camera.Text("Model");
    EXPECT_EQ((*camera).Get<IValue>("Rom").ToString(),
              "CIEEE1212Parser: - 0x3 = 0xabcdef 0x3 = 'Acme' 0x82 = 'Camera'");
}

TEST(ConfRom, CannotBeWritten) {
    RomCamera camera;
    auto& rom = (*camera).Get<IRegister>("Rom");
    const uint8_t byte = 0;
    EXPECT_EQ(DescriptionOf<AccessException>([&] { rom.Set(&byte, 1); }), "Node is not writable.");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { rom.Set(&byte, 1, false); }),
              "Node is not writable.");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { rom.FromString("0x00", true); }),
              "Node is not writable");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { rom.FromString("0x00", false); }),
              "Node is not writable.");
    EXPECT_EQ(camera.Port().GetWrites(), 0U);
}

TEST(ConfRom, HasKeysThatCannotBeWrittenVerifiedOrNot) {
    RomCamera camera;
    auto& vendor = (*camera).Get<IInteger>("Vendor");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { vendor.SetValue(1, true); }),
              "Node is not writable.");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { vendor.SetValue(1, false); }),
              "IntKey is read only.");
    auto& model = (*camera).Get<IString>("Model");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { model.SetValue("New", false); }),
              "TxtKey : Model SetValue to New failed. TxtKey is read only");
    EXPECT_EQ(DescriptionOf<AccessException>([&] { model.GetMaxLength(); }),
              "TxtKey : Model GetMaxLength failed. TxtKey is read only");
}

TEST(ConfRom, IsWhatAKeyHasToName) {
    EXPECT_EQ(DescriptionOf<RuntimeException>([] {
                  XmlNodeMap map(
                      "<IntKey Name=\"Key\"><p1212Parser>A</p1212Parser><Key>3</Key></IntKey>" +
                      IntegerXml("A"));
              }),
              "The 'p1212Parser' of a key is no parser.");
}

TEST(ConfRom, MayNotBeLargerThanMemory) {
    for (const std::string length : {"0x7FFFFFFFFFFFFFFF", "0x100000000"}) {
        XmlNodeMap map("<ConfRom Name=\"Rom\"><Unit>1</Unit><Address>0</Address>" +
                       Element("Length", length) + "<pPort>Device</pPort>" +
                       KeyXml("IntKey", "Key", 3) + "</ConfRom>");
        EXPECT_EQ(DescriptionOf<GenericException>([&] { map.Get<IInteger>("Key").GetValue(); }),
                  "Out of memory");
        EXPECT_EQ(map.Port().GetAccesses().size(), 0U);
    }
}

}  // namespace EngineTest
