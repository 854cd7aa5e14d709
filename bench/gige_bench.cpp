// What receiving frames from the network costs, beside a bare loop that takes the same
// datagrams into memory of a frame's size and looks at nothing. Processes of their own send them
// at a set rate, one for each camera: over the loopback adapter, or from a network of their own.
// CPU time of the receiving threads counts.
// Usage: gige_bench [ADDRESS NETWORK [TEXT]]
//     ADDRESS  this end's of a cable, NETWORK the name of the network at its other end;
//     TEXT     only rows whose name contains it

#include <fcntl.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "CountingMemory.h"
#include "Measure.h"
#include "Pace.h"
#include "TrainNote.h"
#include "framework/BufferQueue.h"
#include "gige/stream/StreamReceiver.h"

namespace {

using namespace OvGige;
using std::chrono::steady_clock;

constexpr int kRounds = 2;
constexpr size_t kMeasuredBytes = 400'000'000;
/// After so many frames the receiver has all the memory that it needs.
constexpr int kWarmUp = 33;
constexpr size_t kSocketBuffer = 32 << 20;
/// Both ends of the way that is measured.
struct Way {
    Ipv4 host{0x7F000001};
    std::string network;  ///< of the senders; empty: this one
};

/// The sender's batch: as many packets as are due at a time.
constexpr size_t kBatch = 16;
/// Bytes of a train of packets that the sender's system gets as one.
constexpr size_t kTrainMax = 60'000;

/// What is sent.
struct Load {
    const char* name;
    size_t packetSize;
    size_t frameSize;
    double bytesPerSecond;
    double goal;          ///< CPU time in relation to the bare loop's
    int cameras = 1;      ///< that send at once
    bool trains = false;  ///< packets come as trains, as many adapters make them

    int Frames() const { return static_cast<int>(kMeasuredBytes / frameSize); }
    size_t DataSize() const { return DataPerPacket(packetSize, false, PacketFormat::Data); }
    uint32_t DataCount() const {
        return static_cast<uint32_t>((frameSize + DataSize() - 1) / DataSize());
    }
};

constexpr Load kLoads[] = {
    {"2 MP in packets of 1500", 1500, 2'000'000, 100e6, 2.0},
    {"12 MP in packets of 1500", 1500, 12'000'000, 100e6, 2.0},
    {"2 MP in packets of 9000", 9000, 2'000'000, 400e6, 1.5},
    {"12 MP in packets of 9000", 9000, 12'000'000, 400e6, 1.5},
    {"the same of 2 cameras", 9000, 12'000'000, 200e6, 1.5, 2},
    {"the same of 4 cameras", 9000, 12'000'000, 100e6, 1.5, 4},
    {"2 MP, 1500, in trains", 1500, 2'000'000, 100e6, 2.0, 1, true},
    {"12 MP, 1500, in trains", 1500, 12'000'000, 100e6, 2.0, 1, true},
    {"12 MP, 9000, in trains", 9000, 12'000'000, 400e6, 1.5, 1, true},
};

[[noreturn]] void Fail(const char* what) {
    std::perror(what);
    std::exit(1);
}

/// Sends frames at the load's rate.
class Sender {
public:
    Sender(const Load& load, const Endpoint& to) : m_load(load) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(to.port);
        address.sin_addr.s_addr = htonl(to.ip.value);
        if (connect(m_socket.File(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
            0) {
            Fail("connect");
        }
    }

    void Run() {
        const int frames = kWarmUp + m_load.Frames();
        for (int frame = 0; frame < frames; ++frame) {
            const uint64_t block = static_cast<uint64_t>(frame) + 1;
            BlockLeader leader;
            leader.payloadType = static_cast<uint16_t>(PayloadType::Raw);
            leader.timestamp = block;
            leader.size = m_load.frameSize;
            Add(block, 0, PacketFormat::Leader, BuildLeader(leader));
            const Bytes data(m_load.DataSize());
            for (uint32_t id = 1; id <= m_load.DataCount(); ++id) {
                const size_t rest = m_load.frameSize - (id - 1) * data.size();
                Add(block, id, PacketFormat::Data,
                    ByteView(data).first(std::min(rest, data.size())));
            }
            Add(block, m_load.DataCount() + 1, PacketFormat::Trailer,
                BuildTrailer({.payloadType = leader.payloadType}));
            Flush();
        }
    }

private:
    void Add(uint64_t block, uint32_t id, PacketFormat format, ByteView payload) {
        const StreamHeader header{.format = format, .blockId = block, .packetId = id};
        Bytes& packet = m_packets[m_count++];
        packet.resize(header.Size());
        WriteStreamHeader(packet, header);
        Append(packet, payload);
        const size_t most =
            m_load.trains ? std::min(kBatch, kTrainMax / m_load.packetSize) : kBatch;
        // A train ends with a packet that is shorter than those before it.
        const bool isTrainsEnd = m_load.trains && packet.size() < header.Size() + m_load.DataSize();
        if (m_count == most || isTrainsEnd) {
            Flush();
        }
    }
    /// All packets as one message, which the system takes apart when it must.
    void SendTrain(std::span<iovec> parts, size_t size) {
        msghdr message{};
        message.msg_iov = parts.data();
        message.msg_iovlen = parts.size();
        const OvTest::TrainNote note(message, size);
        if (sendmsg(m_socket.File(), &message, 0) < 0 && errno != ECONNREFUSED) {
            Fail("sendmsg");
        }
    }
    void Flush() {
        std::array<mmsghdr, kBatch> messages{};
        std::array<iovec, kBatch> parts{};
        size_t bytes = 0;
        for (size_t i = 0; i < m_count; ++i) {
            parts[i] = {m_packets[i].data(), m_packets[i].size()};
            messages[i].msg_hdr.msg_iov = &parts[i];
            messages[i].msg_hdr.msg_iovlen = 1;
            bytes += m_packets[i].size();
        }
        std::this_thread::sleep_until(m_due);
        if (m_load.trains && m_count > 1) {
            SendTrain(std::span(parts).first(m_count), parts[0].iov_len);
        }
        for (size_t sent = m_load.trains && m_count > 1 ? m_count : 0; sent < m_count;) {
            const int count = sendmmsg(m_socket.File(), &messages[sent],
                                       static_cast<unsigned>(m_count - sent), 0);
            sent += static_cast<size_t>(std::max(count, 0));
        }
        m_due = std::max(m_due, steady_clock::now() - std::chrono::milliseconds(1)) +
                std::chrono::nanoseconds(
                    static_cast<int64_t>(static_cast<double>(bytes) * 1e9 / m_load.bytesPerSecond));
        m_count = 0;
    }

    const Load& m_load;
    UdpSocket m_socket;
    std::array<Bytes, kBatch> m_packets;
    size_t m_count = 0;
    steady_clock::time_point m_due;
};

/// Is given by one process and waited for by another.
class StartSignal {
public:
    StartSignal() : m_file(eventfd(0, EFD_CLOEXEC)) {
        if (m_file < 0) {
            Fail("eventfd");
        }
    }
    ~StartSignal() { close(m_file); }
    StartSignal(const StartSignal&) = delete;
    StartSignal& operator=(const StartSignal&) = delete;

    void Give() const {
        if (eventfd_write(m_file, 1) != 0) {
            Fail("eventfd_write");
        }
    }
    void Wait() const {
        eventfd_t count = 0;
        if (eventfd_read(m_file, &count) != 0) {
            Fail("eventfd_read");
        }
    }

private:
    const int m_file;
};

/// The sender in a process of its own, which ends with this one. A single one has another
/// processor than the calling thread. It's made before the memory that frames land in: pages that
/// two processes have are copied when the first packet is written there.
class SenderProcess {
public:
    SenderProcess(const Load& load, const Way& way, const Endpoint& to)
        : m_isPlaced(load.cameras == 1), m_process(fork()) {
        if (m_process < 0) {
            Fail("fork");
        }
        // A receiver that shares the sender's processor waits for its turn, which no adapter makes
        // it do.
        if (m_isPlaced && m_process == 0) {
            m_placement.MoveToOthers();
        } else if (m_isPlaced) {
            m_placement.MoveToTaker();
        }
        if (m_process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            Enter(way.network);
            Sender sender(load, to);
            m_start.Wait();
            sender.Run();
            _exit(0);
        }
    }
    ~SenderProcess() { waitpid(m_process, nullptr, 0); }
    SenderProcess(const SenderProcess&) = delete;
    SenderProcess& operator=(const SenderProcess&) = delete;

    /// Lets it send.
    void Start() { m_start.Give(); }

private:
    static void Enter(const std::string& network) {
        if (network.empty()) {
            return;
        }
        const int file = open(("/run/netns/" + network).c_str(), O_RDONLY | O_CLOEXEC);
        if (file < 0 || setns(file, CLONE_NEWNET) != 0) {
            Fail(network.c_str());
        }
    }

    StartSignal m_start;
    const Placement m_placement;
    const bool m_isPlaced;
    const pid_t m_process;
};

struct Result {
    double nanoseconds = 0;  ///< CPU time per GB
    double whole = 0;        ///< share of the datagrams, or of the frames, that came
    uint64_t allocations = 0;
};

UdpSocket MakeSocket(const Way& way) {
    UdpSocket socket;
    socket.Bind({way.host, 0});
    socket.SetReceiveBuffer(kSocketBuffer);
    return socket;
}

double PerGigabyte(double nanoseconds, const Load& load) {
    return nanoseconds * 1e9 / (static_cast<double>(load.frameSize) * load.Frames());
}

/// Takes datagrams into a frame's memory, one behind the other.
Result RunBare(const Load& load, const Way& way) {
    UdpSocket socket = MakeSocket(way);
    const timeval wait{.tv_sec = 1, .tv_usec = 0};
    setsockopt(socket.File(), SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
    fcntl(socket.File(), F_SETFL, 0);
    SenderProcess sender(load, way, socket.Local());
    Bytes frame(load.frameSize + PacketBatch::kMax * load.packetSize);
    std::array<mmsghdr, PacketBatch::kMax> messages{};
    std::array<std::array<iovec, 2>, PacketBatch::kMax> parts{};
    std::array<std::array<std::byte, kStreamHeaderSize>, PacketBatch::kMax> heads{};
    const size_t perFrame = load.DataCount() + 2;
    const size_t begin = perFrame * kWarmUp;
    const size_t end = perFrame * static_cast<size_t>(kWarmUp + load.Frames());
    sender.Start();
    double cpu = 0;
    size_t taken = 0;
    while (taken < end) {
        const size_t at = taken % perFrame * load.DataSize();
        for (size_t i = 0; i < messages.size(); ++i) {
            parts[i][0] = {heads[i].data(), heads[i].size()};
            parts[i][1] = {frame.data() + std::min(at + i * load.DataSize(), load.frameSize),
                           load.DataSize()};
            messages[i].msg_hdr.msg_iov = parts[i].data();
            messages[i].msg_hdr.msg_iovlen = 2;
        }
        const int count =
            recvmmsg(socket.File(), messages.data(), messages.size(), MSG_WAITFORONE, nullptr);
        if (count <= 0) {
            break;
        }
        cpu = taken < begin ? ThreadNanoseconds() : cpu;
        taken += static_cast<size_t>(count);
    }
    return {PerGigabyte(ThreadNanoseconds() - cpu, load),
            static_cast<double>(taken) / static_cast<double>(end)};
}

/// Buffers that are free again as soon as they are delivered.
class Shelf : public BlockClient {
public:
    explicit Shelf(size_t size) {
        for (int i = 0; i < 5; ++i) {
            auto buffer = std::make_shared<OvProducer::Buffer>();
            buffer->ownMemory.resize(size);
            buffer->base = buffer->ownMemory.data();
            buffer->size = size;
            m_free.Push(buffer);
        }
    }
    int Delivered() const { return m_delivered; }

    std::shared_ptr<OvProducer::Buffer> TakeBuffer() override {
        return m_free.empty() ? nullptr : m_free.Pop();
    }
    void Deliver(const std::shared_ptr<OvProducer::Buffer>& buffer,
                 const OvProducer::FrameInfo& frame) override {
        Keep(frame.sizeFilled);
        ++m_delivered;
        m_free.Push(buffer);
    }
    void GiveBack(const std::shared_ptr<OvProducer::Buffer>& buffer) override {
        m_free.Push(buffer);
    }
    void AskAgain(const ResendRequest& request) override { Keep(request.blockId); }

private:
    OvProducer::BufferQueue m_free;
    int m_delivered = 0;
};

/// The address that packets of the way come from.
Ipv4 SenderOf(const Way& way) {
    return way.network.empty() ? way.host : Ipv4{way.host.value + 1};
}

template <bool kTakesTrains>
Result RunReceiver(const Load& load, const Way& way) {
    UdpSocket socket = MakeSocket(way);
    SenderProcess sender(load, way, socket.Local());
    AssemblerSettings settings;
    settings.packetSize = load.packetSize;
    settings.resends = false;
    StreamAccount account;
    Shelf shelf(load.frameSize);
    BlockAssembler assembler(settings, account, shelf);
    StreamReceiver receiver(socket, assembler, SenderOf(way), kTakesTrains);
    const WakeFile wake;
    sender.Start();
    const TimePoint end = Clock::now() + std::chrono::seconds(60);
    double cpu = 0;
    uint64_t allocations = 0;
    TimePoint last = Clock::now();
    for (int seen = 0; shelf.Delivered() < kWarmUp + load.Frames() && Clock::now() < end;) {
        receiver.Work(Clock::now() + std::chrono::milliseconds(100), wake);
        if (shelf.Delivered() != seen) {
            seen = shelf.Delivered();
            last = Clock::now();
            if (seen == kWarmUp) {
                cpu = ThreadNanoseconds();
                allocations = CountOfAllocations();
            }
        } else if (Clock::now() - last > std::chrono::seconds(1)) {
            break;
        }
    }
    return {PerGigabyte(ThreadNanoseconds() - cpu, load),
            static_cast<double>(account.complete.Value()) / (kWarmUp + load.Frames()),
            CountOfAllocations() - allocations};
}

Result Better(const Result& one, const Result& other) {
    if (one.nanoseconds == 0) {
        return other;
    }
    return {std::min(one.nanoseconds, other.nanoseconds), std::min(one.whole, other.whole),
            std::max(one.allocations, other.allocations)};
}

/// A thread for each camera. Their mean counts.
template <typename Run>
Result OfAllCameras(const Load& load, const Way& way, const Run& run) {
    std::vector<Result> results(static_cast<size_t>(load.cameras));
    {
        std::vector<std::jthread> threads;
        threads.reserve(results.size());
        for (Result& result : results) {
            threads.emplace_back([&] { result = run(load, way); });
        }
    }
    Result mean{.nanoseconds = 0, .whole = 1, .allocations = 0};
    for (const Result& result : results) {
        mean.nanoseconds += result.nanoseconds / load.cameras;
        mean.whole = std::min(mean.whole, result.whole);
        // Others' preparations count, too.
        mean.allocations = load.cameras == 1 ? result.allocations : 0;
    }
    return mean;
}

void Measure(const Load& load, const Way& way) {
    Result bare;
    Result receiver;
    Result joined;
    for (int round = 0; round < kRounds; ++round) {
        bare = Better(bare, OfAllCameras(load, way, RunBare));
        receiver = Better(receiver, OfAllCameras(load, way, RunReceiver<false>));
        joined = Better(joined, OfAllCameras(load, way, RunReceiver<true>));
    }
    std::printf("%-26s %6.1f ms %6.2f %6.2f %6.2f %8.1f%% %8.1f%% %8.1f%% %11zu\n", load.name,
                bare.nanoseconds / 1e6, receiver.nanoseconds / bare.nanoseconds,
                joined.nanoseconds / bare.nanoseconds, load.goal, bare.whole * 100,
                receiver.whole * 100, joined.whole * 100,
                receiver.allocations + joined.allocations);
    std::fflush(stdout);
}

/// What came of the frames that were sent, and the rate at which they were.
struct Share {
    double whole = 0;
    double bytesPerSecond = 0;
    bool operator<(const Share& other) const { return whole < other.whole; }
};

Share RunAtRate(const Load& load, const Way& way) {
    const auto begin = steady_clock::now();
    const Result result = RunReceiver<true>(load, way);
    const double seconds = std::chrono::duration<double>(steady_clock::now() - begin).count();
    return {result.whole,
            static_cast<double>(load.frameSize) * (kWarmUp + load.Frames()) / seconds};
}

/// Up to which share of the rate that would fill the receiving thread's processor no frame is
/// lost, where the senders can send so fast. The median counts: a machine that stops for some
/// milliseconds fills any socket.
void FindRate(Load load, const Way& way) {
    const double full = 1e18 / RunReceiver<true>(load, way).nanoseconds;
    std::printf("%-26s %6.2f GB/s fill it; whole frames at", load.name, full / 1e9);
    for (const int share : {50, 60, 70, 80, 90}) {
        load.bytesPerSecond = full * share / 100;
        std::array<Share, 3> rounds;
        for (Share& round : rounds) {
            round = RunAtRate(load, way);
        }
        std::sort(rounds.begin(), rounds.end());
        std::printf("  %d%%: %.1f%% (%.0f%% sent)", share, rounds[1].whole * 100,
                    std::min(100.0, rounds[1].bytesPerSecond / full * 100));
        std::fflush(stdout);
    }
    std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
    Way way;
    const std::string_view text = argc == 4 ? argv[3] : "";
    if (argc >= 3) {
        const auto host = ParseIpv4(argv[1]);
        if (!host) {
            std::fprintf(stderr, "%s is no address\n", argv[1]);
            return 2;
        }
        way = {*host, argv[2]};
    }
    std::printf("%-26s %9s %6s %6s %6s %9s %9s %9s %11s\n", "", "bare", "ratio", "joined", "goal",
                "datagrams", "frames", "joined", "allocations");
    std::vector<Load> loads;
    std::copy_if(std::begin(kLoads), std::end(kLoads), std::back_inserter(loads),
                 [text](const Load& load) {
                     return std::string_view(load.name).find(text) != std::string_view::npos;
                 });
    for (const Load& load : loads) {
        Measure(load, way);
    }
    std::printf(
        "CPU time of the receiving thread per GB, of the receiver in relation to the bare "
        "loop,\nwithout and with packets that the system joins; what came whole\n\n");
    for (const Load& load : loads) {
        if (load.cameras == 1) {
            FindRate(load, way);
        }
    }
    return 0;
}
