#include "gige/producer/ActionFeatures.h"

#include <chrono>
#include <limits>
#include <string_view>

#include "framework/Descriptions.h"
#include "framework/InfoValue.h"
#include "framework/RequireRange.h"

namespace OvProducer {
extern const std::string_view kActionFeatures;
}

namespace OvGige {
namespace {

using OvProducer::RegisterSpace;
using OvProducer::RequireRange;

constexpr int64_t kNumberMax = std::numeric_limits<uint32_t>::max();
constexpr int64_t kTimeMax = std::numeric_limits<int64_t>::max();
constexpr int64_t kAnswerTimeMax = 10'000;
constexpr size_t kTextLength = 64;

/// Registers that aren't in the table of settings.
namespace Address {
constexpr uint64_t kCommand = 0x1038;
constexpr uint64_t kAnswerCount = 0x1040;
constexpr uint64_t kAnswerSelector = 0x1048;
constexpr uint64_t kLastAnswer = 0x1050;
constexpr uint64_t kAnswerIp = 0x1058;
constexpr uint64_t kAnswerStatus = 0x1060;
constexpr uint64_t kAnswerDevice = 0x1080;
constexpr uint64_t kAnswerText = 0x10C0;
}  // namespace Address

/// Processes that follow each other must not begin with the same number: a camera that has heard
/// an action by it takes the next one for a repetition.
uint16_t FirstRequestId() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint16_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

}  // namespace

struct ActionFeatures::SettingRegister {
    uint64_t address;
    std::atomic<int64_t> Settings::*field;
    int64_t min;
    int64_t max;
};

const ActionFeatures::SettingRegister ActionFeatures::kSettings[] = {
    {0x1000, &Settings::deviceKey, 0, kNumberMax},
    {0x1008, &Settings::groupKey, 0, kNumberMax},
    {0x1010, &Settings::groupMask, 0, kNumberMax},
    {0x1018, &Settings::isScheduled, 0, 1},
    {0x1020, &Settings::time, 0, kTimeMax},
    {0x1028, &Settings::destination, 1, kNumberMax},
    {0x1030, &Settings::answerTime, 0, kAnswerTimeMax},
};

ActionFeatures::ActionFeatures(const ActionHost& host)
    : m_host(host), m_requestId(FirstRequestId()) {}

void ActionFeatures::AddRegisters(RegisterSpace& registers) {
    AddSettings(registers);
    AddAnswers(registers);
    registers.AddCommand(Address::kCommand, [this] { Send(); });
}

void ActionFeatures::AddSettings(RegisterSpace& registers) {
    for (const SettingRegister& row : kSettings) {
        registers.AddInteger(
            row.address, sizeof(int64_t), [this, row] { return (m_settings.*row.field).load(); },
            [this, row](int64_t value) {
                RequireRange(value, row.min, row.max);
                m_settings.*row.field = value;
            });
    }
}

void ActionFeatures::AddAnswers(RegisterSpace& registers) {
    const auto add = [&registers](uint64_t address, RegisterSpace::ReadInteger read) {
        registers.AddInteger(address, sizeof(int64_t), std::move(read));
    };
    add(Address::kAnswerCount, [this] { return LastAnswer() + 1; });
    add(Address::kLastAnswer, [this] { return LastAnswer(); });
    add(Address::kAnswerIp, [this] { return int64_t{Selected().camera.ip.value}; });
    add(Address::kAnswerStatus, [this] { return static_cast<int64_t>(Selected().status); });
    registers.AddInteger(
        Address::kAnswerSelector, sizeof(int64_t),
        [this] {
            const std::lock_guard lock(m_state);
            return static_cast<int64_t>(m_selected);
        },
        [this](int64_t answer) { Select(answer); });
    registers.AddText(Address::kAnswerDevice, kTextLength,
                      [this] { return m_host.IdOfCamera(Selected().camera); });
    registers.AddText(Address::kAnswerText, kTextLength,
                      [this] { return std::string(NameOf(Selected().status)); });
}

ActionRequest ActionFeatures::Request() const {
    ActionRequest request{.deviceKey = static_cast<uint32_t>(m_settings.deviceKey),
                          .groupKey = static_cast<uint32_t>(m_settings.groupKey),
                          .groupMask = static_cast<uint32_t>(m_settings.groupMask)};
    if (m_settings.isScheduled != 0) {
        request.time = static_cast<uint64_t>(m_settings.time);
    }
    return request;
}

void ActionFeatures::Send() {
    const std::lock_guard sending(m_sending);
    {
        // Whoever reads them meanwhile shall not take those of the last action for these.
        const std::lock_guard lock(m_state);
        m_answers.clear();
        m_selected = 0;
    }
    m_requestId = NextRequestId(m_requestId);
    const Adapter adapter = m_host.ActionAdapter();
    const std::vector<Endpoint> targets = TargetsOfAction(
        adapter, {static_cast<uint32_t>(m_settings.destination)}, m_host.ActionTargets());
    std::vector<ActionAnswer> answers =
        CallAction(adapter, targets, {.request = Request(), .requestId = m_requestId},
                   std::chrono::milliseconds(m_settings.answerTime));
    const std::lock_guard lock(m_state);
    m_answers = std::move(answers);
}

int64_t ActionFeatures::LastAnswer() const {
    const std::lock_guard lock(m_state);
    return static_cast<int64_t>(m_answers.size()) - 1;
}

void ActionFeatures::Select(int64_t answer) {
    const std::lock_guard lock(m_state);
    RequireRange(answer, 0, static_cast<int64_t>(m_answers.size()) - 1);
    m_selected = static_cast<size_t>(answer);
}

ActionAnswer ActionFeatures::Selected() const {
    const std::lock_guard lock(m_state);
    if (m_answers.empty()) {
        OvProducer::ThrowNotAvailable();
    }
    return m_answers[m_selected];
}

std::string WithActionFeatures(std::string description) {
    return OvProducer::WithNodes(std::move(description),
                                 {.model = "GigeInterfaceModule",
                                  .product = "0D4C77B2-8E1A-4F53-B6C9-71F0A3E60001",
                                  .version = "0D4C77B2-8E1A-4F53-B6C9-71F0A3E61000"},
                                 "    <pFeature>ActionControl</pFeature>\n",
                                 OvProducer::kActionFeatures);
}

}  // namespace OvGige
