#include "TestCamera.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <sstream>

#include "framework/Event.h"

namespace OvTest {
namespace {

using OvProducer::Failure;

constexpr std::uint32_t kMono8 = 0x01080001;
constexpr std::size_t kStreamsMax = 4;

// The registers whose writes start an action, by the numbers of the control interface.
constexpr std::size_t kAcquisitionStart = 0x0500;
constexpr std::size_t kTriggerSoftware = 0x0508;
constexpr std::size_t kCommandsEnd = 0x0520;

class MemoryRange : public OvProducer::RegisterRange {
public:
    explicit MemoryRange(std::shared_ptr<TestCamera> camera) : m_camera(std::move(camera)) {}
    std::size_t Length() const override { return TestCamera::kMemorySize; }
    void Read(std::size_t offset, std::span<std::byte> out) const override {
        m_camera->ReadMemory(offset, out);
    }
    void Write(std::size_t offset, std::span<const std::byte> in) override {
        m_camera->WriteRegister(offset, in);
    }

private:
    std::shared_ptr<TestCamera> m_camera;
};

}  // namespace

void DescriptionOverride::Apply(OvProducer::Port& port, const OvProducer::Description& own) const {
    constexpr std::uint64_t address = 0x10000;
    if (file) {
        port.AddFile(file->fileName, file->content, address);
    } else {
        port.AddDescription(own, address);
    }
    ApplyUrl(port);
}

void DescriptionOverride::ApplyUrl(OvProducer::Port& port) const {
    if (!url) {
        return;
    }
    port.ForgetUrls();
    std::istringstream lines(*url);
    for (OvProducer::DescriptionUrl entry; std::getline(lines, entry.url);) {
        port.AddUrl(entry);
    }
}

TestCamera::TestCamera(const CameraSettings& settings, OvProducer::DeviceFacts facts)
    : m_settings(settings), m_facts(std::move(facts)), m_memory(kMemorySize) {
    for (std::size_t i = 0; i < kStreamsMax; ++i) {
        m_streams.push_back(std::make_shared<TestStream>(*this, "Stream" + std::to_string(i)));
    }
    SetText(0x0000, m_facts.vendor);
    SetText(0x0040, m_facts.model);
    SetText(0x0080, m_facts.version);
    SetText(0x00C0, m_facts.serialNumber);
    SetText(0x0100, "1.0.0");
    SetText(CameraRegister::UserId, m_facts.userId);
    SetNumber(CameraRegister::Width, 64);
    SetNumber(CameraRegister::Height, 48);
    SetNumber(CameraRegister::PixelFormat, kMono8);
    SetNumber(CameraRegister::PayloadSize, 64 * 48);
    const double exposure = 10000.0;
    std::memcpy(m_memory.data() + 0x0600, &exposure, sizeof exposure);
    SetNumber(0x0520, 1);  // AcquisitionFrameCount
}

TestCamera::~TestCamera() = default;

OvProducer::DeviceFacts TestCamera::Facts() {
    const std::lock_guard lock(m_mutex);
    OvProducer::DeviceFacts facts = m_facts;
    const char* userId = reinterpret_cast<const char*>(m_memory.data() + CameraRegister::UserId);
    facts.userId = std::string(userId, strnlen(userId, 64));
    return facts;
}

void TestCamera::Open(GenTL::DEVICE_ACCESS_FLAGS flags, std::weak_ptr<OvProducer::EventSink> sink) {
    CheckUsable();
    const std::lock_guard lock(m_mutex);
    // An adapter only knows the addresses that were opened through it.
    if (m_open) {
        throw Failure(GenTL::GC_ERR_ACCESS_DENIED, "The camera is open through another adapter");
    }
    m_open = true;
    m_sink = std::move(sink);
    m_facts.accessStatus = flags == GenTL::DEVICE_ACCESS_READONLY
                               ? GenTL::DEVICE_ACCESS_STATUS_OPEN_READONLY
                               : GenTL::DEVICE_ACCESS_STATUS_OPEN_READWRITE;
}

void TestCamera::Close() {
    const std::lock_guard lock(m_mutex);
    m_sink.reset();
    m_open = false;
    m_facts.accessStatus = GenTL::DEVICE_ACCESS_STATUS_READWRITE;
}

std::unique_ptr<OvProducer::Port> TestCamera::MakeRemotePort() {
    const OvProducer::DeviceFacts facts = Facts();
    auto port = std::make_unique<OvProducer::Port>(OvProducer::PortFacts{
        facts.id, facts.vendor, facts.model, facts.tlType, "Device", facts.version, "Device"});
    port->Registers().Add(0, std::make_unique<MemoryRange>(shared_from_this()));
    port->SetGate([self = shared_from_this()] { self->CheckUsable(); });
    m_settings.DescribeRemote(*port);
    return port;
}

std::vector<std::shared_ptr<OvProducer::StreamBackend>> TestCamera::Streams() {
    const std::lock_guard lock(m_mutex);
    const auto end = m_streams.begin() + static_cast<std::ptrdiff_t>(m_streamCount);
    return {m_streams.begin(), end};
}

void TestCamera::CheckUsable() {
    if (IsLost()) {
        throw Failure(GenTL::GC_ERR_CUSTOM_ID, "The device is lost");
    }
}

void TestCamera::ChangeFacts(const std::function<void(OvProducer::DeviceFacts&)>& change) {
    const std::lock_guard lock(m_mutex);
    change(m_facts);
    SetText(0x0000, m_facts.vendor);
    SetText(0x0040, m_facts.model);
    SetText(0x0080, m_facts.version);
    SetText(0x00C0, m_facts.serialNumber);
    if (!m_facts.userId.empty()) {
        SetText(CameraRegister::UserId, m_facts.userId);
    }
}

void TestCamera::SetStreamCount(std::size_t count) {
    const std::lock_guard lock(m_mutex);
    m_streamCount = std::min(count, kStreamsMax);
}

std::vector<std::shared_ptr<TestStream>> TestCamera::AllStreams() const {
    const std::lock_guard lock(m_mutex);
    return m_streams;
}

void TestCamera::Lose() {
    {
        const std::lock_guard lock(m_mutex);
        m_lost = true;
    }
    for (const auto& stream : AllStreams()) {
        stream->SetLost(true);
    }
    Post(GenTL::EVENT_DEVICE_OFFLINE, {});
}

void TestCamera::Return() {
    {
        const std::lock_guard lock(m_mutex);
        m_lost = false;
    }
    for (const auto& stream : AllStreams()) {
        stream->SetLost(false);
    }
}

bool TestCamera::IsLost() const {
    const std::lock_guard lock(m_mutex);
    return m_lost;
}

void TestCamera::Post(GenTL::EVENT_TYPE type, std::span<const std::byte> entry) {
    std::shared_ptr<OvProducer::EventSink> sink;
    {
        const std::lock_guard lock(m_mutex);
        sink = m_sink.lock();
    }
    if (sink) {
        sink->Post(type, entry);
    }
}

std::int64_t TestCamera::CommandCount(std::size_t offset) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_commands.find(offset);
    return found == m_commands.end() ? 0 : found->second;
}

void TestCamera::ReadMemory(std::size_t offset, std::span<std::byte> out) const {
    const std::lock_guard lock(m_mutex);
    std::memcpy(out.data(), m_memory.data() + offset, out.size());
}

void TestCamera::WriteMemory(std::size_t offset, std::span<const std::byte> in) {
    const std::lock_guard lock(m_mutex);
    std::memcpy(m_memory.data() + offset, in.data(), in.size());
}

void TestCamera::WriteRegister(std::size_t offset, std::span<const std::byte> in) {
    // Command registers aren't stored: they are always read as 0.
    if (offset >= kAcquisitionStart && offset < kCommandsEnd) {
        RunCommand(offset);
        return;
    }
    WriteMemory(offset, in);
    const bool shapesFrame =
        offset >= CameraRegister::Width && offset < CameraRegister::PayloadSize;
    if (shapesFrame) {
        const std::uint32_t bytes = (Number(CameraRegister::PixelFormat) >> 16 & 0xFF) / 8;
        const std::uint32_t size =
            Number(CameraRegister::Width) * Number(CameraRegister::Height) * bytes;
        const std::lock_guard lock(m_mutex);
        SetNumber(CameraRegister::PayloadSize, size);
    }
}

std::uint32_t TestCamera::Number(std::size_t offset) const {
    std::uint32_t value = 0;
    ReadMemory(offset, std::as_writable_bytes(std::span(&value, 1)));
    return value;
}

void TestCamera::SetNumber(std::size_t offset, std::uint32_t value) {
    std::memcpy(m_memory.data() + offset, &value, sizeof value);
}

void TestCamera::SetText(std::size_t offset, const std::string& text) {
    std::array<char, 64> field{};
    text.copy(field.data(), field.size() - 1);
    std::memcpy(m_memory.data() + offset, field.data(), field.size());
}

void TestCamera::RunCommand(std::size_t offset) {
    {
        const std::lock_guard lock(m_mutex);
        ++m_commands[offset];
    }
    if (offset == kAcquisitionStart) {
        m_streams.front()->RestartCount();
    } else if (offset == kTriggerSoftware) {
        m_streams.front()->Trigger(1);
    }
}

}  // namespace OvTest
