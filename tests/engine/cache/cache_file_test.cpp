// The bytes of a cache file, and what becomes of those that others have changed.

#include <algorithm>

#include "CacheSupport.h"
#include "GenApi/IDeviceInfo.h"
#include "cache/CacheTables.h"
#include "support/EveryUse.h"

namespace EngineTest {

namespace {

constexpr size_t kThirdVersion = 4;
constexpr size_t kNumStrings = 46;

const gcstring kSmall = Description(IntegerXml("A") + RegXml{.name = "R"}());

/// A small file as a reader of another make would see it.
class ParsedFile {
public:
    explicit ParsedFile(std::string bytes) : m_Bytes(std::move(bytes)) {
        m_Position = kNumStrings;
        for (uint64_t left = Number(4); left > 0; --left) {
            const size_t end = m_Bytes.find('\0', m_Position);
            strings.push_back(m_Bytes.substr(m_Position, end - m_Position));
            m_Position = end + 1;
        }
        stringsEnd = m_Position;
        for (uint64_t left = Number(4); left > 0; --left) {
            const uint64_t type = Number(2);
            types.emplace_back(type, Number(4));
        }
        numLinks = Number(4);
        for (size_t node = 0; node < types.size(); ++node) {
            for (uint64_t left = Number(4); left > 0; --left) {
                ReadProperty(node);
            }
            Closure& closure = closures.emplace_back();
            closure.position = m_Position;
            closure.place = Number(4);
            for (auto* const links : {&closure.dependents, &closure.terminals}) {
                for (uint64_t left = Number(4); left > 0; --left) {
                    links->push_back(Number(2));
                }
            }
        }
    }

    bool IsWhole() const { return m_Position == m_Bytes.size(); }

    struct Property {
        size_t node;
        uint64_t id;
        uint64_t type;
        bool hasAttribute;
        uint64_t value;
        bool operator==(const Property&) const = default;
    };
    struct Closure {
        size_t position = 0;
        uint64_t place = 0;
        std::vector<uint64_t> dependents = {};
        std::vector<uint64_t> terminals = {};
    };
    std::vector<std::string> strings;
    std::vector<std::pair<uint64_t, uint64_t>> types;
    uint64_t numLinks = 0;
    std::vector<Property> properties;
    std::vector<Closure> closures;
    size_t stringsEnd;

private:
    uint64_t Number(size_t bytes) {
        uint64_t number = 0;
        for (size_t i = 0; i < bytes; ++i) {
            number |= uint64_t{static_cast<uint8_t>(m_Bytes.at(m_Position++))} << (8 * i);
        }
        return number;
    }
    void ReadProperty(size_t node) {
        Property property{.node = node,
                          .id = Number(1),
                          .type = Number(1),
                          .hasAttribute = Number(1) == 1,
                          .value = 0};
        property.value = Number(property.type >= 18 ? 8 : property.type >= 5 ? 4 : 2);
        properties.push_back(property);
        if (property.hasAttribute) {
            ReadProperty(node);
        }
    }

    std::string m_Bytes;
    size_t m_Position;
};

std::string LoadFailureOfSmall(ECacheUsage_t usage = CacheUsage_Automatic) {
    return DescriptionOf<RuntimeException>(
        [&] { MapOwner(CNodeMapFactory(kSmall, usage).CreateNodeMap()); });
}

std::string CorruptText(const CacheFolder& folder) {
    return "Failed to read cache file '" + folder.File() +
           "'. The file is incomplete or corrupted.";
}

std::string ForeignText(const CacheFolder& folder) {
    return "Failed to read cache file '" + folder.File() + "'.";
}

}  // namespace

TEST(CacheFile, BeginsWithItsVersionAndText) {
    const CacheFolder folder;
    Store(kSmall);
    const std::string header("\3\0\0\0\3\0D{CE5EC8AE-C875-498E-8E7B-48F78F219876}\0", 46);
    EXPECT_EQ(BytesOf(folder.File()).substr(0, 46), header);
}

TEST(CacheFile, HoldsTextsNodesAndPropertiesInTheirOrder) {
    const CacheFolder folder;
    Store(kSmall);
    const ParsedFile file(BytesOf(folder.File()));
    EXPECT_TRUE(file.IsWhole());
    ASSERT_EQ(file.types.size(), 4U);
    const std::vector<std::pair<uint64_t, uint64_t>> types{{CNodeData::RegisterDescription_ID, 0},
                                                           {CNodeData::Integer_ID, 1},
                                                           {CNodeData::IntReg_ID, 2},
                                                           {CNodeData::Port_ID, 3}};
    EXPECT_EQ(file.types, types);
    std::vector<std::string> names;
    for (const auto& property : file.properties) {
        if (property.id == CPropertyID::Name_ID) {
            EXPECT_EQ(property.type, CProperty::String_ID);
            names.push_back(file.strings.at(property.value));
        }
    }
    EXPECT_THAT(names, testing::ElementsAre("_RegisterDescription", "A", "R", "Device"));
    const ParsedFile::Property value{
        .node = 1, .id = 55, .type = 20, .hasAttribute = false, .value = 1};
    EXPECT_THAT(file.properties, testing::Contains(value));
    const ParsedFile::Property port{
        .node = 2, .id = 20, .type = 4, .hasAttribute = false, .value = 3};
    EXPECT_THAT(file.properties, testing::Contains(port));
    const ParsedFile::Property mode{
        .node = 2, .id = 58, .type = 6, .hasAttribute = false, .value = RW};
    EXPECT_THAT(file.properties, testing::Contains(mode));
}

TEST(CacheFile, KeepsAttributesBehindTheirValues) {
    const CacheFolder folder;
    Store(
        Description("<SwissKnife Name=\"K\"><pVariable Name=\"X\">A</pVariable><Formula>X</Formula>"
                    "</SwissKnife>" +
                    IntegerXml("A")));
    const ParsedFile file(BytesOf(folder.File()));
    EXPECT_TRUE(file.IsWhole());
    const auto variable =
        std::find_if(file.properties.begin(), file.properties.end(),
                     [](const auto& property) { return property.id == CPropertyID::pVariable_ID; });
    ASSERT_NE(variable, file.properties.end());
    EXPECT_TRUE(variable->hasAttribute);
    EXPECT_EQ(variable[1].id, CPropertyID::Name_ID);
    EXPECT_EQ(file.strings.at(variable[1].value), "X");
}

TEST(CacheFile, IsTheSameWhenWrittenTwice) {
    const CacheFolder first;
    Store(kSmall);
    const std::string bytes = BytesOf(first.File());
    const CacheFolder second;
    Store(kSmall);
    EXPECT_EQ(BytesOf(second.File()), bytes);
}

TEST(CacheFile, GivesTheDataThatWasWritten) {
    const CacheFolder folder;
    CNodeMapFactory writer(kSmall, CacheUsage_ForceWrite);
    writer.Preprocess();
    CNodeMapFactory reader(kSmall, CacheUsage_ForceRead);
    reader.Preprocess();
    EXPECT_TRUE(reader.IsLoaded());
    EXPECT_EQ(reader.ToString(), writer.ToString());
    EXPECT_EQ(reader.ToXml(), writer.ToXml());
}

TEST(CacheFile, MakesNodesWithoutKeepingData) {
    const CacheFolder folder;
    Store(kSmall);
    CNodeMapFactory reader(kSmall, CacheUsage_ForceRead);
    CLock lock;
    const MapOwner map(reader.CreateNodeMap(lock, "Cam", false));
    EXPECT_FALSE(reader.IsPreprocessed());
    EXPECT_EQ(map.ValueOf("A"), 1);
    EXPECT_EQ(map->GetNumNodes(), 3U);
    EXPECT_EQ(map->GetDeviceName(), "Cam");
    EXPECT_EQ(&map->GetLock(), &lock);
    EXPECT_EQ(dynamic_cast<IDeviceInfo&>(*map.operator->()).GetModelName(), "Model");
    const MapOwner nameless(CNodeMapFactory(kSmall, CacheUsage_ForceRead).CreateNodeMap(""));
    EXPECT_EQ(nameless->GetDeviceName(), "Device");
}

TEST(CacheFile, IsReportedWhenCutOffAnywhereBehindItsVersions) {
    const CacheFolder folder;
    Store(kSmall);
    const std::string bytes = BytesOf(folder.File());
    const ParsedFile file(bytes);
    folder.Put(bytes.substr(0, file.stringsEnd));
    EXPECT_EQ(LoadFailureOfSmall(), CorruptText(folder));
    folder.ForgetChecksum();
    for (size_t length = 0; length < bytes.size(); ++length) {
        folder.Put(bytes.substr(0, length));
        EXPECT_EQ(LoadFailureOfSmall(), CorruptText(folder)) << length;
    }
}

TEST(CacheFile, KeepsTheLinksOfClosuresAsPlainIdentifiers) {
    const CacheFolder folder;
    Store(Description(RegXml{.name = "R"}() + IntegerXml("A", "", "<pValue>R</pValue>") +
                      IntegerXml("B", "", "<pValue>A</pValue>")));
    const ParsedFile file(BytesOf(folder.File()));
    EXPECT_TRUE(file.IsWhole());
    const auto idOf = [&file](const std::string& name) {
        for (const auto& property : file.properties) {
            if (property.id == CPropertyID::Name_ID && file.strings.at(property.value) == name) {
                return property.node;
            }
        }
        return size_t{0};
    };
    const ParsedFile::Closure& closure = file.closures.at(idOf("R"));
    EXPECT_THAT(closure.dependents, testing::UnorderedElementsAre(idOf("A"), idOf("B")));
    EXPECT_GT(closure.dependents[0], closure.dependents[1]);
    EXPECT_THAT(closure.terminals, testing::ElementsAre(idOf("R")));
    uint64_t numLinks = 0;
    for (const auto& each : file.closures) {
        numLinks += each.dependents.size() + each.terminals.size();
    }
    EXPECT_EQ(file.numLinks, numLinks);
    for (const auto& property : file.properties) {
        EXPECT_NE(property.id, CPropertyID::pDependent_ID);
        EXPECT_NE(property.id, CPropertyID::pTerminal_ID);
    }
}

TEST(CacheFile, IsRefusedWithAnotherVersion) {
    const CacheFolder folder;
    Store(kSmall);
    std::string bytes = BytesOf(folder.File());
    bytes[kThirdVersion] = 2;
    folder.Put(bytes);
    EXPECT_EQ(LoadFailureOfSmall(), ForeignText(folder));
    EXPECT_EQ(LoadFailureOfSmall(CacheUsage_ForceRead), ForeignText(folder));
    CNodeMapFactory data(kSmall, CacheUsage_Automatic);
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { data.Preprocess(); }), ForeignText(folder));
    EXPECT_FALSE(data.IsPreprocessed());
}

TEST(CacheFile, IsReportedWithAnyByteChanged) {
    const CacheFolder folder;
    Store(kSmall);
    const std::string bytes = BytesOf(folder.File());
    for (size_t position = 0; position < bytes.size(); ++position) {
        for (const int bits : {0x01, 0x80, 0xFF}) {
            std::string changed = bytes;
            changed[position] = static_cast<char>(changed[position] ^ bits);
            folder.Put(changed);
            const std::string expected =
                position < kNumStrings ? ForeignText(folder) : CorruptText(folder);
            EXPECT_EQ(LoadFailureOfSmall(), expected) << position;
        }
    }
}

namespace {

/// A node of each kind, with the properties that have a form of their own.
const gcstring kManifold = Description(
    "<Category Name=\"Root\"><pFeature>A</pFeature><pFeature>E</pFeature></Category>" +
    IntegerXml("A", "<pIsLocked>B</pIsLocked>", "<Value>1</Value><pSelected>R</pSelected>") +
    IntegerXml("X", "",
               "<pIndex>A</pIndex><pValueIndexed Index=\"1\">R</pValueIndexed>"
               "<ValueDefault>2</ValueDefault>") +
    "<Boolean Name=\"B\"><Value>0</Value></Boolean>"
    "<Float Name=\"F\"><Value>1.5</Value></Float>"
    "<String Name=\"S\"><Value>text</Value></String>"
    "<Enumeration Name=\"E\"><EnumEntry Name=\"One\"><Value>1</Value></EnumEntry>"
    "<Value>1</Value></Enumeration>"
    "<Command Name=\"D\"><pValue>R</pValue><CommandValue>1</CommandValue></Command>"
    "<Converter Name=\"C\"><pVariable Name=\"V\">A</pVariable><FormulaTo>FROM*V</FormulaTo>"
    "<FormulaFrom>TO/V</FormulaFrom><pValue>R</pValue></Converter>"
    "<MaskedIntReg Name=\"M\"><Address>8</Address><pIndex pOffset=\"X\">A</pIndex>"
    "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><LSB>1</LSB><MSB>3</MSB>"
    "<Endianess>LittleEndian</Endianess></MaskedIntReg>"
    "<FloatReg Name=\"G\"><Address>16</Address><Length>8</Length><AccessMode>RW</AccessMode>"
    "<pPort>Device</pPort></FloatReg>"
    "<Port Name=\"P\"><ChunkID>0A</ChunkID></Port>" +
    RegXml{.name = "R"}());

}  // namespace

TEST(CacheFile, NeverEndsTheProcessWithAnyByteChangedAndNoChecksum) {
    const CacheFolder folder;
    Store(kManifold);
    folder.ForgetChecksum();
    const std::string bytes = BytesOf(folder.File());
    TestPort port(64);
    for (size_t position = kNumStrings; position < bytes.size(); ++position) {
        for (const int bits : {0x01, 0x06, 0xFF}) {
            std::string changed = bytes;
            changed[position] = static_cast<char>(changed[position] ^ bits);
            folder.Put(changed);
            AttemptEach([&] { CNodeMapFactory(kManifold, CacheUsage_ForceRead).Preprocess(); },
                        [&] {
                            const MapOwner map(
                                CNodeMapFactory(kManifold, CacheUsage_ForceRead).CreateNodeMap());
                            map->Connect(&port);
                            UseEverything(*map.operator->());
                        });
        }
    }
}

namespace {

/// A small cache file whose checksum nobody compares.
class UncheckedFile {
public:
    const std::string& Bytes() const { return m_Bytes; }
    const ParsedFile& Parsed() const { return m_Parsed; }
    /// Both ways of loading refuse the file with these bytes.
    void ExpectCorrupt(const std::string& changed) const {
        m_Folder.Put(changed);
        EXPECT_EQ(LoadFailureOfSmall(), CorruptText(m_Folder));
        EXPECT_EQ(DescriptionOf<RuntimeException>(
                      [] { CNodeMapFactory(kSmall, CacheUsage_ForceRead).Preprocess(); }),
                  CorruptText(m_Folder));
    }
    /// The same with some of its bytes, by place, so much greater.
    void ExpectCorrupt(std::initializer_list<size_t> places, int more) const {
        std::string changed = m_Bytes;
        for (const size_t place : places) {
            changed[place] = static_cast<char>(changed[place] + more);
        }
        ExpectCorrupt(changed);
    }

private:
    std::string StoredBytes() const {
        Store(kSmall);
        m_Folder.ForgetChecksum();
        return BytesOf(m_Folder.File());
    }

    const CacheFolder m_Folder;
    const std::string m_Bytes = StoredBytes();
    const ParsedFile m_Parsed{m_Bytes};
};

/// The bytes with one part in place of another of the same length.
std::string Replaced(std::string bytes, const std::string& from, const std::string& to) {
    EXPECT_EQ(from.size(), to.size());
    const size_t place = bytes.find(from);
    EXPECT_NE(place, std::string::npos);
    return bytes.replace(place, to.size(), to);
}

}  // namespace

TEST(CacheFile, HoldsNoMoreThanIdentifiersReach) {
    const UncheckedFile file;
    for (const size_t count : {kNumStrings, file.Parsed().stringsEnd}) {
        std::string changed = file.Bytes();
        changed[count + 2] = 1;
        file.ExpectCorrupt(changed);
    }
}

TEST(CacheFile, IsCorruptWhereNodesShareAName) {
    const UncheckedFile file;
    const std::string a("\0A", 3);
    file.ExpectCorrupt(Replaced(file.Bytes(), a, std::string("\0R", 3)));
    file.ExpectCorrupt(Replaced(file.Bytes(), "_RegisterDescription", "_RegisterDescriptioN"));
}

TEST(CacheFile, IsCorruptWhereANodeHasAPropertyOfOthers) {
    const UncheckedFile file;
    const auto head = [](CPropertyID::EProperty_ID_t id, CProperty::EDataType_t type) {
        return std::string{static_cast<char>(id), static_cast<char>(type), '\0'};
    };
    const auto length = head(CPropertyID::Length_ID, CProperty::Integer_ID);
    for (const auto& other : {head(CPropertyID::OnValue_ID, CProperty::Integer_ID),
                              head(CPropertyID::Length_ID, CProperty::Float_ID),
                              head(CPropertyID::Name_ID, CProperty::Integer_ID)}) {
        file.ExpectCorrupt(Replaced(file.Bytes(), length, other));
    }
    const auto access = head(CPropertyID::AccessMode_ID, CProperty::EAccessMode_ID);
    file.ExpectCorrupt(Replaced(file.Bytes(), access,
                                head(CPropertyID::AccessMode_ID, CProperty::ECachingMode_ID)));
}

TEST(CacheFile, IsCorruptWhereALinkOfAClosureLeadsToNoNode) {
    const UncheckedFile file;
    const auto& closures = file.Parsed().closures;
    const auto closure = std::find_if(closures.begin(), closures.end(),
                                      [](const auto& each) { return !each.terminals.empty(); });
    ASSERT_NE(closure, closures.end());
    // After the place, the dependents and the number of terminals.
    const size_t position = closure->position + 4 + 4 + 2 * closure->dependents.size() + 4;
    ASSERT_EQ(static_cast<uint8_t>(file.Bytes()[position]), closure->terminals[0]);
    for (const size_t node : {file.Parsed().types.size(), size_t{255}}) {
        std::string changed = file.Bytes();
        changed[position] = static_cast<char>(node);
        file.ExpectCorrupt(changed);
    }
}

TEST(CacheFile, IsCorruptWhereTheNumbersOfAClosureAreWrong) {
    const UncheckedFile file;
    const size_t total = file.Parsed().stringsEnd + 4 + 6 * file.Parsed().types.size();
    const size_t place = file.Parsed().closures.back().position;
    for (const size_t position : {total, total + 3, place, place + 3, place + 4, place + 7}) {
        file.ExpectCorrupt({position}, 100);
    }
}

TEST(CacheFile, IsCorruptWhereAClosureHasMoreLinksThanTheFileHasBytes) {
    const UncheckedFile file;
    const size_t total = file.Parsed().stringsEnd + 4 + 6 * file.Parsed().types.size();
    const size_t dependents = file.Parsed().closures.back().position + 4;
    // As many links as there may be in all, so that only the bytes are missing.
    file.ExpectCorrupt({total, dependents}, 20);
}

TEST(CacheFile, GivesNodesThatReturnTheSameProperties) {
    const CacheFolder folder;
    Store(kManifold);
    const MapOwner parsed(CNodeMapFactory(kManifold).CreateNodeMap());
    const MapOwner cached(CNodeMapFactory(kManifold, CacheUsage_ForceRead).CreateNodeMap());
    const auto text = [](const MapOwner& map) {
        return std::string(
            CNodeMapFactory::CreateNodeDataFromNodeMap(map.operator->()).ToXml().c_str());
    };
    EXPECT_EQ(text(cached), text(parsed));
}

TEST(CacheFile, OfAConverterWhoseKnifeIsAnotherNodeFailsThatConverter) {
    const CacheFolder folder;
    Store(kManifold);
    folder.ForgetChecksum();
    const ParsedFile file(BytesOf(folder.File()));
    const auto knife = std::find_if(
        file.properties.begin(), file.properties.end(),
        [](const auto& property) { return property.id == CPropertyID::pSwissKnifeTo_ID; });
    ASSERT_NE(knife, file.properties.end());
    const auto link = [](uint64_t node) {
        return std::string{CPropertyID::pSwissKnifeTo_ID, CProperty::Node_ID, '\0',
                           static_cast<char>(node), '\0'};
    };
    folder.Put(Replaced(BytesOf(folder.File()), link(knife->value), link(knife->node)));
    TestPort port;
    const MapOwner map(CNodeMapFactory(kManifold, CacheUsage_ForceRead).CreateNodeMap());
    map->Connect(&port);
    EXPECT_EQ(DescriptionOf<RuntimeException>(
                  [&] { dynamic_cast<IValue&>(*map->GetNode("C")).ToString(); }),
              "The 'pSwissKnifeTo' of a converter is no formula of its kind.");
    EXPECT_EQ(map.ValueOf("A"), 1);
}

TEST(CacheFile, GivesNoNodeOfATypeThatThereIsNot) {
    CCacheWriter writer;
    writer.Raw(GetCacheFileHeader());
    writer.Number(0, 4);
    const std::vector<uint64_t> types{CNodeData::RegisterDescription_ID, CNodeData::Port_ID, 24704};
    writer.Number(types.size(), 4);
    for (size_t id = 0; id < types.size(); ++id) {
        writer.Number(types[id], 2);
        writer.Number(id, 4);
    }
    CCacheReader reader(writer.GetBytes());
    const CCacheTables tables = ReadCacheTables(reader);
    EXPECT_EQ(reader.GetState(), CCacheReader::State::Corrupt);
    EXPECT_THAT(tables.types,
                testing::ElementsAre(CNodeData::RegisterDescription_ID, CNodeData::Port_ID));
}

TEST(CacheFile, MayNotNestAttributesWithoutEnd) {
    CCacheWriter writer;
    for (int depth = 0; depth < 100000; ++depth) {
        writer.Number(CPropertyID::Value_ID, 1);
        writer.Number(CProperty::Integer_ID, 1);
        writer.Number(1, 1);
        writer.Number(5, 8);
    }
    CCacheReader reader(writer.GetBytes());
    CNodeDataMap map;
    CProperty::FromFile(reader, CCacheCounts{.strings = 0, .nodes = 0}, &map);
    EXPECT_EQ(reader.GetState(), CCacheReader::State::Corrupt);
}

TEST(CacheFile, HoldsNegativeNumbersFractionsAndEnumerators) {
    CNodeDataMap map;
    CCacheWriter writer;
    const std::vector<CProperty> properties{
        {&map, CPropertyID::Min_ID, int64_t{-2}},
        {&map, CPropertyID::Max_ID, -0.125},
        {&map, CPropertyID::Visibility_ID, CProperty::EVisibility_ID, _UndefinedVisibility}};
    for (const CProperty& property : properties) {
        property.ToFile(writer);
    }
    EXPECT_EQ(writer.GetBytes().size(), 3U * 3 + 8 + 8 + 4);
    CCacheReader reader(writer.GetBytes());
    for (const CProperty& property : properties) {
        EXPECT_EQ(CProperty::FromFile(reader, CCacheCounts{.strings = 0, .nodes = 0}, &map),
                  property);
    }
    EXPECT_TRUE(reader.IsGood());
    EXPECT_EQ(reader.GetRest(), 0U);
}

}  // namespace EngineTest
