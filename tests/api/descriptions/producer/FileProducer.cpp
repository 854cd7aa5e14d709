/// @file
/// The producer of cameras that are description files: the one that is built in,
/// and those of the folder that OV_TEST_DESCRIPTIONS may name.
#include <fstream>
#include <iterator>

#include "FileCamera.h"
#include "support/DescriptionFolder.h"

namespace OvProducer {
extern const std::string_view kSmallCameraDescription;
}

namespace OvTest {
namespace {

std::string ContentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class FileInterface : public OvProducer::InterfaceBackend {
public:
    FileInterface() {
        Add("BuiltIn", std::string(OvProducer::kSmallCameraDescription));
        for (const auto& file : FilesOfDescriptionFolder()) {
            Add(file.stem(), ContentOf(file));
        }
    }

    OvProducer::InterfaceFacts Facts() override {
        OvProducer::InterfaceFacts facts;
        facts.id = "FileInterface0";
        facts.displayName = "File Interface";
        facts.tlType = GenTL::TLTYPE_CUSTOM;
        facts.description = "Cameras that are files";
        return facts;
    }

    std::vector<std::shared_ptr<OvProducer::DeviceBackend>> Discover(std::uint64_t) override {
        return m_devices;
    }
    std::shared_ptr<OvProducer::DeviceBackend> Reach(const std::string&) override {
        return nullptr;
    }

private:
    void Add(const std::string& name, const std::string& description) {
        m_devices.push_back(std::make_shared<FileCamera>(name, description));
    }

    std::vector<std::shared_ptr<OvProducer::DeviceBackend>> m_devices;
};

class FileProducer : public OvProducer::ProducerBackend {
public:
    OvProducer::ProducerFacts Facts() override {
        return {"FileTL",
                "oviapi",
                "File Cameras",
                "1.0.0",
                GenTL::TLTYPE_CUSTOM,
                "Cameras of description files"};
    }
    std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> Discover(std::uint64_t) override {
        return {m_interface};
    }

private:
    const std::shared_ptr<FileInterface> m_interface = std::make_shared<FileInterface>();
};

}  // namespace
}  // namespace OvTest

namespace OvProducer {

std::unique_ptr<ProducerBackend> MakeProducer() {
    return std::make_unique<OvTest::FileProducer>();
}

CallObserver& Observer() {
    static CallObserver observer;
    return observer;
}

}  // namespace OvProducer
