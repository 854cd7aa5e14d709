#include "TestWorld.h"

#include <cstdio>

#include "Base/EachFrame.h"
#include "framework/System.h"

namespace OvProducer {
extern const std::string_view kTestCameraDescription;
}

namespace OvTest {
namespace {

// The search mode beyond the adapter's own subnets.
constexpr std::int64_t kWholeNetwork = 1;

constexpr const char* kModules[] = {"System", "Interface", "Device", "Stream", "Remote"};

std::string TlTypeByFileName() {
    const std::string path = OvProducer::ProducerPath();
    const std::string name = path.substr(path.rfind('/') + 1);
    if (name.starts_with("OvGVTL")) {
        return GenTL::TLTYPE_GEV;
    }
    return name.starts_with("OvU3VTL") ? GenTL::TLTYPE_U3V : GenTL::TLTYPE_CUSTOM;
}

std::string Dotted(std::int64_t ip) {
    char text[32];
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", static_cast<int>(ip >> 24 & 0xFF),
                  static_cast<int>(ip >> 16 & 0xFF), static_cast<int>(ip >> 8 & 0xFF),
                  static_cast<int>(ip & 0xFF));
    return text;
}

// 192.168.(10 + iface).host, and MAC addresses that grow with the indices.
OvProducer::NetworkAddress AddressOf(unsigned iface, unsigned host, std::int64_t macBase) {
    OvProducer::NetworkAddress address;
    address.mac = macBase + std::int64_t{iface} * 256 + host;
    address.ip = 0xC0A80000LL + std::int64_t{10 + iface} * 256 + host;
    address.mask = 0xFFFFFF00LL;
    address.gateway = (address.ip & 0xFFFFFF00LL) + 254;
    return address;
}

}  // namespace

TestInterface::TestInterface(const CameraSettings& settings, unsigned index,
                             const std::string& tlType)
    : m_settings(settings), m_index(index) {
    m_facts.id = "TestInterface" + std::to_string(index);
    m_facts.displayName = "Test Interface " + std::to_string(index);
    m_facts.tlType = tlType;
    m_facts.description = "Adapter " + std::to_string(index);
    m_facts.address = AddressOf(index, 1, 0x001122330000);
    SetDeviceCount(1);
}

OvProducer::DeviceFacts TestInterface::FactsOfCamera(unsigned device) const {
    const std::string number = std::to_string(m_index) + "_" + std::to_string(device);
    OvProducer::DeviceFacts facts;
    facts.id = "TestCamera" + number;
    facts.vendor = "oviapi";
    facts.model = "TestCamera";
    facts.tlType = m_facts.tlType;
    facts.displayName = "Test Camera " + number;
    facts.userId = "User" + number;
    facts.serialNumber = "SN" + number;
    facts.version = "1.0.0";
    facts.timestampFrequency = 1000000000;
    facts.address = AddressOf(m_index, 100 + device, 0x00AABBCC0000);
    return facts;
}

OvProducer::InterfaceFacts TestInterface::Facts() {
    const std::lock_guard lock(m_mutex);
    return m_facts;
}

std::vector<std::shared_ptr<OvProducer::DeviceBackend>> TestInterface::Discover(
    std::uint64_t timeout) {
    std::unique_lock lock(m_mutex);
    m_searchTimeout = static_cast<std::int64_t>(timeout);
    m_searchEnds.wait(lock, [this] { return !m_searchHeld; });
    std::vector<std::shared_ptr<OvProducer::DeviceBackend>> present;
    for (const auto& camera : m_cameras) {
        if (IsFound(*camera)) {
            present.push_back(camera);
        }
    }
    return present;
}

bool TestInterface::IsFound(const TestCamera& camera) const {
    return !camera.IsLost() && (m_searchMode == kWholeNetwork || !camera.IsForeign());
}

std::shared_ptr<OvProducer::DeviceBackend> TestInterface::Reach(const std::string& id) {
    const std::lock_guard lock(m_mutex);
    for (const auto& camera : m_cameras) {
        if (!camera->IsLost() && id == "IP::" + Dotted(camera->Facts().address.ip)) {
            return camera;
        }
    }
    return nullptr;
}

void TestInterface::SetSearchMode(std::int64_t mode) {
    const std::lock_guard lock(m_mutex);
    m_searchMode = mode;
}

void TestInterface::StopDiscover() {
    const std::lock_guard lock(m_mutex);
    ++m_stopCount;
    m_searchHeld = false;
    m_searchEnds.notify_all();
}

void TestInterface::HoldSearch(bool on) {
    const std::lock_guard lock(m_mutex);
    m_searchHeld = on;
    m_searchEnds.notify_all();
}

std::int64_t TestInterface::SearchTimeout() const {
    const std::lock_guard lock(m_mutex);
    return m_searchTimeout;
}

void TestInterface::AddCamera(std::shared_ptr<TestCamera> camera) {
    const std::lock_guard lock(m_mutex);
    m_cameras.push_back(std::move(camera));
}

void TestInterface::ChangeFacts(const std::function<void(OvProducer::InterfaceFacts&)>& change) {
    const std::lock_guard lock(m_mutex);
    change(m_facts);
}

void TestInterface::SetDeviceCount(unsigned count) {
    const std::lock_guard lock(m_mutex);
    if (count < m_cameras.size()) {
        m_cameras.resize(count);
    }
    while (m_cameras.size() < count) {
        const auto device = static_cast<unsigned>(m_cameras.size());
        m_cameras.push_back(std::make_shared<TestCamera>(m_settings, FactsOfCamera(device)));
    }
}

std::shared_ptr<TestCamera> TestInterface::Camera(unsigned device) const {
    const std::lock_guard lock(m_mutex);
    return device < m_cameras.size() ? m_cameras[device] : nullptr;
}

void TestInterface::SetTlType(const std::string& tlType) {
    const std::lock_guard lock(m_mutex);
    m_facts.tlType = tlType;
    for (const auto& camera : m_cameras) {
        camera->ChangeFacts([&](OvProducer::DeviceFacts& facts) { facts.tlType = tlType; });
    }
}

std::int64_t TestInterface::SearchMode() const {
    const std::lock_guard lock(m_mutex);
    return m_searchMode;
}

std::int64_t TestInterface::StopCount() const {
    const std::lock_guard lock(m_mutex);
    return m_stopCount;
}

OV_EACH_FRAME TestWorld& TestWorld::Instance() {
    static TestWorld world;
    return world;
}

TestWorld::TestWorld() {
    Reset();
}

void TestWorld::Reset() {
    faults.Reset();
    const std::lock_guard lock(m_mutex);
    const std::string tlType = TlTypeByFileName();
    for (const auto& iface : m_interfaces) {
        iface->HoldSearch(false);
    }
    m_facts = {"OvTest_" + tlType, "oviapi", "TestProducer", "1.0.0", tlType, "Test Producer"};
    m_interfaces = {std::make_shared<TestInterface>(*this, 0U, tlType)};
    m_descriptions.clear();
    m_events = {GenTL::EVENT_FEATURE_INVALIDATE, GenTL::EVENT_REMOTE_DEVICE,
                GenTL::EVENT_DEVICE_OFFLINE};
    m_extensionCall.clear();
}

OvProducer::ProducerFacts TestWorld::Facts() const {
    const std::lock_guard lock(m_mutex);
    return m_facts;
}

void TestWorld::ChangeFacts(const std::function<void(OvProducer::ProducerFacts&)>& change) {
    const std::lock_guard lock(m_mutex);
    change(m_facts);
}

void TestWorld::SetTlType(const std::string& tlType) {
    const std::lock_guard lock(m_mutex);
    m_facts.tlType = tlType;
    for (const auto& iface : m_interfaces) {
        iface->SetTlType(tlType);
    }
}

void TestWorld::SetInterfaceCount(unsigned count) {
    const std::lock_guard lock(m_mutex);
    if (count < m_interfaces.size()) {
        m_interfaces.resize(count);
    }
    while (m_interfaces.size() < count) {
        const auto index = static_cast<unsigned>(m_interfaces.size());
        m_interfaces.push_back(std::make_shared<TestInterface>(*this, index, m_facts.tlType));
    }
}

void TestWorld::SetInterfaceLost(TestInterface& iface, bool lost) {
    const std::lock_guard lock(m_mutex);
    iface.lost = lost;
}

std::shared_ptr<TestInterface> TestWorld::Interface(unsigned index) const {
    const std::lock_guard lock(m_mutex);
    return index < m_interfaces.size() ? m_interfaces[index] : nullptr;
}

std::shared_ptr<TestCamera> TestWorld::Camera(unsigned iface, unsigned device) const {
    const std::shared_ptr<TestInterface> found = Interface(iface);
    return found ? found->Camera(device) : nullptr;
}

std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> TestWorld::Present() const {
    const std::lock_guard lock(m_mutex);
    std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> present;
    for (const auto& iface : m_interfaces) {
        if (!iface->lost) {
            present.push_back(iface);
        }
    }
    return present;
}

bool TestWorld::ChangeDescription(const std::string& module,
                                  const std::function<void(DescriptionOverride&)>& change) {
    for (const char* known : kModules) {
        if (module == known) {
            const std::lock_guard lock(m_mutex);
            change(m_descriptions[module]);
            return true;
        }
    }
    return false;
}

void TestWorld::Describe(OvProducer::ModuleKind kind, OvProducer::Port& port,
                         const std::function<void(OvProducer::Port&)>& own) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_descriptions.find(kModules[static_cast<std::size_t>(kind)]);
    if (found == m_descriptions.end()) {
        own(port);
        return;
    }
    if (found->second.file) {
        found->second.Apply(port, {});
    } else {
        own(port);
        found->second.ApplyUrl(port);
    }
}

void TestWorld::DescribeRemote(OvProducer::Port& port) const {
    OvProducer::Description own;
    own.name = "OvTestCamera_1_0_0";
    own.xml = std::string(OvProducer::kTestCameraDescription);
    own.zipped = true;
    const std::lock_guard lock(m_mutex);
    const auto found = m_descriptions.find("Remote");
    if (found == m_descriptions.end()) {
        DescriptionOverride().Apply(port, own);
    } else {
        found->second.Apply(port, own);
    }
}

bool TestWorld::OffersEvent(GenTL::EVENT_TYPE type) const {
    const std::lock_guard lock(m_mutex);
    return m_events.contains(type);
}

void TestWorld::OfferEvent(GenTL::EVENT_TYPE type, bool on) {
    const std::lock_guard lock(m_mutex);
    if (on) {
        m_events.insert(type);
    } else {
        m_events.erase(type);
    }
}

void TestWorld::RecordExtension(const std::string& call) {
    const std::lock_guard lock(m_mutex);
    m_extensionCall = call;
}

std::string TestWorld::ExtensionCall() const {
    const std::lock_guard lock(m_mutex);
    return m_extensionCall;
}

}  // namespace OvTest
