#pragma once
/// The stream of a network camera, as the framework sees it.

#include <memory>
#include <mutex>

#include "framework/Backend.h"
#include "gige/stream/StreamEngine.h"

namespace OvGige {

class CameraStream : public OvProducer::StreamBackend, private StreamState {
public:
    /// The host must outlive the stream.
    explicit CameraStream(StreamHost& host) : m_host(host) {}

    OvProducer::StreamFacts Facts() override;
    std::unique_ptr<OvProducer::FrameEngine> MakeEngine() override;
    void CheckUsable() override { m_host.CheckUsable(); }
    /// No frame comes from a camera that is gone.
    void CheckAfterTimeout() override { m_host.CheckUsable(); }
    void AddRegisters(OvProducer::RegisterSpace& registers) override;

private:
    StreamSettings Settings() const override;
    void SetFacts(const ReceiverFacts& facts) override;
    StreamAccount& Account() override { return m_account; }

    StreamHost& m_host;
    mutable std::mutex m_mutex;  // guards settings and facts
    StreamSettings m_settings;
    ReceiverFacts m_facts;
    StreamAccount m_account;
};

}  // namespace OvGige
