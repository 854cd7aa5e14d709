#pragma once
/// A virtual camera whose frames come to a socket of this machine, without control.

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "gige/protocol/GvspBlock.h"
#include "simulator/device/CameraDevice.h"
#include "simulator/stream/StreamSender.h"

namespace OvSimulator {

class StreamTest : public testing::Test {
protected:
    static constexpr OvGige::Ipv4 kHere{0x7F000001};
    static constexpr size_t kBufferSize = 4 << 20;

    StreamTest() {
        m_host.SetReceiveBuffer(kBufferSize);
        m_host.Bind({kHere, 0});
        Misbehave({});
        m_setup.destination = m_host.Local();
        m_setup.packetSize = 1500;
        m_device.Camera().Change(true, [](OvVirtual::CameraSettings& settings) {
            settings.width = 64;
            settings.height = 64;
            settings.acquisitionMode = static_cast<int64_t>(OvVirtual::AcquisitionMode::MultiFrame);
            settings.frameRateMode = 0;
            settings.exposure = 40;
        });
    }

    /// Makes the camera anew, with these faults.
    void Misbehave(const Faults& faults) {
        m_sender.reset();
        m_sender.emplace(m_device.Camera(), faults, m_account);
        m_sourcePort = m_sender->Occupy(kHere);
    }

    /// Lets the camera send that many frames.
    void Run(int64_t frames) {
        m_sender->Configure(m_setup);
        m_device.Camera().Change(
            true, [frames](OvVirtual::CameraSettings& settings) { settings.frameCount = frames; });
        m_device.Camera().Start();
    }

    OvGige::Datagram Receive() {
        return m_host.Receive(Clock::now() + std::chrono::seconds(20)).value();
    }
    /// Packets up to the trailer of the block that is numbered so.
    std::vector<OvGige::Bytes> ReceiveUpTo(uint64_t lastBlock) {
        std::vector<OvGige::Bytes> packets;
        for (;;) {
            packets.push_back(Receive().bytes);
            const auto header = OvGige::ParseStreamHeader(packets.back());
            if (header && header->format == OvGige::PacketFormat::Trailer &&
                header->blockId == lastBlock) {
                return packets;
            }
        }
    }

    Account m_account;
    CameraDevice m_device{MakeProfile(1, {.ip = kHere, .mask = {0xFF000000}, .gateway = {}}, 0)};
    StreamSetup m_setup;
    OvGige::UdpSocket m_host;
    std::optional<StreamSender> m_sender;
    uint16_t m_sourcePort = 0;
};

}  // namespace OvSimulator
