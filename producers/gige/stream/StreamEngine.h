#pragma once
/// Fills a stream's buffers with a camera's blocks.

#include <memory>
#include <optional>
#include <string>

#include "framework/FrameEngine.h"
#include "gige/assembly/BlockAssembler.h"
#include "gige/net/FirewallHole.h"
#include "gige/net/UdpSocket.h"
#include "gige/net/WakeFile.h"
#include "gige/stream/StreamChannel.h"
#include "gige/stream/StreamHost.h"
#include "gige/stream/StreamSettings.h"

namespace OvGige {

/// What the engine shares with the stream's registers.
class StreamState {
public:
    virtual ~StreamState() = default;
    virtual StreamSettings Settings() const = 0;
    virtual void SetFacts(const ReceiverFacts& facts) = 0;
    virtual StreamAccount& Account() = 0;
};

class StreamEngine : public OvProducer::FrameEngine {
public:
    /// Both must outlive the engine.
    StreamEngine(StreamHost& host, StreamState& state);
    ~StreamEngine() override;

    /// Opens the camera's stream channel; a reader joins a channel that is sent to a group. The
    /// camera isn't asked for anything after that: it may be lost at any time.
    void Begin() override;
    void Run(OvProducer::BufferPool& pool, const OvProducer::EngineRun& run) override;
    /// Closes the channel.
    void End() noexcept override;

private:
    void OpenAsOwner(const Adapter& adapter);
    void JoinAsReader(const Adapter& adapter);
    void SizeSocket();
    size_t NegotiatePacketSize(const Adapter& adapter);
    AssemblerSettings MakeSettings() const;
    void TuneThread() const;
    void KeepFirewallOpen();

    StreamHost& m_host;
    StreamState& m_state;
    StreamSettings m_settings;
    ReceiverFacts m_facts;
    AssemblerSettings m_assembly;
    Endpoint m_camera;
    WakeFile m_wake;
    std::optional<UdpSocket> m_socket;
    std::optional<StreamChannel> m_channel;
    FirewallHole m_hole;
};

}  // namespace OvGige
