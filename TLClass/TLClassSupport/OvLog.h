#pragma once
/// The log of the transport model.
///
/// Lines collect in memory until a file path is set, which only a program within the
/// library can do, as a test. Only the last 10,000 of them are kept, as a producer may
/// fail a thousand times a second. A user sees the lines as those of the category
/// "Transport" (Base/UserLog.h).

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>

#include "TLClassSupport/OvLock.h"

namespace OVTLClass {

class COvLog {
public:
    enum OutputType : int32_t { Nowhere = 0, DebugWindow = 1, File = 2 };

    /// The one log of the process, made at the first call.
    static COvLog& GetInstance();

    COvLog() = default;
    ~COvLog();
    COvLog(const COvLog&) = delete;
    COvLog& operator=(const COvLog&) = delete;

    void WriteLog(const std::string& text);
    /// Writes the pending lines to the file; they stay when it doesn't open.
    void Flush();

    /// Values other than 0, 1 and 2 are ignored.
    void SetOutputType(int type);
    void SetOutputToFile() { SetOutputType(File); }
    void SetOutputToDebugWindow() { SetOutputType(DebugWindow); }
    void SetOutputNoWhere() { SetOutputType(Nowhere); }

    void SetLogFilePath(const std::string& path);
    std::string GetLogFilePath();

    void EnableTimeStamp();
    void DisableTimeStamp();
    /// "2026-01-31 23:59:59.microseconds ", local time.
    static std::string GetCurrentTimeString();

    /// Lines that wait for a file, and their bytes.
    size_t GetPendingLineCount();
    size_t GetPendingByteCount();

private:
    void __Flush();

    void __Keep(std::string line);

    static std::atomic<COvLog*> ms_ObjOvLog;

    std::string m_path;
    bool m_timeStamp = true;
    int32_t m_outputType = File;
    std::list<std::string> m_pending;
    size_t m_pendingBytes = 0;
    CLock m_lock{LockRank::Log};
};

/// Logs a message with its place, as "file(line):'function':message". Without memory
/// the line is lost: whoever logs is often about to clean up, and must go on.
void LogAt(const char* file, int line, const char* function, std::string_view message) noexcept;

}  // namespace OVTLClass

/// Logs a message with the place of this line.
#define OV_LOG(message) ::OVTLClass::LogAt(__FILE__, __LINE__, __func__, (message))
