// The log that a user switches on by an environment variable. A library of its own, because
// producers write to it as well.

#include "Base/UserLog.h"

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <memory>
#include <optional>

#include "VisibleText.h"

namespace OvBase {

namespace {

using GenICam_3_0_ORVANE::LogDebug;
using GenICam_3_0_ORVANE::LogError;
using GenICam_3_0_ORVANE::LogInfo;
using GenICam_3_0_ORVANE::LogWarning;

constexpr const char* kOwnCategory = "Log";
constexpr std::string_view kAll = "all";

struct Level {
    std::string_view name;
    int number;
};

constexpr std::array<Level, 4> kLevels{{
    {"error", LogError},
    {"warning", LogWarning},
    {"info", LogInfo},
    {"debug", LogDebug},
}};

/// None for a word that isn't a level.
std::optional<int> NumberOf(std::string_view name) {
    const auto found = std::find_if(kLevels.begin(), kLevels.end(),
                                    [name](const Level& level) { return level.name == name; });
    return found == kLevels.end() ? std::nullopt : std::optional(found->number);
}

/// The name of the first level that includes lines of this number.
std::string_view NameOf(int number) {
    const auto found = std::find_if(kLevels.begin(), kLevels.end(), [number](const Level& level) {
        return level.number >= number;
    });
    return found == kLevels.end() ? kLevels.back().name : found->name;
}

/// Calls `use` with each piece between two separators, also with empty ones.
template <class Use>
void ForEachPiece(std::string_view text, char separator, const Use& use) {
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find(separator, begin), text.size());
        use(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

/// "all" has no parts, and every category contains that.
std::vector<std::string> PartsOf(std::string_view category) {
    std::vector<std::string> parts;
    if (category != kAll) {
        ForEachPiece(category, '.', [&parts](std::string_view part) { parts.emplace_back(part); });
    }
    return parts;
}

/// Whether a category has these parts, in this order, possibly with others between them:
/// the middle of a category is the name of a device, which nobody wants to spell out.
bool HasParts(std::string_view category, const std::vector<std::string>& parts) {
    auto next = parts.begin();
    ForEachPiece(category, '.', [&](std::string_view part) {
        if (next != parts.end() && *next == part) {
            ++next;
        }
    });
    return next == parts.end();
}

/// Local time, which is what the user's other logs have.
std::string TimeNow() {
    timeval now{};
    gettimeofday(&now, nullptr);
    std::tm local{};
    localtime_r(&now.tv_sec, &local);
    std::array<char, 32> seconds{};
    const size_t length = std::strftime(seconds.data(), seconds.size(), "%F %T", &local);
    std::string text(seconds.data(), length);
    const std::string fraction = std::to_string(now.tv_usec);
    constexpr size_t kDigits = 6;
    return text + "." + std::string(kDigits - fraction.size(), '0') + fraction;
}

/// The value of an environment variable; empty without it.
std::string Variable(const char* name) {
    // The environment is read once, before the program changes it at its own risk.
    const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

CUserLog& CUserLog::GetInstance() {
    // Never destroyed, because threads write to it until the process ends.
    static auto* const log =
        std::make_unique<CUserLog>(Variable("OV_LOG"), Variable("OV_LOG_FILE")).release();
    return *log;
}

CUserLog CUserLog::FromEnvironment() {
    return CUserLog(Variable("OV_LOG"), Variable("OV_LOG_FILE"));
}

/// A file that can't be opened is reported on standard error, and the lines go there, too.
CUserLog::CUserLog(std::string_view wanted, const std::string& fileName) : m_File(STDERR_FILENO) {
    if (wanted.empty()) {
        return;
    }
    if (!fileName.empty()) {
        constexpr mode_t kMode = 0644;
        // Appended to and not emptied: several processes may write to one file.
        const int file = open(fileName.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, kMode);
        m_IsOwnFile = file >= 0;
        m_File = m_IsOwnFile ? file : STDERR_FILENO;
        if (!m_IsOwnFile) {
            WriteLine(kOwnCategory, LogError, "OV_LOG_FILE: '" + fileName + "' can't be opened");
        }
    }
    ForEachPiece(wanted, ',', [this](std::string_view entry) { Want(entry); });
}

CUserLog::~CUserLog() {
    if (m_IsOwnFile) {
        close(m_File);
    }
}

/// A wrong entry is reported once, at the start, and ignored: the rest of the list may be what
/// the user needs.
void CUserLog::Want(std::string_view entry) {
    const size_t colon = entry.find(':');
    const auto level =
        colon == std::string_view::npos ? std::nullopt : NumberOf(entry.substr(colon + 1));
    if (!level || colon == 0) {
        WriteLine(kOwnCategory, LogError,
                  "OV_LOG: '" + std::string(entry) +
                      "' isn't a category, a colon and one of error, warning, info, debug");
        return;
    }
    m_Wanted.push_back({PartsOf(entry.substr(0, colon)), *level});
}

/// The highest of all entries that fit, whatever their order.
int CUserLog::GetLevel(std::string_view category) const {
    int level = 0;
    for (const Wanted& wanted : m_Wanted) {
        if (wanted.level > level && HasParts(category, wanted.parts)) {
            level = wanted.level;
        }
    }
    return level;
}

/// Never throws: a line of a log must not change what the program does.
void CUserLog::Write(std::string_view category, int level, std::string_view subject,
                     std::string_view line) noexcept {
    try {
        if (level <= GetLevel(category)) {
            WriteLine(category, level,
                      subject.empty() ? std::string(line)
                                      : std::string(subject) + ": " + std::string(line));
        }
    } catch (const std::exception&) {
        // There is nowhere to report it.
        return;
    }
}

/// One write of the system for the whole line, so that lines of several threads and processes
/// don't mix.
void CUserLog::WriteLine(std::string_view category, int level, std::string_view line) {
    // Some lines of the transport model end with a line break of their own.
    line = line.substr(0, line.find_last_not_of('\n') + 1);
    // Cameras' texts are in it, and neither a terminal nor a second line must come of them.
    const std::string visible = Visible(line);
    std::string text = TimeNow();
    for (const std::string_view piece :
         {std::string_view(" "), NameOf(level), std::string_view(" "), category,
          std::string_view(" "), std::string_view(visible)}) {
        text += piece;
    }
    text += '\n';
    // What can't be written is lost: a full disk must not stop a camera.
    [[maybe_unused]] const ssize_t written = write(m_File, text.data(), text.size());
}

}  // namespace OvBase
