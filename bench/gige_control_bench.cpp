// What the producer of GigE Vision cameras adds to bare exchanges of packets with the same
// cameras: a register, the opening of a camera with a large description, a search for many cameras
// and the report of a lost one. Simulated cameras of this process answer, over the loopback
// adapter. Usage: gige_control_bench

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <string>

#include "GenTLApi.h"
#include "Goals.h"
#include "LoopbackSocket.h"
#include "Measure.h"
#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/ControlPacket.h"
#include "gige/protocol/Registers.h"
#include "simulator/SimulatedCamera.h"

namespace {

using namespace OvGige;
using OvSimulator::SimulatedCamera;
using std::chrono::steady_clock;

constexpr int kRounds = 15;
constexpr uint32_t kSearchTime = 500;
constexpr uint32_t kHeartbeat = 900;
constexpr unsigned kManyCameras = 64;
constexpr size_t kLargeDescription = 500'000;

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "gige_control_bench: %s\n", what.c_str());
    std::exit(1);
}

void Need(bool isSo, const char* what) {
    if (!isSo) {
        Fail(what);
    }
}

template <class Action>
double Microseconds(const Action& action) {
    const auto begin = steady_clock::now();
    action();
    return std::chrono::duration<double, std::micro>(steady_clock::now() - begin).count();
}

/// The bare exchange: a socket, and nothing of a producer.
class BareHost {
public:
    explicit BareHost(const Endpoint& camera) : m_camera(camera) {}

    AnswerPacket Ask(Command command, const Bytes& payload) {
        m_request = NextRequestId(m_request);
        m_socket.SendTo(m_camera, BuildCommand({.flags = kFlagAnswerRequired,
                                                .command = command,
                                                .requestId = m_request,
                                                .payload = payload}));
        m_answer = m_socket.Receive(steady_clock::now() + std::chrono::seconds(5));
        const auto answer = m_answer ? ParseAnswer(m_answer->bytes) : std::nullopt;
        Need(answer && answer->requestId == m_request && answer->status == Status::Success,
             "the camera doesn't answer");
        return *answer;
    }
    void ReadRegister() {
        const uint32_t address = kRegHeartbeatTimeout;
        Ask(Command::ReadRegister, BuildNumbers({&address, 1}));
    }
    void ReadMemory(uint32_t address, size_t size) {
        for (size_t done = 0; done < size; done += kMemoryBlockMax) {
            const size_t count = std::min(kMemoryBlockMax, size - done);
            const MemoryRange range{.address = address + static_cast<uint32_t>(done),
                                    .count = static_cast<uint16_t>((count + 3) / 4 * 4)};
            Ask(Command::ReadMemory, BuildRange(range));
        }
    }

private:
    const Endpoint m_camera;
    UdpSocket m_socket = LoopbackSocket();
    std::optional<Datagram> m_answer;
    uint16_t m_request = 0;
};

/// Simulated cameras, and the producer that knows their addresses.
class Bench {
public:
    explicit Bench(unsigned cameras) {
        std::string addresses;
        for (unsigned i = 0; i < cameras; ++i) {
            OvSimulator::CameraProfile profile = OvSimulator::MakeProfile(
                i, {.ip = kLoopback, .mask = {0xFF000000}, .gateway = {}}, 0);
            profile.zipped = false;
            profile.descriptionSize = cameras == 1 ? kLargeDescription : 0;
            m_cameras.emplace_back(profile);
            addresses += TextOf(m_cameras.back().Address()) + ",";
        }
        setenv("OV_GIGE_ADAPTERS", "lo", 1);
        setenv("OV_GIGE_ADDRESSES", addresses.c_str(), 1);
        m_way.OpenInterface();
    }

    SimulatedCamera& First() { return m_cameras.front(); }
    void SwitchOff() { m_cameras.clear(); }
    const GenTLApi& Api() const { return m_api; }
    OpenCamera& Way() { return m_way; }

    void Search() { Need(m_api.IFUpdateDeviceList(m_way.iface, nullptr, kSearchTime) == 0, "IF"); }
    uint32_t Count() const {
        uint32_t count = 0;
        m_api.IFGetNumDevices(m_way.iface, &count);
        return count;
    }
    void Open() {
        const std::string id = TextOf(First().Profile().mac);
        Need(m_api.IFOpenDevice(m_way.iface, id.c_str(), GenTL::DEVICE_ACCESS_CONTROL,
                                &m_way.device) == 0,
             "the camera can't be opened");
        Need(m_api.DevGetPort(m_way.device, &m_way.port) == 0, "the camera has no port");
    }
    void Close() { Need(m_api.DevClose(m_way.device) == 0, "the camera can't be closed"); }
    uint64_t UrlNumber(GenTL::URL_INFO_CMD command) {
        return GenTLApi::Number<uint64_t>([&](auto* type, void* out, size_t* size) {
            return m_api.GCGetPortURLInfo(m_way.port, 0, command, type, out, size);
        });
    }
    /// The whole description, as the library reads it.
    void ReadDescription() {
        m_description.resize(UrlNumber(GenTL::URL_INFO_FILE_SIZE));
        size_t size = m_description.size();
        const uint64_t address = UrlNumber(GenTL::URL_INFO_FILE_REGISTER_ADDRESS);
        Need(m_api.GCReadPort(m_way.port, address, m_description.data(), &size) == 0,
             "the description can't be read");
    }
    size_t DescriptionSize() const { return m_description.size(); }

private:
    std::list<SimulatedCamera> m_cameras;
    GenTLApi m_api{OV_BENCH_GIGE_PRODUCER};
    OpenCamera m_way{m_api};
    std::string m_description;
};

void MeasureRegister(Goals& goals) {
    constexpr int kReads = 200;
    Bench bench(1);
    bench.Search();
    bench.Open();
    BareHost host(bench.First().Address());
    std::vector<double> bare;
    std::vector<double> ours;
    for (int round = 0; round < kRounds; ++round) {
        bare.push_back(Microseconds([&] {
                           for (int i = 0; i < kReads; ++i) {
                               host.ReadRegister();
                           }
                       }) /
                       kReads);
        ours.push_back(Microseconds([&] {
                           for (int i = 0; i < kReads; ++i) {
                               uint32_t value = 0;
                               size_t size = sizeof value;
                               Need(bench.Api().GCReadPort(bench.Way().port, kRegHeartbeatTimeout,
                                                           &value, &size) == 0,
                                    "a register can't be read");
                           }
                       }) /
                       kReads);
    }
    const double figure = Median(ours);
    goals.Print("read a register", figure, "us", figure / Median(bare));
}

void MeasureOpening(Goals& goals) {
    Bench bench(1);
    bench.Search();
    BareHost host(bench.First().Address());
    std::vector<double> bare;
    std::vector<double> ours;
    for (int round = 0; round < kRounds; ++round) {
        ours.push_back(Microseconds([&] {
            bench.Open();
            bench.ReadDescription();
        }));
        bench.Close();
        bare.push_back(Microseconds(
            [&] { host.ReadMemory(OvSimulator::kDescriptionAddress, bench.DescriptionSize()); }));
    }
    const double figure = Median(ours);
    goals.Print("open a camera with 500 kB of description", figure / 1e3, "ms",
                figure / Median(bare));
}

void MeasureSearch(Goals& goals) {
    Bench bench(kManyCameras);
    const double time = Microseconds([&] { bench.Search(); });
    Need(bench.Count() == kManyCameras, "not all cameras are found");
    goals.Print("find 64 cameras, beside the time-out", time / 1e3, "ms", time / 1e3 / kSearchTime);
}

void MeasureLoss(Goals& goals) {
    Bench bench(1);
    bench.Search();
    bench.Open();
    const uint64_t before = bench.First().Counts()[OvSimulator::Count::RegisterReads];
    Bytes bytes(sizeof kHeartbeat);
    WriteBig(std::span<std::byte>(bytes), kHeartbeat);
    size_t size = bytes.size();
    Need(bench.Api().GCWritePort(bench.Way().port, kRegHeartbeatTimeout, bytes.data(), &size) == 0,
         "the heartbeat can't be set");
    // Two beats on, the producer knows that.
    while (bench.First().Counts()[OvSimulator::Count::RegisterReads] < before + 4) {
        std::this_thread::yield();
    }
    GenTL::EVENT_HANDLE event = nullptr;
    Need(bench.Api().GCRegisterEvent(bench.Way().device, GenTL::EVENT_DEVICE_OFFLINE, &event) == 0,
         "there is no event of the loss");
    bench.SwitchOff();
    const double time = Microseconds([&] {
        Need(bench.Api().EventGetData(event, nullptr, &size, 60'000) == 0, "no loss is reported");
    });
    constexpr double kAllowed = kHeartbeat + kHeartbeat / 3.0;
    goals.Print("report a lost camera, beside time-out and beat", time / 1e3, "ms",
                time / 1e3 / kAllowed);
}

}  // namespace

int main() {
    Goals goals("gige_control_bench");
    MeasureRegister(goals);
    MeasureOpening(goals);
    MeasureSearch(goals);
    MeasureLoss(goals);
    return 0;
}
