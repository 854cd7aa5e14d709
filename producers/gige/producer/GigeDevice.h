#pragma once
/// A camera of an adapter.

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "framework/Backend.h"
#include "gige/message/MessageReceiver.h"
#include "gige/producer/CameraContact.h"
#include "gige/producer/CameraPort.h"
#include "gige/producer/IpSettings.h"
#include "gige/stream/CameraStream.h"

namespace OvGige {

/// Its ID is the MAC address, which no other camera has.
class GigeDevice : public OvProducer::DeviceBackend,
                   public StreamHost,
                   public std::enable_shared_from_this<GigeDevice> {
public:
    GigeDevice(const Adapter& adapter, const FoundCamera& camera);

    /// Takes over what the camera and its adapter are now. A connection stays as it is.
    void SetCamera(const Adapter& adapter, const FoundCamera& camera);
    FoundCamera Camera() const;
    /// Whether it is open and answers.
    bool IsConnected() const;
    /// @throws OvProducer::Failure GC_ERR_ACCESS_DENIED if it is open
    void RequireClosed() const;

    /// Changes that need control of the camera, which is taken for them unless it is open.
    ///@{
    void Configure(const IpSettings& settings);
    /// Resets the camera by the command of its description.
    /// @throws OvProducer::Failure GC_ERR_NOT_IMPLEMENTED if the description has none that can be
    ///         understood without evaluating it
    void Reset();
    ///@}

    OvProducer::DeviceFacts Facts() override;
    void Open(GenTL::DEVICE_ACCESS_FLAGS flags, std::weak_ptr<OvProducer::EventSink> sink) override;
    void Close() override;
    bool OffersEvent(GenTL::EVENT_TYPE type) override;
    std::unique_ptr<OvProducer::Port> MakeRemotePort() override;
    std::vector<std::shared_ptr<OvProducer::StreamBackend>> Streams() override;
    OvProducer::CommandPatience InitialPatience() override;
    void SetPatience(const OvProducer::CommandPatience& patience) override;
    void SetLegacyEndianess(bool isLegacy) override;
    void AddRegisters(OvProducer::RegisterSpace& registers) override;

    void CheckUsable() override;
    CameraMemory& Memory() override;
    Endpoint CameraEndpoint() override;
    Adapter HostAdapter() override;
    uint64_t TickFrequency() override;
    bool IsWritable() override;
    bool IsPacketSizeChosen() override;

private:
    /// What there is while the camera is open.
    struct Session {
        Adapter adapter;
        Endpoint endpoint;
        bool isWritable = false;
        uint64_t tickFrequency = 0;
        std::shared_ptr<CameraConnection> connection;
        std::unique_ptr<AdapterWatch> watch;
        /// Signalled once the camera is closed or lost.
        std::shared_ptr<const WakeFile> end = std::make_shared<const WakeFile>();
        std::unique_ptr<MessageReceiver> messages;  ///< null if the camera sends none to this host
        std::shared_ptr<PortState> port = std::make_shared<PortState>();
    };

    static std::unique_ptr<MessageReceiver> OpenMessages(const Session& session,
                                                         std::weak_ptr<OvProducer::EventSink> sink);
    std::shared_ptr<Session> FindSession() const;
    /// @throws OvProducer::Failure GC_ERR_INVALID_HANDLE if the camera is closed
    std::shared_ptr<Session> GetSession() const;
    std::shared_ptr<CameraConnection> ConnectForWriting() const;
    OvProducer::PortFacts PortFactsOf() const;

    CameraStream m_stream{*this};
    mutable std::mutex m_mutex;  // guards what follows
    Adapter m_adapter;
    FoundCamera m_camera;
    std::shared_ptr<Session> m_session;  // null while the camera is closed
};

}  // namespace OvGige
