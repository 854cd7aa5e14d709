#pragma once
/// A logging library for tests: keeps every line that the engine writes.

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "Base/Log.h"

namespace EngineTest {

/// Receives the engine's log during the object's lifetime. Maps get their loggers when
/// they are made, so it must be made before them. For one thread, and one object at a
/// time.
class EngineLog {
public:
    struct Line {
        int level;
        std::string text;
        bool operator==(const Line&) const = default;
    };

    /// @param level  the highest number that is written
    explicit EngineLog(int level = GenICam_3_0_ORVANE::LogDebug) {
        static const GenICam_3_0_ORVANE::CLogBackend kBackend = {
            [](const char*) { return s_Exists; },
            [](const char* name) -> void* { return &*s_Loggers.try_emplace(name).first; },
            [](void*, int wanted) { return wanted <= s_Level; },
            [](void* logger, int lineLevel, const char* text) {
                static_cast<Logger*>(logger)->second.push_back({lineLevel, text});
            },
            [](const char*) { ++s_Depth; },
            [] { --s_Depth; },
            [](int) {},
            [](const char*) {},
            [](const char*) {},
        };
        // The engine configures the library at the first use. Tests don't examine that.
        GenICam_3_0_ORVANE::CLog::GetLogger("");
        s_Loggers.clear();
        s_Level = level;
        s_Depth = 0;
        s_Exists = true;
        GenICam_3_0_ORVANE::CLog::SetBackend(&kBackend);
    }
    ~EngineLog() { GenICam_3_0_ORVANE::CLog::SetBackend(nullptr); }
    EngineLog(const EngineLog&) = delete;
    EngineLog& operator=(const EngineLog&) = delete;

    /// Sets whether categories have loggers of their own.
    void SetExists(bool exists) { s_Exists = exists; }
    bool HasLogger(const std::string& name) const { return s_Loggers.count(name) != 0; }
    size_t CountLoggers() const { return s_Loggers.size(); }
    /// Lines of a category, with their levels.
    const std::vector<Line>& Lines(const std::string& name) const { return s_Loggers[name]; }
    /// Their texts without the levels.
    std::vector<std::string> Texts(const std::string& name) const {
        std::vector<std::string> texts;
        for (const Line& line : Lines(name)) {
            texts.push_back(line.text);
        }
        return texts;
    }
    /// How far the next line is indented.
    int Depth() const { return s_Depth; }
    void Forget() {
        for (auto& [name, lines] : s_Loggers) {
            lines.clear();
        }
    }

private:
    using Loggers = std::map<std::string, std::vector<Line>>;
    using Logger = Loggers::value_type;

    static inline Loggers s_Loggers;
    static inline int s_Level = 0;
    static inline int s_Depth = 0;
    static inline bool s_Exists = true;
};

}  // namespace EngineTest
