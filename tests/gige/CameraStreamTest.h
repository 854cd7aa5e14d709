#pragma once
/// A stream on the loopback adapter with the framework's parts around it.

#include <gtest/gtest.h>

#include <cstring>

#include "StreamFeatureAddress.h"
#include "StreamStage.h"
#include "framework/Acquisition.h"

namespace OvTest {

/// Longer than anything takes that a test waits for.
inline constexpr uint64_t kLongMs = 10'000;

class CameraStreams : public testing::Test {
protected:
    CameraStreams() { host.camera[OvGige::kRegStreamPacketSize] = kPacketSize; }
    ~CameraStreams() override { acquisition.Halt(true); }

    void Announce(int count, size_t size = 3 * kData) {
        for (int i = 0; i < count; ++i) {
            auto buffer = pool.MakeBuffer(nullptr, size, nullptr);
            handles.Add(buffer);
            pool.Announce(buffer, this);
            pool.Queue(buffer->Handle());
            buffers.push_back(std::move(buffer));
        }
    }
    void Send(const OvGige::StreamHeader& header, ByteView payload) {
        Bytes packet(header.Size());
        OvGige::WriteStreamHeader(packet, header);
        OvGige::Append(packet, payload);
        host.sender.SendTo(DestinationOf(host), packet);
    }
    void SendLeader(uint64_t block, uint64_t packets) {
        OvGige::BlockLeader leader;
        leader.payloadType = static_cast<uint16_t>(OvGige::PayloadType::Raw);
        leader.timestamp = block;
        leader.size = packets * kData;
        Send({.format = OvGige::PacketFormat::Leader, .blockId = block},
             OvGige::BuildLeader(leader));
    }
    void SendData(uint64_t block, uint32_t id) {
        Send({.format = OvGige::PacketFormat::Data, .blockId = block, .packetId = id},
             Bytes(kData, static_cast<std::byte>(block * 16 + id)));
    }
    void SendTrailer(uint64_t block, uint32_t id) {
        Send(
            {.format = OvGige::PacketFormat::Trailer, .blockId = block, .packetId = id},
            OvGige::BuildTrailer({.payloadType = static_cast<uint16_t>(OvGige::PayloadType::Raw)}));
    }
    void SendBlock(uint64_t block, uint32_t packets = 3) {
        SendLeader(block, packets);
        for (uint32_t id = 1; id <= packets; ++id) {
            SendData(block, id);
        }
        SendTrailer(block, packets + 1);
    }
    /// Waits for the next delivered buffer.
    std::shared_ptr<OvProducer::Buffer> Next(uint64_t timeout = kLongMs) {
        GenTL::S_EVENT_NEW_BUFFER data{};
        size_t size = sizeof data;
        event->GetData(&data, &size, timeout);
        return handles.Get<OvProducer::Buffer>(data.BufferHandle);
    }
    uint64_t Counter(const std::string& name) {
        std::array<std::byte, 8> bytes{};
        registers.Read(StreamFeatureAddress(name), bytes);
        uint64_t value = 0;
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }
    void Set(const std::string& name, int64_t value) {
        registers.Write(StreamFeatureAddress(name), std::as_bytes(std::span(&value, 1)));
    }

    static constexpr size_t kData = 64;
    static constexpr size_t kPacketSize =
        kData + OvGige::kIpUdpHeaderSize + OvGige::kStreamHeaderSize;

    StageHost host;
    OvGige::CameraStream stream{host};
    OvProducer::HandleTable handles;
    OvProducer::BufferPool pool{GenTL::TLTYPE_GEV};
    std::shared_ptr<OvProducer::Event> event =
        pool.MakeEvent([this] { stream.CheckAfterTimeout(); });
    OvProducer::RegisterSpace registers = MakeRegisters();
    std::unique_ptr<OvProducer::FrameEngine> engine = stream.MakeEngine();
    OvProducer::Acquisition acquisition{pool, *engine};
    std::vector<std::shared_ptr<OvProducer::Buffer>> buffers;

private:
    OvProducer::RegisterSpace MakeRegisters() {
        OvProducer::RegisterSpace space;
        stream.AddRegisters(space);
        return space;
    }
};

}  // namespace OvTest
