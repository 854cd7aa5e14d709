#include "gige/producer/CameraPort.h"

#include "framework/Failure.h"
#include "gige/device/CameraDescription.h"
#include "gige/device/CameraRange.h"
#include "gige/protocol/Bootstrap.h"

namespace OvGige {
namespace {

constexpr size_t kNumberSize = 4;

/// An open camera's addresses. Keeps the connection for as long as a call uses them.
class ConnectedRange : public CameraRange {
public:
    ConnectedRange(std::shared_ptr<CameraConnection> connection, std::shared_ptr<PortState> state)
        : CameraRange(connection->Memory()),
          m_connection(std::move(connection)),
          m_state(std::move(state)) {}

    void Read(size_t offset, std::span<std::byte> out) const override {
        Guarded([&] {
            if (IsLegacyNumber(offset, out.size())) {
                WriteBig(out, Memory().ReadRegister(static_cast<uint32_t>(offset)));
            } else {
                CameraRange::Read(offset, out);
            }
        });
    }

    void Write(size_t offset, std::span<const std::byte> in) override {
        Guarded([&] {
            if (IsLegacyNumber(offset, in.size())) {
                Memory().WriteRegister(static_cast<uint32_t>(offset), ReadBig<uint32_t>(in));
            } else {
                CameraRange::Write(offset, in);
            }
        });
        const auto includes = [offset, &in](uint32_t reg) {
            return offset < reg + kNumberSize && offset + in.size() > reg;
        };
        if (includes(kRegStreamPacketSize)) {
            m_state->isPacketSizeChosen = true;
        }
        if (includes(kRegHeartbeatTimeout)) {
            m_connection->FollowHeartbeatTimeout();
        }
    }

private:
    CameraMemory& Memory() const { return m_connection->Memory(); }

    bool IsLegacyNumber(size_t offset, size_t size) const {
        return m_state->isLegacy && size == kNumberSize && offset % kNumberSize == 0;
    }

    /// What is wrong with an access to a lost camera is that the camera is lost.
    template <typename Access>
    void Guarded(const Access& access) const {
        try {
            access();
        } catch (const OvProducer::Failure&) {
            m_connection->CheckUsable();
            throw;
        }
    }

    const std::shared_ptr<CameraConnection> m_connection;
    const std::shared_ptr<PortState> m_state;
};

}  // namespace

std::unique_ptr<OvProducer::Port> MakeCameraPort(
    const OvProducer::PortFacts& facts, const std::shared_ptr<CameraConnection>& connection,
    const std::shared_ptr<PortState>& state) {
    auto port = std::make_unique<OvProducer::Port>(facts);
    port->Registers().Add(0, std::make_unique<ConnectedRange>(connection, state));
    AddCameraDescription(connection->Memory(), *port);
    port->SetGate([connection] { connection->CheckUsable(); });
    return port;
}

}  // namespace OvGige
