#include "FileCameraTest.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "Base/GCException.h"
#include "PowerUp.h"
#include "producer/MadeUpMemory.h"
#include "producer/SwitchOnAddress.h"
#include "support/WithoutCaching.h"

namespace {

/// The memory of a camera before there is a camera.
class MemoryPort : public GenApi::IPort {
public:
    explicit MemoryPort(OvTest::MadeUpMemory& memory) : m_memory(memory) {}

    GenApi::EAccessMode GetAccessMode() override { return GenApi::RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        Access(address, [&](uint64_t place) {
            m_memory.Read(place, {static_cast<std::byte*>(buffer), static_cast<size_t>(length)});
        });
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        Access(address, [&](uint64_t place) {
            m_memory.Write(place,
                           {static_cast<const std::byte*>(buffer), static_cast<size_t>(length)});
        });
    }

private:
    template <class Call>
    static void Access(int64_t address, const Call& call) {
        const auto place = static_cast<uint64_t>(address);
        if (place >= OvTest::kSwitchOnAddress) {
            RUNTIME_EXCEPTION("No camera has registers there");
        }
        try {
            call(place);
        } catch (const std::length_error& refusal) {
            RUNTIME_EXCEPTION("%s", refusal.what());
        }
    }

    OvTest::MadeUpMemory& m_memory;
};

OvTest::MadeUpMemory::Bytes BytesAfterPowerUp(const std::string& description) {
    GenApi::CNodeMapFactory factory(GenApi::ContentType_Xml, description.data(),
                                    description.size());
    OvTest::MadeUpMemory memory;
    MemoryPort port(memory);
    const MapOwner map(factory.CreateNodeMap("Device", false));
    ConnectDevicePorts(*map, port);
    PowerUp(*map, memory).Run();
    return memory.Written();
}

std::string DescriptionOf(const std::string& name) {
    if (name == "BuiltIn") {
        return ContentOf(std::filesystem::path(OV_SOURCE_FOLDER) /
                         "tests/api/descriptions/producer/SmallCamera.xml");
    }
    return ContentOf(std::filesystem::path(std::getenv("OV_TEST_DESCRIPTIONS")) / (name + ".xml"));
}

GenApi::CNodeMapFactory FactoryFor(const std::string& name) {
    const std::string description = WithoutCaching(DescriptionOf(name));
    GenApi::CNodeMapFactory factory(GenApi::ContentType_Xml, description.data(),
                                    description.size());
    factory.Preprocess();
    return factory;
}

}  // namespace

std::vector<std::string> FileCameras() {
    std::vector<std::string> cameras{"BuiltIn"};
    for (const auto& file : FilesOfDescriptionFolder()) {
        cameras.push_back(file.stem());
    }
    return cameras;
}

std::string ContentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::map<std::string, GenApi::CNodeMapFactory> FileCamera::s_factories;

void FileCamera::SetUpTestSuite() {
    ASSERT_OV_OK(OVInitLib());
    uint32_t count = 0;
    ASSERT_OV_OK(OVUpdateDeviceList(&count, 1000));
    ASSERT_EQ(count, FileCameras().size());
}

void FileCamera::TearDownTestSuite() {
    s_factories.clear();
    ASSERT_OV_OK(OVCloseLib());
}

void FileCamera::SetUp() {
    if (!s_factories.contains(GetParam())) {
        s_factories.emplace(GetParam(), FactoryFor(GetParam()));
        SwitchOn();
    }
    Open();
}

void FileCamera::TearDown() {
    if (camera != nullptr) {
        EXPECT_OV_OK(OVCloseDevice(camera));
    }
}

GenApi::CNodeMapFactory& FileCamera::FactoryOf(const std::string& name) {
    return s_factories.at(name);
}

void FileCamera::Open() {
    const OV_OPEN_PARAM key{GetParam().c_str(), OV_OPEN_SN, OV_ACCESS_EXCLUSIVE};
    ASSERT_OV_OK(OVOpenDevice(&key, &camera));
}

void FileCamera::SwitchOn() {
    Open();
    RawPort port(camera);
    for (const auto& [address, byte] : BytesAfterPowerUp(DescriptionOf(GetParam()))) {
        port.Write(&byte, static_cast<int64_t>(address), 1);
    }
    const uint32_t keep = 1;
    port.Write(&keep, OvTest::kSwitchOnAddress, sizeof keep);
    ASSERT_OV_OK(OVCloseDevice(camera));
    camera = nullptr;
}

std::vector<Feature> FileCamera::Features() const {
    std::vector<Feature> features;
    for (const FeatureRow& row : kFeatureRows) {
        if ((row.id & OV_FEATURE_LEVEL_MASK) == OV_FEATURE_LEVEL_REMOTE_DEVICE) {
            features.emplace_back(camera, row);
        }
    }
    return features;
}

Feature FileCamera::FeatureNamed(const std::string& name) const {
    return {camera, *std::find_if(std::begin(kFeatureRows), std::end(kFeatureRows),
                                  [&](const FeatureRow& row) { return row.name == name; })};
}

INSTANTIATE_TEST_SUITE_P(Files, FileCamera, ::testing::ValuesIn(FileCameras()),
                         [](const auto& file) { return TestNameOf(file.param); });

TEST(FileCameras, AreThoseOfTheFolderThatTheEnvironmentNames) {
    const char* const folder = std::getenv("OV_TEST_DESCRIPTIONS");
    const bool isNamed = folder != nullptr && *folder != '\0';
    EXPECT_EQ(FilesOfDescriptionFolder().empty(), !isNamed);
}
