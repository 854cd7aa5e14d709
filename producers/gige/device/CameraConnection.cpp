#include "gige/device/CameraConnection.h"

#include "gige/protocol/Bootstrap.h"

namespace OvGige {
namespace {

using namespace std::chrono_literals;

/// A camera that has just answered a search answers at once; one that has gone since then
/// shall not be waited for long.
constexpr Patience kFirstContact{.timeout = 300ms, .tries = 2};
constexpr Patience kLastContact{.timeout = 200ms, .tries = 1};

constexpr uint16_t kFirstRequest = 1;

struct OfferedSetting {
    uint32_t offer;
    uint32_t setting;
};

/// What a camera does better once it is told that its host understands it.
constexpr OfferedSetting kSettings[] = {
    {kOffersPending, kConfigPending},
    {kOffersExtendedStatus1, kConfigExtendedStatus1},
    {kOffersExtendedStatus2, kConfigExtendedStatus2},
};

}  // namespace

CameraConnection::CameraConnection(std::unique_ptr<DatagramLink> link, ConnectionOptions options)
    : m_options(std::move(options)), m_channel(std::move(link), kFirstRequest) {
    m_channel.SetPatience(kFirstContact);
    const bool isReadable = ReadCapability();
    TakeAccess(m_memory, m_options.access, m_options.isAbandoned, m_options.pause);
    m_channel.SetPatience(m_options.patience);
    const bool isOwner = m_options.access != Access::ReadOnly;
    try {
        if (!isReadable) {
            m_memory.SetCapability(m_memory.ReadRegister(kRegControlCapability));
        }
        if (isOwner) {
            Configure();
        }
        m_heartbeat = std::make_unique<Heartbeat>(m_memory, isOwner,
                                                  [this](const std::string& why) { Lose(why); });
    } catch (...) {
        if (isOwner) {
            ReleaseAccess(m_memory);
        }
        throw;
    }
}

// The heartbeat's command must not be waited for: the camera may have just fallen silent.
void CameraConnection::Close() {
    {
        const std::lock_guard lock(m_closing);
        if (!m_heartbeat) {
            return;  // closed already
        }
        m_channel.Abandon();
        m_heartbeat.reset();
    }
    if (m_options.access != Access::ReadOnly && !IsLost()) {
        m_channel.SetPatience(kLastContact);
        m_channel.Resume();
        ReleaseAccess(m_memory);
        m_channel.Abandon();
    }
}

// A camera that another host has for itself may let nobody read more than who that is.
bool CameraConnection::ReadCapability() {
    try {
        m_memory.SetCapability(m_memory.ReadRegister(kRegControlCapability));
        return true;
    } catch (const Refusal& refusal) {
        if (refusal.GetStatus() != Status::AccessDenied) {
            throw;
        }
        m_memory.SetCapability(kOffersOwner);
        return false;
    }
}

// The settings of the host before may still be there, a heartbeat that is switched off among
// them: then nobody would notice that this host has gone.
void CameraConnection::Configure() {
    uint32_t config = m_memory.ReadRegister(kRegControlConfig);
    const uint32_t before = config;
    for (const OfferedSetting& row : kSettings) {
        if ((m_memory.Capability() & row.offer) != 0) {
            config |= row.setting;
        }
    }
    config &= ~kConfigHeartbeatOff;
    if (config != before) {
        m_memory.WriteRegister(kRegControlConfig, config);
    }
}

uint64_t CameraConnection::TickFrequency() {
    const uint64_t high = m_memory.ReadRegister(kRegTickFrequencyHigh);
    return high << 32 | m_memory.ReadRegister(kRegTickFrequencyLow);
}

void CameraConnection::CheckUsable() const {
    const std::lock_guard lock(m_mutex);
    if (!m_loss.empty()) {
        throw OvProducer::Failure(GenTL::GC_ERR_CUSTOM_ID, m_loss);
    }
}

void CameraConnection::FollowHeartbeatTimeout() {
    const std::lock_guard lock(m_closing);
    if (m_heartbeat) {
        m_heartbeat->BeatNow();
    }
}

void CameraConnection::Lose(const std::string& why) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_loss.empty()) {
            return;
        }
        m_loss = why;
    }
    m_channel.Abandon();
    m_options.onLoss();
}

bool CameraConnection::IsLost() const {
    const std::lock_guard lock(m_mutex);
    return !m_loss.empty();
}

}  // namespace OvGige
