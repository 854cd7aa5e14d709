#include "TLClassSupport/OvLog.h"

#include <sys/time.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <ctime>
#include <memory>

#include "Base/UserLog.h"
#include "TLClassSupport/OvString.h"

namespace OVTLClass {

namespace {

/// Of the log that a user switches on. Lines have no level of their own: nearly all
/// report a failure that was passed over.
constexpr const char* kCategory = "Transport";
constexpr size_t kFlushAboveBytes = 1023;
constexpr size_t kPendingLines = 10000;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

std::atomic<COvLog*> COvLog::ms_ObjOvLog{nullptr};

COvLog& COvLog::GetInstance() {
    static CLock createLock(LockRank::LogInstance);
    // The log lives to the very end of the process: destructors of other
    // static objects may still write to it.
    if (ms_ObjOvLog.load() == nullptr) {
        const CAutoLock lock(createLock);
        if (ms_ObjOvLog.load() == nullptr) {
            ms_ObjOvLog = std::make_unique<COvLog>().release();
        }
    }
    return *ms_ObjOvLog;
}

COvLog::~COvLog() {
    Flush();
}

void COvLog::WriteLog(const std::string& text) {
    OvBase::CUserLog::GetInstance().Write(kCategory, GenICam_3_0_ORVANE::LogWarning, text);
    // The user's log has a lock of its own and doesn't wait for this one's file.
    const CAutoLock lock(m_lock);
    if (m_outputType == Nowhere) {
        return;
    }
    std::string line = m_timeStamp ? GetCurrentTimeString() + text : text;
    if (m_outputType == DebugWindow) {
        std::printf("%s\n", line.c_str());
        std::fflush(stdout);
        return;
    }
    __Keep(std::move(line));
    if (m_pendingBytes > kFlushAboveBytes) {
        __Flush();
    }
}

void COvLog::__Keep(std::string line) {
    m_pending.push_back(std::move(line));
    m_pendingBytes += m_pending.back().size();
    if (m_pending.size() > kPendingLines) {
        m_pendingBytes -= m_pending.front().size();
        m_pending.pop_front();
    }
}

void COvLog::Flush() {
    const CAutoLock lock(m_lock);
    __Flush();
}

void COvLog::__Flush() {
    if (m_pending.empty()) {
        return;
    }
    // Opened for each flush, so that the file may be moved while the process runs.
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(m_path.c_str(), "a"));
    if (!file) {
        return;
    }
    for (const std::string& line : m_pending) {
        std::fprintf(file.get(), "%s\n", line.c_str());
    }
    m_pending.clear();
    m_pendingBytes = 0;
}

void COvLog::SetOutputType(int type) {
    if (type != Nowhere && type != DebugWindow && type != File) {
        return;
    }
    const CAutoLock lock(m_lock);
    if (m_outputType == File && type != File) {
        __Flush();
    }
    m_outputType = type;
}

void COvLog::SetLogFilePath(const std::string& path) {
    const CAutoLock lock(m_lock);
    m_path = path;
}

std::string COvLog::GetLogFilePath() {
    const CAutoLock lock(m_lock);
    return m_path;
}

void COvLog::EnableTimeStamp() {
    const CAutoLock lock(m_lock);
    m_timeStamp = true;
}

void COvLog::DisableTimeStamp() {
    const CAutoLock lock(m_lock);
    m_timeStamp = false;
}

std::string COvLog::GetCurrentTimeString() {
    timeval now{};
    gettimeofday(&now, nullptr);
    std::tm local{};
    localtime_r(&now.tv_sec, &local);
    return COvString::MsgComposer("%04d-%02d-%02d %02d:%02d:%02d.%03d ", local.tm_year + 1900,
                                  local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                                  local.tm_sec, static_cast<int>(now.tv_usec));
}

size_t COvLog::GetPendingLineCount() {
    const CAutoLock lock(m_lock);
    return m_pending.size();
}

size_t COvLog::GetPendingByteCount() {
    const CAutoLock lock(m_lock);
    return m_pendingBytes;
}

void LogAt(const char* file, int line, const char* function, std::string_view message) noexcept {
    try {
        COvLog::GetInstance().WriteLog(COvString::MsgComposer(
            "%s(%d):'%s':%.*s", file, line, function,
            static_cast<int>(std::min(message.size(), size_t{INT_MAX})), message.data()));
    } catch (const std::exception&) {
        // There is nowhere to report it.
        return;
    }
}

}  // namespace OVTLClass
