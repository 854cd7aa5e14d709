#include "virtual/CameraState.h"

#include <algorithm>
#include <charconv>
#include <iomanip>
#include <sstream>

#include "framework/Failure.h"
#include "virtual/SettingRegisters.h"

namespace OvVirtual {
namespace {

constexpr const char* kFormat = "oviapi-virtual-camera-5";
/// Tells a whole text from one whose last number is cut off.
constexpr const char* kEnd = "end";
constexpr int64_t kBalanceMax = 65535;
constexpr size_t kUserIdMax = 64;

template <typename Do>
void ForEachRegister(const Do& run) {
    for (const SettingRegister& entry : SettingRegisters()) {
        run(entry);
    }
    for (const SettingRegister& entry : BinningRegisters()) {
        run(entry);
    }
}

void Write(std::ostream& out, const CameraSettings& settings) {
    ForEachRegister([&](const SettingRegister& entry) {
        out << entry.address << ' ' << settings.*entry.range.field << '\n';
    });
    for (const int64_t factor : settings.balance) {
        out << factor << ' ';
    }
    for (const uint16_t level : *settings.lut) {
        out << level << ' ';
    }
    out << '\n';
}

void Write(std::ostream& out, const CameraSelectors& selectors) {
    for (const SelectorRegister& entry : SelectorRegisters()) {
        out << entry.address << ' ' << selectors.*entry.field << '\n';
    }
}

/// Reads a number; one out of the range fails the stream.
int64_t ReadNumber(std::istream& in, int64_t min, int64_t max) {
    int64_t value = 0;
    in >> value;
    if (value < min || value > max) {
        in.setstate(std::ios::failbit);
        return min;
    }
    return value;
}

void ReadAddress(std::istream& in, uint64_t address) {
    ReadNumber(in, static_cast<int64_t>(address), static_cast<int64_t>(address));
}

void Read(std::istream& in, CameraSelectors& selectors) {
    for (const SelectorRegister& entry : SelectorRegisters()) {
        ReadAddress(in, entry.address);
        selectors.*entry.field = ReadNumber(in, 0, entry.max);
    }
}

void ReadRegister(std::istream& in, const SettingRegister& entry, CameraSettings& settings) {
    const SettingRange& range = entry.range;
    ReadAddress(in, entry.address);
    const int64_t value = ReadNumber(in, range.min, range.max);
    if ((value - range.min) % range.step != 0) {
        in.setstate(std::ios::failbit);
    }
    settings.*range.field = value;
}

void Read(std::istream& in, bool color, CameraSettings& settings) {
    ForEachRegister([&](const SettingRegister& entry) { ReadRegister(in, entry, settings); });
    for (int64_t& factor : settings.balance) {
        factor = ReadNumber(in, 0, kBalanceMax);
    }
    auto table = std::make_shared<LookUpTable>();
    for (uint16_t& level : *table) {
        level = static_cast<uint16_t>(ReadNumber(in, 0, kTopLevel));
    }
    settings.lut = std::move(table);
    try {
        CheckSettings(settings, color);
    } catch (const OvProducer::Failure&) {
        in.setstate(std::ios::failbit);
    }
}

/// The length, or -1 for a file that isn't there, and the bytes in hexadecimal.
void Write(std::ostream& out, const std::optional<CameraFiles::Content>& file) {
    if (!file) {
        out << "-1\n";
        return;
    }
    out << file->size() << ' ' << std::hex << std::setfill('0');
    for (const std::byte byte : *file) {
        out << std::setw(2) << std::to_integer<unsigned>(byte);
    }
    out << std::dec << '\n';
}

std::byte ReadByte(std::istream& in) {
    char digits[2] = {};
    in >> digits[0] >> digits[1];
    unsigned value = 0;
    const auto [end, error] = std::from_chars(digits, digits + 2, value, 16);
    if (end != digits + 2 || error != std::errc()) {
        in.setstate(std::ios::failbit);
    }
    return static_cast<std::byte>(value);
}

void Read(std::istream& in, std::optional<CameraFiles::Content>& file) {
    const int64_t length = ReadNumber(in, -1, CameraFiles::kUserFileMax);
    if (length < 0) {
        return;
    }
    file.emplace(static_cast<size_t>(length));
    std::ranges::generate(*file, [&] { return ReadByte(in); });
}

}  // namespace

CameraState FactoryState(bool color) {
    CameraState state;
    state.settings = FactorySettings(color);
    state.userSets.fill(state.settings);
    return state;
}

std::string ToText(const CameraState& state) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << kFormat << ' ' << std::quoted(state.userId) << ' ' << state.userSetDefault << '\n';
    Write(out, state.selectors);
    Write(out, state.settings);
    for (size_t set = 1; set < CameraState::kUserSets; ++set) {
        Write(out, state.userSets[set]);
    }
    Write(out, state.userFile);
    out << kEnd << '\n';
    return out.str();
}

std::optional<CameraState> StateFromText(const std::string& text, bool color) {
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    CameraState state = FactoryState(color);
    std::string format;
    in >> format >> std::quoted(state.userId);
    state.userSetDefault = ReadNumber(in, 0, CameraState::kUserSets - 1);
    Read(in, state.selectors);
    Read(in, color, state.settings);
    for (size_t set = 1; set < CameraState::kUserSets; ++set) {
        Read(in, color, state.userSets[set]);
    }
    Read(in, state.userFile);
    std::string end;
    const bool isWhole = in >> end && end == kEnd && (in >> std::ws).eof();
    if (format != kFormat || state.userId.size() > kUserIdMax || !isWhole) {
        return std::nullopt;
    }
    return state;
}

}  // namespace OvVirtual
