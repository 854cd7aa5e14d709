#include "gige/stream/StreamChannel.h"

#include "gige/protocol/Bootstrap.h"

namespace OvGige {

void StreamChannel::Open(const Endpoint& destination) {
    m_camera.WriteRegister(kRegStreamPort, 0);
    m_camera.WriteRegister(kRegStreamDestination, destination.ip.value);
    // An earlier user may have switched to a form that isn't understood here.
    if (const uint32_t switches = m_camera.ReadRegisterIfThere(kRegStreamSwitches);
        (switches & kStreamSwitchGenDc) != 0) {
        m_camera.WriteRegister(kRegStreamSwitches, switches & ~kStreamSwitchGenDc);
    }
    m_camera.WriteRegister(kRegStreamPort, destination.port);
    m_isOpen = true;
}

void StreamChannel::Close() noexcept {
    if (!m_isOpen) {
        return;
    }
    m_isOpen = false;
    try {
        m_camera.WriteRegister(kRegStreamPort, 0);
    } catch (const OvProducer::Failure&) {
        // The camera is gone, or somebody else's: it sends nothing to this host any more.
    }
}

size_t StreamChannel::PacketSize() const {
    return m_camera.ReadRegister(kRegStreamPacketSize) & kPacketSizeMask;
}

size_t StreamChannel::SetPacketSize(size_t size) {
    const uint32_t flags = m_camera.ReadRegister(kRegStreamPacketSize) & kPacketSizeDontFragment;
    m_camera.WriteRegister(kRegStreamPacketSize, flags | static_cast<uint32_t>(size));
    return PacketSize();
}

std::optional<size_t> StreamChannel::FireTestPacket(size_t size) {
    try {
        m_camera.WriteRegister(kRegStreamPacketSize, kPacketSizeFireTest | kPacketSizeDontFragment |
                                                         static_cast<uint32_t>(size));
        return PacketSize();
    } catch (const Refusal&) {
        return {};
    }
}

uint16_t StreamChannel::SourcePort() const {
    const bool isOffered =
        (m_camera.ReadRegisterIfThere(kRegStreamCapability) & kOffersStreamSourcePort) != 0;
    return isOffered ? static_cast<uint16_t>(m_camera.ReadRegisterIfThere(kRegStreamSourcePort) &
                                             kStreamPortMask)
                     : uint16_t{0};
}

Endpoint StreamChannel::Destination() const {
    return {{m_camera.ReadRegister(kRegStreamDestination)},
            static_cast<uint16_t>(m_camera.ReadRegister(kRegStreamPort) & kStreamPortMask)};
}

}  // namespace OvGige
