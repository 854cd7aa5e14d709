#include "FileCamera.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "framework/Failure.h"

namespace OvTest {
namespace {

constexpr std::size_t kEdge = 8;
constexpr std::uint64_t kMono8 = 0x01080001;
constexpr std::uint64_t kDescriptionAddress = kSwitchOnAddress + 0x1000;

/// What the memory refuses is a failure of the port.
template <class Access>
void Guarded(const Access& access) {
    try {
        access();
    } catch (const std::length_error& refusal) {
        throw OvProducer::Failure(GenTL::GC_ERR_INVALID_ADDRESS, refusal.what());
    }
}

class AllMemory : public OvProducer::RegisterRange {
public:
    explicit AllMemory(MadeUpMemory& memory) : m_memory(memory) {}
    std::size_t Length() const override { return kSwitchOnAddress; }
    void Read(std::size_t offset, std::span<std::byte> out) const override {
        Guarded([&] { m_memory.Read(offset, out); });
    }
    void Write(std::size_t offset, std::span<const std::byte> in) override {
        Guarded([&] { m_memory.Write(offset, in); });
    }

private:
    MadeUpMemory& m_memory;
};

/// The camera's own port: descriptions of other modules name theirs as they like.
std::string PortNameIn(const std::string& description) {
    constexpr std::string_view begin = "<Port Name=\"";
    if (description.find("<Port Name=\"Device\"") != std::string::npos) {
        return "Device";
    }
    const std::size_t first = description.find(begin);
    if (first == std::string::npos) {
        return "Device";
    }
    const std::size_t name = first + begin.size();
    return description.substr(name, description.find('"', name) - name);
}

}  // namespace

OvProducer::StreamFacts FileStream::Facts() {
    OvProducer::StreamFacts facts;
    facts.id = "Stream0";
    facts.tlType = GenTL::TLTYPE_CUSTOM;
    return facts;
}

std::size_t FileStream::FrameSize() {
    return kEdge * kEdge;
}

OvProducer::FrameInfo FileStream::ReadFrame(std::span<std::byte> memory, const std::stop_token&) {
    std::ranges::fill(memory.first(FrameSize()), static_cast<std::byte>(m_frame));
    OvProducer::FrameInfo info;
    info.width = kEdge;
    info.height = kEdge;
    info.deliveredHeight = kEdge;
    info.sizeFilled = FrameSize();
    info.pixelFormat = kMono8;
    info.frameId = m_frame++;
    return info;
}

FileCamera::FileCamera(std::string name, std::string description)
    : m_name(std::move(name)), m_description(std::move(description)) {}

OvProducer::DeviceFacts FileCamera::Facts() {
    OvProducer::DeviceFacts facts;
    facts.id = m_name;
    facts.vendor = "oviapi";
    facts.model = m_name;
    facts.tlType = GenTL::TLTYPE_CUSTOM;
    facts.displayName = m_name;
    facts.serialNumber = m_name;
    facts.version = "1.0.0";
    facts.timestampFrequency = 1000000000;
    facts.accessStatus = m_status;
    return facts;
}

void FileCamera::Open(GenTL::DEVICE_ACCESS_FLAGS, std::weak_ptr<OvProducer::EventSink>) {
    m_status = GenTL::DEVICE_ACCESS_STATUS_OPEN_READWRITE;
    m_memory.Restore(m_switchedOn);
}

bool FileCamera::OffersEvent(GenTL::EVENT_TYPE type) {
    return type == GenTL::EVENT_DEVICE_OFFLINE || type == GenTL::EVENT_REMOTE_DEVICE;
}

std::unique_ptr<OvProducer::Port> FileCamera::MakeRemotePort() {
    auto port = std::make_unique<OvProducer::Port>(
        OvProducer::PortFacts{m_name, "oviapi", m_name, GenTL::TLTYPE_CUSTOM, "Device", "1.0.0",
                              PortNameIn(m_description)});
    port->Registers().Add(0, std::make_unique<AllMemory>(m_memory));
    port->Registers().AddCommand(kSwitchOnAddress, [this] { m_switchedOn = m_memory.Written(); });
    OvProducer::Description description;
    description.name = m_name;
    description.xml = m_description;
    description.zipped = true;
    port->AddDescription(description, kDescriptionAddress);
    return port;
}

}  // namespace OvTest
