// The log that a user switches on takes the place of the logging library for the engine's lines.

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "Base/UserLog.h"
#include "LogLibrary.h"

namespace GenICam_3_0_ORVANE {

namespace {

/// The engine's loggers: a category each, with the level up to which it is written. They are
/// never freed, as threads may write until the end of the process.
struct Loggers {
    using Logger = std::pair<const std::string, int>;

    std::mutex mutex;
    std::map<std::string, int> all;

    static Loggers& GetInstance() {
        static auto* const loggers = std::make_unique<Loggers>().release();
        return *loggers;
    }

    void* Find(const char* name) {
        const int level = OvBase::CUserLog::GetInstance().GetLevel(name);
        if (level == 0) {
            return nullptr;
        }
        const std::scoped_lock lock(mutex);
        return &*all.emplace(name, level).first;
    }
};

/// Calls are nested by thread.
thread_local std::string t_Indent;

void WriteIndented(void* logger, int level, const char* line) {
    OvBase::CUserLog::GetInstance().Write(static_cast<const Loggers::Logger*>(logger)->first, level,
                                          t_Indent + line);
}

}  // namespace

const CLogBackend* FindUserLog() {
    static const CLogBackend backend = {
        // The engine first asks for the parent of a category. The parent may be unwanted
        // while the category itself is wanted.
        [](const char*) { return true; },
        [](const char* name) { return Loggers::GetInstance().Find(name); },
        [](void* logger, int level) {
            return level <= static_cast<const Loggers::Logger*>(logger)->second;
        },
        WriteIndented,
        [](const char* indent) { t_Indent += indent; },
        [] {
            constexpr size_t kIndentLength = 2;
            t_Indent.resize(t_Indent.size() - std::min(t_Indent.size(), kIndentLength));
        },
        [](int) {},
        [](const char*) {},
        [](const char*) {}};
    return OvBase::CUserLog::GetInstance().IsOn() ? &backend : nullptr;
}

}  // namespace GenICam_3_0_ORVANE
