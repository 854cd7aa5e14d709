#pragma once
/// The engine's way to a logging library that need not be there.

#include <cstdarg>

namespace GenICam_3_0_ORVANE {

/// What a logging library offers, as the shim calls it. A library of the name
/// that the shim looks for exports a table of this form under "Wrapper".
struct CLogBackend {
    /// Whether a category has a logger of its own.
    bool (*Exist)(const char* name);
    /// The logger of a category; may be null.
    void* (*GetLogger)(const char* name);
    bool (*IsEnabled)(void* logger, int level);
    void (*Write)(void* logger, int level, const char* line);
    void (*PushContext)(const char* indent);
    void (*PopContext)();
    /// Sets the level of the root logger.
    void (*SetRootLevel)(int level);
    /// Puts the root logger back to a console with that layout.
    void (*Reset)(const char* pattern);
    /// Takes a configuration in property-file form.
    void (*Configure)(const char* text);
};

/// Log levels.
enum ELogLevel { LogError = 300, LogWarning = 400, LogInfo = 600, LogDebug = 700 };

/// Silent, at the cost of one test, while there is no logging library.
class CLog {
public:
    /// Whether a category's logger exists.
    static bool Exist(const char* name);
    /// A category's handle; may be null.
    static void* GetLogger(const char* name);
    /// Whether a line of that level would be written anywhere.
    static bool IsEnabled(void* logger, int level) {
        return logger != nullptr && IsEnabledInBackend(logger, level);
    }
    [[gnu::format(printf, 3, 4)]] static void Log(void* logger, int level, const char* format, ...);
    /// Writes the line, then indents what follows.
    [[gnu::format(printf, 3, 4)]] static void LogPush(void* logger, int level, const char* format,
                                                      ...);
    /// Writes the line, then takes the indent back.
    [[gnu::format(printf, 3, 4)]] static void LogPop(void* logger, int level, const char* format,
                                                     ...);

    /// Takes the indent back without a line, as a call that fails does.
    static void PopIndent();

    /// Feeds the file's lines to the library; false when it can't be opened, or
    /// when there is no library.
    static bool ConfigureFromFile(const char* fileName);
    /// Feeds a configuration in property-file form to the library, if there is one.
    static void ConfigureFromString(const char* text);

    /// Puts a logging library behind the shim in place of the one that the
    /// system has; null takes it away. Handles given before are void.
    static void SetBackend(const CLogBackend* backend);

private:
    static bool IsEnabledInBackend(void* logger, int level);
    static void WriteFormatted(void* logger, int level, const char* format, va_list arguments);
};

/// Holds the indent between the two lines of a call. A call that fails never
/// comes to its second line; its indent goes with the scope.
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

    void Open() { m_IsOpen = true; }
    void Close() { m_IsOpen = false; }
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
