#pragma once
/// An open camera on this machine's loopback: its registers answer a script, and a test sends
/// its packets.

#include <memory>
#include <stop_token>
#include <thread>

#include "BlockStation.h"
#include "LoopbackSocket.h"
#include "ScriptedCamera.h"
#include "framework/Handles.h"
#include "gige/control/ControlChannel.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/stream/CameraStream.h"

namespace OvTest {

class StageHost : public OvGige::StreamHost {
public:
    StageHost() { memory.SetCapability(OvGige::kOffersResend); }

    void CheckUsable() override {
        if (isGone) {
            throw OvProducer::Failure(GenTL::GC_ERR_CUSTOM_ID, "The camera is gone");
        }
    }
    OvGige::CameraMemory& Memory() override { return memory; }
    OvGige::Endpoint CameraEndpoint() override { return sender.Local(); }
    OvGige::Adapter HostAdapter() override {
        OvGige::Adapter adapter;
        adapter.name = "lo";
        adapter.index = 1;
        adapter.ip = kLoopback;
        adapter.isLoopback = true;
        return adapter;
    }
    uint64_t TickFrequency() override { return 1'000'000'000; }
    bool IsWritable() override { return isWritable; }
    bool IsPacketSizeChosen() override { return isSizeChosen; }

    ScriptedCamera camera;
    OvGige::ControlChannel channel{camera.Link(), 1};
    OvGige::CameraMemory memory{channel};
    OvGige::UdpSocket sender = LoopbackSocket();
    std::atomic<bool> isGone = false;
    bool isWritable = true;
    bool isSizeChosen = true;
};

/// Where the camera was told to send.
inline OvGige::Endpoint DestinationOf(StageHost& host) {
    return {{host.camera[OvGige::kRegStreamDestination]},
            static_cast<uint16_t>(host.camera[OvGige::kRegStreamPort])};
}

}  // namespace OvTest
