// Messages from anyone to a host, and answers from anyone to a simulated camera, whose own messages
// reach a host over a network that loses and doubles them. The input is a row of records: what
// happens, a number for it, a length, that many bytes.

#include <cstdint>
#include <cstring>
#include <span>

#include "Base/OvAssert.h"
#include "framework/Event.h"
#include "gige/message/MessageIntake.h"
#include "record_fuzz.h"
#include "simulator/message/MessageOutbox.h"

namespace {

using namespace OvGige;
using namespace OvSimulator;

constexpr Endpoint kCamera{{0xC0A80702}, 49152};
constexpr Endpoint kStranger{{0xC0A80703}, 49152};
constexpr Endpoint kHost{{0xC0A80714}, 50000};

enum class Step : uint8_t { Message, StrangeMessage, Answer, Event, Time, Setup, Count };

/// Notes events, and that each is what it says.
class CheckingSink : public OvProducer::EventSink {
public:
    void Post(GenTL::EVENT_TYPE type, std::span<const std::byte> entry) override {
        OV_ASSERT(type == GenTL::EVENT_REMOTE_DEVICE);
        uint64_t id = 0;
        OV_ASSERT(entry.size() >= sizeof id + kEventSize);
        OV_ASSERT(entry.size() <= sizeof id + OvProducer::QueuedEvent::kPayloadMax);
        std::memcpy(&id, entry.data(), sizeof id);
        OV_ASSERT(ReadBig<uint16_t>(entry.subspan(sizeof id + 2)) == id);
        bytes += entry.size() - sizeof id;
        ++events;
    }

    size_t bytes = 0;
    uint64_t events = 0;
};

/// A host, and what it was sent.
class Host {
public:
    /// @return the answer
    Bytes Take(const Endpoint& sender, ByteView packet) {
        const size_t bytes = m_sink->bytes;
        const uint64_t events = m_sink->events;
        const Bytes answer =
            m_intake
                .Take({.sender = sender, .arrivedAt = {}, .bytes = {packet.begin(), packet.end()}})
                .value_or(Bytes());
        OV_ASSERT(m_sink->bytes - bytes <= packet.size());
        OV_ASSERT(sender.ip == kCamera.ip || (answer.empty() && m_sink->events == events));
        OV_ASSERT(m_account.events == m_sink->events);
        if (!answer.empty()) {
            OV_ASSERT(ParseAnswer(answer)->requestId == ParseMessage(packet)->requestId);
        }
        return answer;
    }
    uint64_t Events() const { return m_sink->events; }

private:
    std::shared_ptr<CheckingSink> m_sink = std::make_shared<CheckingSink>();
    MessageAccount m_account;
    MessageIntake m_intake{kCamera.ip, m_sink, m_account};
};

class Run {
public:
    void Do(Step step, uint8_t number, ByteView bytes) {
        switch (step) {
            case Step::Message:
                m_attacked.Take(kCamera, bytes);
                break;
            case Step::StrangeMessage:
                m_attacked.Take(kStranger, bytes);
                break;
            case Step::Answer:
                m_outbox.Take(bytes);
                break;
            case Step::Event:
                m_outbox.Add({.id = 0x9001, .frame = m_frames++, .ticks = number});
                break;
            case Step::Time:
                m_now += std::chrono::milliseconds(number);
                break;
            default:
                SetUp(number);
        }
        Carry();
    }

    void Check() const {
        OV_ASSERT(m_friend.Events() <= m_account[Count::Events]);
        OV_ASSERT(m_account[Count::Acknowledgements] <= m_account[Count::Messages]);
    }

private:
    static CameraProfile Profile() {
        CameraProfile profile = MakeProfile(0, {}, kControlPort);
        profile.faults.message = {.lost = 0.2, .doubled = 0.2, .ignored = 0.2, .foreign = 0.2};
        return profile;
    }
    void SetUp(uint8_t number) {
        m_outbox.Configure({.destination = (number & 1U) != 0 ? kHost : Endpoint(),
                            .timeout = std::chrono::milliseconds(number & 0xF0U),
                            .retries = number & 3U,
                            .isExtended = (number & 4U) != 0,
                            .joinsEvents = (number & 8U) != 0});
    }
    /// Brings what the camera sends to its host, and every other answer back.
    void Carry() {
        for (const Outgoing& outgoing : m_outbox.SendDue(m_now)) {
            const auto message = ParseCommand(outgoing.packet);
            OV_ASSERT(message && ParseEvents(*message).isWhole);
            OV_ASSERT(message->payload.size() <= kMessagePayloadMax);
            const Bytes answer =
                m_friend.Take(outgoing.isFromStranger ? kStranger : kCamera, outgoing.packet);
            if ((++m_carried & 1U) != 0) {
                m_outbox.Take(answer);
            }
        }
    }

    Host m_attacked;
    Host m_friend;
    Account m_account;
    MessageOutbox m_outbox{Profile(), m_account};
    OvSimulator::Clock::time_point m_now;
    uint64_t m_frames = 0;
    uint64_t m_carried = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Run run;
    ForEachRecord(data, size, [&run](uint8_t first, uint8_t second, auto content) {
        run.Do(static_cast<Step>(first % static_cast<uint8_t>(Step::Count)), second, content);
    });
    run.Check();
    return 0;
}
