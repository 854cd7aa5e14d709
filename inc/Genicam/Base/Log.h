#pragma once
/// The engine's way to a logging library, which may be missing.

#include <cstdarg>

namespace GenICam_3_0_ORVANE {

/// What a logging library offers to the engine. A library of the name that the engine looks for
/// exports a table of this form as "Wrapper".
struct CLogBackend {
    /// Whether a category has a logger of its own.
    bool (*Exist)(const char* name);
    /// Returns the logger of a category, or null.
    void* (*GetLogger)(const char* name);
    /// Whether the logger writes lines of that level.
    bool (*IsEnabled)(void* logger, int level);
    /// Writes a line.
    void (*Write)(void* logger, int level, const char* line);
    /// Indents the lines that follow, by a text.
    void (*PushContext)(const char* indent);
    /// Takes the last indent back.
    void (*PopContext)();
    /// Sets the level of the root logger.
    void (*SetRootLevel)(int level);
    /// Has the root logger write to a console, with that layout.
    void (*Reset)(const char* pattern);
    /// Reads a configuration in property-file form.
    void (*Configure)(const char* text);
};

/// The levels of lines; a lower number is more important.
enum ELogLevel { LogError = 300, LogWarning = 400, LogInfo = 600, LogDebug = 700 };

/// Writes to the logging library. Without one, a line costs one test.
class CLog {
public:
    /// Whether the logger of a category exists.
    static bool Exist(const char* name);
    /// Returns the handle of a category; may be null.
    static void* GetLogger(const char* name);
    /// Whether a line of that level would be written anywhere.
    static bool IsEnabled(void* logger, int level) {
        return logger != nullptr && IsEnabledInBackend(logger, level);
    }
    /// Writes a line, formatted as printf does.
    [[gnu::format(printf, 3, 4)]] static void Log(void* logger, int level, const char* format, ...);
    /// Writes the line, then indents those that follow.
    [[gnu::format(printf, 3, 4)]] static void LogPush(void* logger, int level, const char* format,
                                                      ...);
    /// Writes the line, then takes the indent back.
    [[gnu::format(printf, 3, 4)]] static void LogPop(void* logger, int level, const char* format,
                                                     ...);

    /// Takes the indent back without a line, for a call that fails.
    static void PopIndent();

    /// Passes the lines of a file to the library.
    /// @return false if the file can't be opened or there is no library
    static bool ConfigureFromFile(const char* fileName);
    /// Passes a configuration in property-file form to the library, if there is one.
    static void ConfigureFromString(const char* text);

    /// Uses another logging library than the system's; null uses none. Handles from before are
    /// void.
    static void SetBackend(const CLogBackend* backend);

private:
    static bool IsEnabledInBackend(void* logger, int level);
    static void WriteFormatted(void* logger, int level, const char* format, va_list arguments);
};

/// Holds the indent between the two lines of a call. A call that fails never reaches its second
/// line; the scope then takes the indent back.
class CLogIndent {
public:
    CLogIndent() = default;
    ~CLogIndent() {
        if (m_IsOpen) {
            CLog::PopIndent();
        }
    }
    CLogIndent(const CLogIndent&) = delete;
    CLogIndent& operator=(const CLogIndent&) = delete;

    /// The first line was written, and with it the indent.
    void Open() { m_IsOpen = true; }
    /// The second line was written, which took the indent back.
    void Close() { m_IsOpen = false; }
    /// Whether there is an indent to take back.
    bool IsOpen() const { return m_IsOpen; }

private:
    bool m_IsOpen = false;
};

}  // namespace GenICam_3_0_ORVANE

// One test of the level guards each line: a disabled log formats nothing.
#define GCLOG_AT(function, logger, level, ...)                                    \
    do {                                                                          \
        if (::GenICam_3_0_ORVANE::CLog::IsEnabled((logger), (level))) {           \
            ::GenICam_3_0_ORVANE::CLog::function((logger), (level), __VA_ARGS__); \
        }                                                                         \
    } while (false)
#define GCLOGERROR(logger, ...) GCLOG_AT(Log, logger, ::GenICam_3_0_ORVANE::LogError, __VA_ARGS__)
#define GCLOGWARN(logger, ...) GCLOG_AT(Log, logger, ::GenICam_3_0_ORVANE::LogWarning, __VA_ARGS__)
#define GCLOGINFO(logger, ...) GCLOG_AT(Log, logger, ::GenICam_3_0_ORVANE::LogInfo, __VA_ARGS__)
#define GCLOGDEBUG(logger, ...) GCLOG_AT(Log, logger, ::GenICam_3_0_ORVANE::LogDebug, __VA_ARGS__)
// The line that closes a call follows the one that opened it, whatever the level
// is by then: the indent between them belongs to the CLogIndent.
#define GCLOGINFOPUSH(indent, logger, ...)                                                    \
    do {                                                                                      \
        if (::GenICam_3_0_ORVANE::CLog::IsEnabled((logger), ::GenICam_3_0_ORVANE::LogInfo)) { \
            ::GenICam_3_0_ORVANE::CLog::LogPush((logger), ::GenICam_3_0_ORVANE::LogInfo,      \
                                                __VA_ARGS__);                                 \
            (indent).Open();                                                                  \
        }                                                                                     \
    } while (false)
#define GCLOGINFOPOP(indent, logger, ...)                                               \
    do {                                                                                \
        if ((indent).IsOpen()) {                                                        \
            ::GenICam_3_0_ORVANE::CLog::LogPop((logger), ::GenICam_3_0_ORVANE::LogInfo, \
                                               __VA_ARGS__);                            \
            (indent).Close();                                                           \
        }                                                                               \
    } while (false)
