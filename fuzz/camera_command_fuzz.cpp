// Packets from several hosts to a simulated camera, one after the other. The input is a row of
// records: whose packet it is, how much time has passed before it, its length, its bytes.

#include <cstdint>
#include <span>

#include "Base/OvAssert.h"
#include "gige/protocol/ControlPacket.h"
#include "record_fuzz.h"
#include "simulator/control/CommandServer.h"
#include "simulator/stream/StreamRegisters.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

constexpr uint8_t kBroadcast = 0x80;
constexpr std::chrono::milliseconds kTimeUnit{50};
// An answer fits a datagram that nobody splits.
constexpr size_t kAnswerMax = 548;

constexpr IpAddresses kCamera{.ip = {0xC0A80702}, .mask = {0xFFFFFF00}, .gateway = {}};

class AnyPlace : public NetworkPlace {
public:
    bool Move(const IpAddresses& addresses) override {
        OV_ASSERT(IsContiguousMask(addresses.mask));
        return true;
    }
    void Resend(const ResendRequest&, bool) override {}
};

class Camera {
public:
    Camera() {
        ConnectStreamRegisters(
            m_device.Bootstrap(), [](const StreamSetup&) {}, [] {});
    }

    void Take(uint8_t sender, uint8_t delay, ByteView packet) {
        m_now += delay * kTimeUnit;
        m_server.Expire(m_now);
        // Hosts in the camera's subnet and outside of it.
        const Endpoint host{{kCamera.ip.value + (sender & 1U) + ((sender & 2U) << 16)}, 40000};
        const Arrival arrival{
            .sender = host, .wasBroadcast = (sender & kBroadcast) != 0, .packet = packet};
        for (const Reply& reply : m_server.Handle(arrival, m_now)) {
            OV_ASSERT(reply.packet.size() <= kAnswerMax);
            OV_ASSERT(ParseAnswer(reply.packet));
        }
    }

    /// Nobody writes without having control.
    void Check() {
        const BootstrapRegisters& registers = m_device.Bootstrap();
        if (m_account[Count::ControlTaken] == 0) {
            OV_ASSERT(registers.Get(kRegPersistentIp) == 0);
            OV_ASSERT(registers.Get(kRegPrivilege) == 0);
            OV_ASSERT(registers.Get(kRegStreamPort) == 0);
            OV_ASSERT(m_device.Camera().UserId().empty());
            OV_ASSERT(m_device.Camera().Settings().width == OvVirtual::kFullWidth);
            OV_ASSERT(!m_device.Camera().IsAcquiring());
        }
    }

private:
    static CameraProfile Profile() {
        CameraProfile profile = MakeProfile(0, kCamera, kControlPort);
        profile.zipped = false;
        profile.mac = MacAddress::Of(0x020000000001);  // which a seed names
        return profile;
    }

    Account m_account;
    CameraDevice m_device{Profile()};
    AnyPlace m_place;
    CommandServer m_server{m_device, ControlFaults(), m_place, m_account};
    OvSimulator::Clock::time_point m_now;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Camera camera;
    ForEachRecord(data, size, [&camera](uint8_t first, uint8_t second, auto content) {
        camera.Take(first, second, content);
    });
    camera.Check();
    return 0;
}
