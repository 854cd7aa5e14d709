// The bytes of a cache file, and what becomes of those that others have changed.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "NodeMapData/CacheFile.h"
#include "cache_support.h"

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
        for (size_t node = 0; node < types.size(); ++node) {
            for (uint64_t left = Number(4); left > 0; --left) {
                ReadProperty(node);
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
    std::vector<std::string> strings;
    std::vector<std::pair<uint64_t, uint64_t>> types;
    std::vector<Property> properties;
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

std::string LoadFailure(ECacheUsage_t usage = CacheUsage_Automatic) {
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

/// How a process ends that loads the one description from what the folder holds.
enum class End { Loads, Throws, Asserts, Crashes };

void LoadBothWays() {
    CNodeMapFactory(kSmall, CacheUsage_ForceRead).Preprocess();
    const MapOwner map(CNodeMapFactory(kSmall, CacheUsage_ForceRead).CreateNodeMap());
    map->GetNumNodes();
}

End LoadInProcess() {
    const pid_t child = fork();
    if (child == 0) {
        fclose(stderr);  // a thousand assertion texts help no one
        try {
            LoadBothWays();
        } catch (const GenericException&) {
            _exit(1);
        } catch (...) {
            _exit(2);
        }
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) {
        return WTERMSIG(status) == SIGABRT ? End::Asserts : End::Crashes;
    }
    return WEXITSTATUS(status) == 0   ? End::Loads
           : WEXITSTATUS(status) == 1 ? End::Throws
                                      : End::Crashes;
}

}  // namespace

TEST(CacheFile, BeginsWithItsVersionAndText) {
    const CacheFolder folder;
    Store(kSmall);
    const std::string header("\3\0\0\0\2\0D{CE5EC8AE-C875-498E-8E7B-48F78F219876}\0", 46);
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
    EXPECT_EQ(LoadFailure(), CorruptText(folder));
    folder.ForgetChecksum();
    for (size_t length = 0; length < bytes.size(); ++length) {
        folder.Put(bytes.substr(0, length));
        EXPECT_EQ(LoadFailure(), CorruptText(folder)) << length;
    }
}

TEST(CacheFile, IsRefusedWithAnotherVersion) {
    const CacheFolder folder;
    Store(kSmall);
    std::string bytes = BytesOf(folder.File());
    bytes[kThirdVersion] = 3;
    folder.Put(bytes);
    EXPECT_EQ(LoadFailure(), ForeignText(folder));
    EXPECT_EQ(LoadFailure(CacheUsage_ForceRead), ForeignText(folder));
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
            EXPECT_EQ(LoadFailure(), expected) << position;
        }
    }
}

TEST(CacheFile, NeverCrashesAReaderWithAnyByteChangedAndNoChecksum) {
    const CacheFolder folder;
    Store(kSmall);
    folder.ForgetChecksum();
    const std::string bytes = BytesOf(folder.File());
    for (size_t position = 0; position < bytes.size(); ++position) {
        std::string changed = bytes;
        changed[position] = static_cast<char>(changed[position] ^ 0xFF);
        folder.Put(changed);
        EXPECT_NE(LoadInProcess(), End::Crashes) << position;
    }
}

TEST(CacheFile, IsCorruptBeyondItsLimits) {
    const CacheFolder folder;
    Store(kSmall);
    folder.ForgetChecksum();
    const std::string bytes = BytesOf(folder.File());
    std::string changed = bytes;
    changed[kNumStrings + 2] = 1;
    folder.Put(changed);
    EXPECT_EQ(LoadFailure(), CorruptText(folder));
    changed = bytes;
    changed[ParsedFile(bytes).stringsEnd + 2] = 1;
    folder.Put(changed);
    EXPECT_EQ(LoadFailure(), CorruptText(folder));
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
