#include "FaultOptions.h"

#include <CLI/CLI.hpp>
#include <string>

#include "support/Error.h"

namespace {

using OvSimulator::ControlFaults;
using OvSimulator::Faults;
using OvSimulator::MessageFaults;
using OvSimulator::StreamFaults;

/// A share of all occasions, which the command line says in percent.
template <class Kind>
struct ShareOption {
    const char* name;
    double Kind::*share;
    const char* help;
};

constexpr ShareOption<ControlFaults> kAnswerShares[] = {
    {"--missing", &ControlFaults::missing, "percent of the answers that aren't sent"},
    {"--doubled", &ControlFaults::doubled, "percent that are sent twice"},
    {"--late", &ControlFaults::late, "percent that are late"},
    {"--foreign", &ControlFaults::foreign, "percent that come after wrong ones of others"},
    {"--pending", &ControlFaults::pending, "percent that come after a request for patience"},
};

constexpr ShareOption<StreamFaults> kPacketShares[] = {
    {"--lose", &StreamFaults::lost, "percent of the packets that aren't sent"},
    {"--truncate", &StreamFaults::truncated, "percent that are cut"},
    {"--corrupt", &StreamFaults::corrupted, "percent with a wrong byte"},
    {"--double", &StreamFaults::doubled, "percent that are sent twice"},
    {"--delay", &StreamFaults::delayed, "percent that come after their frame's last packet"},
    {"--reorder", &StreamFaults::reordered, "percent that come after the next packet"},
    {"--wrong-leader", &StreamFaults::wrongLeader, "percent of the frames that say another size"},
    {"--jump-back", &StreamFaults::jumpBack, "percent of the frames whose number is 1 again"},
    {"--wrong-chunk", &StreamFaults::wrongChunk,
     "percent of the frames with a chunk that says another length or identifier"},
};

constexpr ShareOption<MessageFaults> kMessageShares[] = {
    {"--lose-messages", &MessageFaults::lost, "percent of the messages that aren't sent"},
    {"--double-messages", &MessageFaults::doubled, "percent that are sent twice"},
    {"--ignore-acknowledgements", &MessageFaults::ignored,
     "percent of the acknowledgements that the camera doesn't hear"},
    {"--foreign-messages", &MessageFaults::foreign,
     "percent of the messages that come after one of another sender"},
};

template <class Kind, size_t Count>
void AddShares(CLI::Option_group& group, Kind& faults, const ShareOption<Kind> (&rows)[Count]) {
    constexpr double kAll = 100;
    for (const ShareOption<Kind>& row : rows) {
        group
            .add_option_function<double>(
                row.name,
                [&faults, share = row.share](double percent) { faults.*share = percent / kAll; },
                row.help)
            ->check(CLI::Range(0.0, kAll));
    }
}

void AddMilliseconds(CLI::Option_group& group, const char* name, std::chrono::milliseconds& time,
                     const char* help) {
    constexpr int64_t kMax = 60000;
    group
        .add_option_function<int64_t>(
            name, [&time](int64_t number) { time = std::chrono::milliseconds(number); }, help)
        ->check(CLI::Range(int64_t{0}, kMax))
        ->default_str(std::to_string(time.count()));
}

OvGige::Ipv4 AddressFrom(const std::string& text) {
    const auto address = OvGige::ParseIpv4(text);
    if (!address) {
        throw UsageError("\"" + text + "\" is no address; write it as 192.168.1.10");
    }
    return *address;
}

void AddControlFaults(CLI::Option_group& group, ControlFaults& faults) {
    AddShares(group, faults, kAnswerShares);
    AddMilliseconds(group, "--late-by", faults.lateBy, "milliseconds that late answers take");
    AddMilliseconds(group, "--pending-for", faults.pendingFor,
                    "milliseconds that the request for patience says");
    group.add_flag("--refuse-control", faults.refusesControl, "let nobody have control");
    group.add_option("--die-after", faults.diesAfter, "commands after which a camera is silent");
    CLI::Option* const moves = group.add_option("--move-after", faults.movesAfter,
                                                "commands after which its address is another");
    moves->needs(group.add_option_function<std::string>(
        "--move-to", [&faults](const std::string& text) { faults.movesTo = AddressFrom(text); },
        "that address"));
    group
        .add_option("--wrong-length", faults.wrongLength,
                    "bytes by which it says its description is longer, or shorter, than it is")
        ->check(CLI::Range(int64_t{-1} << 30, int64_t{1} << 30));
}

}  // namespace

void AddFaultOptions(CLI::App& command, Faults& faults) {
    command.add_option("--seed", faults.seed, "chooses which packets the faults hit")
        ->capture_default_str();
    AddControlFaults(*command.add_option_group("Faults of answers"), faults.control);
    CLI::Option_group& stream = *command.add_option_group("Faults of frames");
    AddShares(stream, faults.stream, kPacketShares);
    AddShares(*command.add_option_group("Faults of messages with events"), faults.message,
              kMessageShares);
    stream.add_option("--burst", faults.stream.burst, "packets in a row that are lost at a time")
        ->check(CLI::Range(1, 100000))
        ->capture_default_str();
}
