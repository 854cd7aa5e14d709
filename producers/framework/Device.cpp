#include "framework/Device.h"

namespace OvProducer {
namespace {

template <std::string DeviceFacts::*field>
InfoValue TextField(const DeviceFacts& facts) {
    return InfoValue::Text(facts.*field);
}

constexpr InfoRow<DeviceFacts> kDeviceRows[] = {
    {GenTL::DEVICE_INFO_ID, TextField<&DeviceFacts::id>},
    {GenTL::DEVICE_INFO_VENDOR, TextField<&DeviceFacts::vendor>},
    {GenTL::DEVICE_INFO_MODEL, TextField<&DeviceFacts::model>},
    {GenTL::DEVICE_INFO_TLTYPE, TextField<&DeviceFacts::tlType>},
    {GenTL::DEVICE_INFO_DISPLAYNAME, TextField<&DeviceFacts::displayName>},
    {GenTL::DEVICE_INFO_ACCESS_STATUS,
     [](const DeviceFacts& facts) { return InfoValue::Int32(facts.accessStatus); }},
    {GenTL::DEVICE_INFO_USER_DEFINED_NAME, TextField<&DeviceFacts::userId>},
    {GenTL::DEVICE_INFO_SERIAL_NUMBER, TextField<&DeviceFacts::serialNumber>},
    {GenTL::DEVICE_INFO_VERSION, TextField<&DeviceFacts::version>},
    {GenTL::DEVICE_INFO_TIMESTAMP_FREQUENCY,
     [](const DeviceFacts& facts) { return InfoValue::Uint64(facts.timestampFrequency); }},
};

PortFacts PortFactsOf(const DeviceFacts& facts) {
    return {facts.id,   facts.vendor,  facts.model, facts.tlType,
            "TLDevice", facts.version, "DevicePort"};
}

/// The port of a camera that was just opened. It is closed again if it has none.
std::unique_ptr<Port> RemotePortOf(DeviceBackend& backend) {
    try {
        return backend.MakeRemotePort();
    } catch (...) {
        backend.Close();
        throw;
    }
}

}  // namespace

InfoValue DeviceInfo(const DeviceFacts& facts, GenTL::DEVICE_INFO_CMD command) {
    return AnswerFrom(kDeviceRows, command, facts);
}

std::shared_ptr<Device> Device::Open(Session& session, std::weak_ptr<Interface> parent,
                                     const std::shared_ptr<DeviceBackend>& backend,
                                     GenTL::DEVICE_ACCESS_FLAGS flags) {
    auto device = std::make_shared<Device>(session, std::move(parent), backend);
    backend->Open(flags, device);
    std::unique_ptr<Port> remote = RemotePortOf(*backend);
    if (flags == GenTL::DEVICE_ACCESS_READONLY) {
        remote->MakeReadOnly();
    }
    device->m_remote = std::make_shared<RemoteDevice>(std::move(remote));
    session.Add(device->m_remote);
    session.Add(device);
    return device;
}

Device::Device(Session& session, std::weak_ptr<Interface> parent,
               std::shared_ptr<DeviceBackend> backend)
    : Module(session, PortFactsOf(backend->Facts())),
      m_parent(std::move(parent)),
      m_backend(std::move(backend)),
      m_patience(m_backend->InitialPatience()) {
    m_streams.Update(m_backend->Streams());
    AddRegisters();
    AddStreamListRegisters();
    AddSettingRegisters();
    m_backend->AddRegisters(GetOwnPort().Registers());
    GetOwnPort().SetGate([this] { m_backend->CheckUsable(); });
    session.producer->Describe(ModuleKind::Device, GetOwnPort());
}

std::shared_ptr<Interface> Device::Parent() const {
    if (std::shared_ptr<Interface> parent = m_parent.lock()) {
        return parent;
    }
    throw Failure(GenTL::GC_ERR_INVALID_HANDLE, "The interface is closed");
}

void Device::Close() {
    for (const std::shared_ptr<Stream>& stream : m_streams.TakeOpen()) {
        stream->Close();
    }
    GetSession().handles.Remove(m_remote->Handle());
    Retire();
    m_backend->Close();
}

InfoValue Device::Info(GenTL::DEVICE_INFO_CMD command) const {
    return DeviceInfo(m_backend->Facts(), command);
}

std::shared_ptr<Stream> Device::OpenStream(const std::string& id) {
    m_backend->CheckUsable();
    std::shared_ptr<StreamBackend> backend = m_streams.Find(id);
    if (!backend) {
        throw Failure(GenTL::GC_ERR_INVALID_ID, "The device has no stream '" + id + "'");
    }
    return m_streams.Open(id, [&] {
        auto stream = std::make_shared<Stream>(GetSession(), weak_from_this(), backend);
        GetSession().Add(stream);
        return stream;
    });
}

void Device::CloseStream(const std::shared_ptr<Stream>& stream) {
    m_streams.Remove(stream);
    stream->Close();
}

void Device::AddRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    constexpr std::string DeviceFacts::*texts[] = {
        &DeviceFacts::id,           &DeviceFacts::vendor, &DeviceFacts::model,
        &DeviceFacts::serialNumber, &DeviceFacts::userId, &DeviceFacts::version,
        &DeviceFacts::displayName};
    uint64_t address = 0x0000;
    for (const auto field : texts) {
        registers.AddText(address, 128, [this, field] { return m_backend->Facts().*field; });
        address += 128;
    }
    const auto type = [this] { return TlTypeNumber(m_backend->Facts().tlType); };
    registers.AddInteger(0x0380, 8, type);
    AddAddressRegisters(registers, 0x0390, [this] { return m_backend->Facts().address; });
    registers.AddInteger(0x03B0, 8, [this] { return m_backend->Facts().accessStatus; });
    registers.AddInteger(
        0x03B8, 8, [this] { return static_cast<int64_t>(m_backend->Facts().timestampFrequency); });
}

void Device::AddStreamListRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    registers.AddInteger(
        0x03C0, 8, [this] { return m_streams.Selected(); },
        [this](int64_t index) { m_streams.Select(index); });
    registers.AddInteger(0x03C8, 8, [this] { return m_streams.LastIndex(); });
    registers.AddText(0x0400, 128, [this] { return m_streams.SelectedBackend()->Facts().id; });
}

// A setting is only kept if the backend takes it.
void Device::AddSettingRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    const auto setPatience = [this](auto CommandPatience::*field, int64_t value) {
        using Field = std::remove_reference_t<decltype(m_patience.*field)>;
        const std::lock_guard lock(m_settings);
        CommandPatience patience = m_patience;
        patience.*field = Field(value);
        m_backend->SetPatience(patience);
        m_patience = patience;
    };
    const auto locked = [this](auto read) {
        return [this, read] {
            const std::lock_guard lock(m_settings);
            return static_cast<int64_t>(read());
        };
    };
    registers.AddInteger(
        0x03D0, 8, locked([this] { return m_patience.timeout.count(); }),
        [setPatience](int64_t value) { setPatience(&CommandPatience::timeout, value); });
    registers.AddInteger(
        0x03D8, 8, locked([this] { return m_patience.retries; }),
        [setPatience](int64_t value) { setPatience(&CommandPatience::retries, value); });
    registers.AddInteger(0x03E0, 8, locked([this] { return m_isLegacy ? 0 : 1; }),
                         [this](int64_t value) {
                             const std::lock_guard lock(m_settings);
                             m_backend->SetLegacyEndianess(value == 0);
                             m_isLegacy = value == 0;
                         });
}

}  // namespace OvProducer
