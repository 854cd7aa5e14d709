#include "gige/producer/GigeDevice.h"

#include <algorithm>
#include <utility>

#include "framework/Failure.h"
#include "gige/device/ResetCommand.h"
#include "gige/message/MessageChannel.h"
#include "gige/message/MessageFeatures.h"
#include "gige/net/CameraSocket.h"
#include "gige/protocol/Bootstrap.h"

namespace OvGige {
namespace {

using OvProducer::Failure;

Access AccessOf(GenTL::DEVICE_ACCESS_FLAGS flags) {
    switch (flags) {
        case GenTL::DEVICE_ACCESS_READONLY:
            return Access::ReadOnly;
        case GenTL::DEVICE_ACCESS_EXCLUSIVE:
            return Access::Exclusive;
        default:
            return Access::Control;
    }
}

/// What this process could open a camera for that it hasn't opened.
GenTL::DEVICE_ACCESS_STATUS StatusOf(CameraUse use) {
    switch (use) {
        case CameraUse::Free:
            return GenTL::DEVICE_ACCESS_STATUS_READWRITE;
        case CameraUse::Controlled:
            return GenTL::DEVICE_ACCESS_STATUS_READONLY;
        case CameraUse::Exclusive:
            return GenTL::DEVICE_ACCESS_STATUS_NOACCESS;
        default:
            return GenTL::DEVICE_ACCESS_STATUS_UNKNOWN;
    }
}

/// Cameras without a clock may lack the register, too.
uint64_t TickFrequencyOf(CameraConnection& connection) {
    try {
        return connection.TickFrequency();
    } catch (const Refusal&) {
        return 0;
    }
}

OvProducer::NetworkAddress AddressOf(const Identity& identity) {
    return {.mac = static_cast<int64_t>(identity.mac.Value()),
            .ip = identity.ip.value,
            .mask = identity.mask.value,
            .gateway = identity.gateway.value};
}

}  // namespace

GigeDevice::GigeDevice(const Adapter& adapter, const FoundCamera& camera)
    : m_adapter(adapter), m_camera(camera) {}

void GigeDevice::SetCamera(const Adapter& adapter, const FoundCamera& camera) {
    const std::lock_guard lock(m_mutex);
    m_adapter = adapter;
    m_camera = camera;
}

FoundCamera GigeDevice::Camera() const {
    const std::lock_guard lock(m_mutex);
    return m_camera;
}

bool GigeDevice::IsConnected() const {
    const auto session = FindSession();
    return session && !session->connection->IsLost();
}

void GigeDevice::RequireClosed() const {
    if (FindSession()) {
        throw Failure(GenTL::GC_ERR_ACCESS_DENIED,
                      "The camera is open in this process, and keeps its address until it is "
                      "closed");
    }
}

void GigeDevice::Configure(const IpSettings& settings) {
    WriteIpSettings(ConnectForWriting()->Memory(), settings);
}

void GigeDevice::Reset() {
    const auto connection = ConnectForWriting();
    const auto port = MakeCameraPort(PortFactsOf(), connection, std::make_shared<PortState>());
    SendReset(connection->Memory(), *port);
}

OvProducer::DeviceFacts GigeDevice::Facts() {
    const FoundCamera camera = Camera();
    const Identity& identity = camera.identity;
    const auto session = FindSession();
    const std::string mac = TextOf(identity.mac);
    OvProducer::DeviceFacts facts;
    facts.id = mac;
    facts.vendor = identity.vendor;
    facts.model = identity.model;
    facts.tlType = GenTL::TLTYPE_GEV;
    facts.displayName =
        identity.model + " (" + (identity.serialNumber.empty() ? mac : identity.serialNumber) + ")";
    facts.userId = identity.userName;
    facts.serialNumber = identity.serialNumber;
    facts.version = identity.deviceVersion;
    facts.timestampFrequency = session ? session->tickFrequency : 0;
    facts.accessStatus = !session              ? StatusOf(camera.use)
                         : session->isWritable ? GenTL::DEVICE_ACCESS_STATUS_OPEN_READWRITE
                                               : GenTL::DEVICE_ACCESS_STATUS_OPEN_READONLY;
    facts.address = AddressOf(identity);
    return facts;
}

void GigeDevice::Open(GenTL::DEVICE_ACCESS_FLAGS flags, std::weak_ptr<OvProducer::EventSink> sink) {
    auto session = std::make_shared<Session>();
    FoundCamera camera;
    {
        const std::lock_guard lock(m_mutex);
        session->adapter = m_adapter;
        camera = m_camera;
    }
    session->endpoint = camera.endpoint;
    session->isWritable = flags != GenTL::DEVICE_ACCESS_READONLY;
    session->connection =
        ConnectTo(session->adapter, camera, AccessOf(flags), [sink, end = session->end] {
            end->Signal();
            if (const auto device = sink.lock()) {
                device->Post(GenTL::EVENT_DEVICE_OFFLINE, {});
            }
        });
    session->tickFrequency = TickFrequencyOf(*session->connection);
    session->watch = WatchAdapter(session->adapter, session->connection);
    session->messages = OpenMessages(*session, std::move(sink));
    const std::lock_guard lock(m_mutex);
    m_session = std::move(session);
}

// A camera without events is still a camera. One that was opened for reading sends its events to
// its owner.
std::unique_ptr<MessageReceiver> GigeDevice::OpenMessages(
    const Session& session, std::weak_ptr<OvProducer::EventSink> sink) {
    try {
        MessageChannel channel(session.connection->Memory());
        if (!session.isWritable || !channel.IsThere()) {
            return nullptr;
        }
        UdpSocket socket = MakeCameraSocket(session.adapter);
        const Endpoint destination = socket.Local();
        auto receiver = std::make_unique<MessageReceiver>(
            std::move(socket), Endpoint{session.endpoint.ip, channel.SourcePort()}, std::move(sink),
            session.end);
        channel.Open(destination);
        return receiver;
    } catch (const Failure& failure) {
        OvProducer::LogWarning(std::string("The camera sends no events: ") + failure.what());
        return nullptr;
    }
}

// Calls of other threads may still have the session; what they do fails once the connection is
// closed.
void GigeDevice::Close() {
    std::shared_ptr<Session> session;
    {
        const std::lock_guard lock(m_mutex);
        session = std::exchange(m_session, nullptr);
    }
    if (session) {
        session->watch.reset();
        if (session->messages) {
            session->messages->Stop();
        }
        session->connection->Close();
    }
}

bool GigeDevice::OffersEvent(GenTL::EVENT_TYPE type) {
    const auto session = FindSession();
    return type == GenTL::EVENT_DEVICE_OFFLINE ||
           (type == GenTL::EVENT_REMOTE_DEVICE && session && session->messages);
}

std::unique_ptr<OvProducer::Port> GigeDevice::MakeRemotePort() {
    const auto session = GetSession();
    return MakeCameraPort(PortFactsOf(), session->connection, session->port);
}

std::vector<std::shared_ptr<OvProducer::StreamBackend>> GigeDevice::Streams() {
    // The stream needs the camera, so whoever has the one keeps the other.
    return {std::shared_ptr<OvProducer::StreamBackend>(shared_from_this(), &m_stream)};
}

OvProducer::CommandPatience GigeDevice::InitialPatience() {
    return {.timeout = kUsualPatience.timeout, .retries = kUsualPatience.tries - 1};
}

void GigeDevice::SetPatience(const OvProducer::CommandPatience& patience) {
    GetSession()->connection->SetPatience(
        {.timeout = patience.timeout, .tries = static_cast<int>(patience.retries) + 1});
}

void GigeDevice::SetLegacyEndianess(bool isLegacy) {
    GetSession()->port->isLegacy = isLegacy;
}

void GigeDevice::AddRegisters(OvProducer::RegisterSpace& registers) {
    AddMessageRegisters(registers, [this](const MessageFeature& feature) {
        const auto session = FindSession();
        return session && session->messages ? (session->messages->Account().*feature.count).load()
                                            : uint64_t{0};
    });
}

void GigeDevice::CheckUsable() {
    GetSession()->connection->CheckUsable();
}

CameraMemory& GigeDevice::Memory() {
    return GetSession()->connection->Memory();
}

Endpoint GigeDevice::CameraEndpoint() {
    return GetSession()->endpoint;
}

Adapter GigeDevice::HostAdapter() {
    return GetSession()->adapter;
}

uint64_t GigeDevice::TickFrequency() {
    return GetSession()->tickFrequency;
}

bool GigeDevice::IsWritable() {
    return GetSession()->isWritable;
}

bool GigeDevice::IsPacketSizeChosen() {
    return GetSession()->port->isPacketSizeChosen;
}

std::shared_ptr<GigeDevice::Session> GigeDevice::FindSession() const {
    const std::lock_guard lock(m_mutex);
    return m_session;
}

std::shared_ptr<GigeDevice::Session> GigeDevice::GetSession() const {
    if (auto session = FindSession()) {
        return session;
    }
    throw Failure(GenTL::GC_ERR_INVALID_HANDLE, "The camera is closed");
}

std::shared_ptr<CameraConnection> GigeDevice::ConnectForWriting() const {
    if (const auto session = FindSession()) {
        if (!session->isWritable) {
            throw Failure(GenTL::GC_ERR_ACCESS_DENIED,
                          "The camera is open in this process for reading only");
        }
        session->connection->CheckUsable();
        return session->connection;
    }
    std::unique_lock lock(m_mutex);
    const Adapter adapter = m_adapter;
    const FoundCamera camera = m_camera;
    lock.unlock();
    return ConnectTo(adapter, camera, Access::Control, [] {});
}

OvProducer::PortFacts GigeDevice::PortFactsOf() const {
    const Identity identity = Camera().identity;
    return {.id = TextOf(identity.mac),
            .vendor = identity.vendor,
            .model = identity.model,
            .tlType = GenTL::TLTYPE_GEV,
            .module = "Device",
            .version = identity.deviceVersion,
            .name = "Device",
            .isBigEndian = (identity.deviceMode & kModeBigEndian) != 0};
}

}  // namespace OvGige
