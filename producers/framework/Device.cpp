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

}  // namespace

InfoValue DeviceInfo(const DeviceFacts& facts, GenTL::DEVICE_INFO_CMD command) {
    return AnswerFrom(kDeviceRows, command, facts);
}

std::shared_ptr<Device> Device::Open(Session& session, std::weak_ptr<Interface> parent,
                                     const std::shared_ptr<DeviceBackend>& backend,
                                     GenTL::DEVICE_ACCESS_FLAGS flags) {
    auto device = std::make_shared<Device>(session, std::move(parent), backend);
    backend->Open(flags, device);
    std::unique_ptr<Port> remote = backend->MakeRemotePort();
    if (flags == GenTL::DEVICE_ACCESS_READONLY) {
        remote->MakeReadOnly();
    }
    device->m_remote = std::make_shared<RemoteDevice>(std::move(remote));
    session.handles.Add(device->m_remote);
    session.handles.Add(device);
    return device;
}

Device::Device(Session& session, std::weak_ptr<Interface> parent,
               std::shared_ptr<DeviceBackend> backend)
    : Module(session, PortFactsOf(backend->Facts())),
      m_parent(std::move(parent)),
      m_backend(std::move(backend)) {
    m_streams.Update(m_backend->Streams());
    AddRegisters();
    AddSettingRegisters();
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
        GetSession().handles.Add(stream);
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

void Device::AddSettingRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    registers.AddInteger(
        0x03C0, 8, [this] { return m_streams.Selected(); },
        [this](int64_t index) { m_streams.Select(index); });
    registers.AddInteger(0x03C8, 8, [this] { return m_streams.LastIndex(); });
    registers.AddInteger(
        0x03D0, 8, [this] { return m_commandTimeout.load(); },
        [this](int64_t value) { m_commandTimeout = value; });
    registers.AddInteger(
        0x03D8, 8, [this] { return m_commandRetries.load(); },
        [this](int64_t value) { m_commandRetries = value; });
    registers.AddText(0x0400, 128, [this] { return m_streams.SelectedBackend()->Facts().id; });
}

}  // namespace OvProducer
