#include "framework/Interface.h"

namespace OvProducer {
namespace {

constexpr InfoRow<InterfaceFacts> kInterfaceRows[] = {
    {GenTL::INTERFACE_INFO_ID, [](const auto& facts) { return InfoValue::Text(facts.id); }},
    {GenTL::INTERFACE_INFO_DISPLAYNAME,
     [](const auto& facts) { return InfoValue::Text(facts.displayName); }},
    {GenTL::INTERFACE_INFO_TLTYPE, [](const auto& facts) { return InfoValue::Text(facts.tlType); }},
};

PortFacts PortFactsOf(const Session& session, const InterfaceFacts& facts) {
    return {facts.id,      session.facts.vendor,  session.facts.model, facts.tlType,
            "TLInterface", session.facts.version, "InterfacePort"};
}

}  // namespace

InfoValue InterfaceInfo(const InterfaceFacts& facts, GenTL::INTERFACE_INFO_CMD command) {
    return AnswerFrom(kInterfaceRows, command, facts);
}

Interface::Interface(Session& session, std::weak_ptr<System> parent,
                     std::shared_ptr<InterfaceBackend> backend)
    : Module(session, PortFactsOf(session, backend->Facts())),
      m_parent(std::move(parent)),
      m_backend(std::move(backend)) {
    AddRegisters();
    AddDeviceListRegisters();
    AddForceRegisters();
    m_backend->AddRegisters(GetOwnPort().Registers());
    session.producer->Describe(ModuleKind::Interface, GetOwnPort());
}

std::shared_ptr<System> Interface::Parent() const {
    if (std::shared_ptr<System> parent = m_parent.lock()) {
        return parent;
    }
    throw Failure(GenTL::GC_ERR_INVALID_HANDLE, "The system is closed");
}

void Interface::Close() {
    for (const std::shared_ptr<Device>& device : m_devices.TakeOpen()) {
        device->Close();
    }
    Retire();
}

InfoValue Interface::Info(GenTL::INTERFACE_INFO_CMD command) const {
    return InterfaceInfo(m_backend->Facts(), command);
}

bool Interface::UpdateDevices(uint64_t timeout) {
    return m_devices.Update(m_backend->Discover(timeout));
}

std::shared_ptr<DeviceBackend> Interface::DeviceNamed(const std::string& id) const {
    std::shared_ptr<DeviceBackend> device = m_devices.Find(id);
    if (!device) {
        device = m_backend->Reach(id);
    }
    if (!device) {
        throw Failure(GenTL::GC_ERR_INVALID_ID, "The interface has no device '" + id + "'");
    }
    return device;
}

std::shared_ptr<Device> Interface::OpenDevice(const std::string& id,
                                              GenTL::DEVICE_ACCESS_FLAGS flags) {
    if (flags < GenTL::DEVICE_ACCESS_READONLY || flags > GenTL::DEVICE_ACCESS_EXCLUSIVE) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "A device can't be opened with that access");
    }
    const std::shared_ptr<DeviceBackend> backend = DeviceNamed(id);
    return m_devices.Open(backend->Facts().id, [&] {
        return Device::Open(GetSession(), weak_from_this(), backend, flags);
    });
}

void Interface::CloseDevice(const std::shared_ptr<Device>& device) {
    m_devices.Remove(device);
    device->Close();
}

void Interface::AddRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    constexpr std::string InterfaceFacts::*texts[] = {
        &InterfaceFacts::id, &InterfaceFacts::displayName, &InterfaceFacts::description};
    uint64_t address = 0x0000;
    for (const auto field : texts) {
        registers.AddText(address, 128, [this, field] { return m_backend->Facts().*field; });
        address += 128;
    }
    registers.AddInteger(0x0180, 8, [this] { return TlTypeNumber(m_backend->Facts().tlType); });
    AddAddressRegisters(registers, 0x0190, [this] { return m_backend->Facts().address; });
}

void Interface::AddDeviceListRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    registers.AddCommand(0x0200, [this] { UpdateDevices(kFeatureUpdateTimeout); });
    registers.AddInteger(
        0x0208, 8, [this] { return m_devices.Selected(); },
        [this](int64_t index) { m_devices.Select(index); });
    registers.AddInteger(0x0210, 8, [this] { return m_devices.LastIndex(); });
    const auto selected = [this] { return m_devices.SelectedBackend()->Facts(); };
    registers.AddInteger(0x0218, 8, [selected] { return selected().accessStatus; });
    AddAddressRegisters(registers, 0x0220, [selected] { return selected().address; });
    registers.AddInteger(
        0x0240, 8, [this] { return m_searchMode.load(); },
        [this](int64_t mode) {
            m_backend->SetSearchMode(mode);
            m_searchMode = mode;
        });
    registers.AddCommand(0x0248, [this] { m_backend->StopDiscover(); });

    constexpr std::string DeviceFacts::*texts[] = {&DeviceFacts::id,     &DeviceFacts::vendor,
                                                   &DeviceFacts::model,  &DeviceFacts::serialNumber,
                                                   &DeviceFacts::userId, &DeviceFacts::version};
    uint64_t address = 0x0280;
    for (const auto field : texts) {
        registers.AddText(address, 128, [selected, field] { return selected().*field; });
        address += 128;
    }
}

void Interface::AddForceRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    constexpr std::atomic<int64_t> ForcedAddress::*fields[] = {
        &ForcedAddress::ip, &ForcedAddress::mask, &ForcedAddress::gateway};
    uint64_t address = 0x0580;
    for (const auto field : fields) {
        registers.AddInteger(
            address, 8, [this, field] { return (m_forced.*field).load(); },
            [this, field](int64_t value) { m_forced.*field = value; });
        address += 8;
    }
    registers.AddCommand(address, [this] {
        m_backend->ForceAddress(
            *m_devices.SelectedBackend(),
            {.mac = 0, .ip = m_forced.ip, .mask = m_forced.mask, .gateway = m_forced.gateway});
    });
}

}  // namespace OvProducer
