#pragma once
/// A file of the system, closed with its scope.

#include <unistd.h>

#include <utility>

namespace GenICam_3_0_ORVANE {

/// Owns a file descriptor; -1 where there is none.
class COpenFile {
public:
    static constexpr int kNone = -1;

    explicit COpenFile(int file) : m_File(file) {}
    ~COpenFile() { Close(); }
    COpenFile(const COpenFile&) = delete;
    COpenFile& operator=(const COpenFile&) = delete;

    bool IsOpen() const { return m_File != kNone; }
    int Get() const { return m_File; }
    int Release() { return std::exchange(m_File, kNone); }
    /// False when the system reports only now that something wasn't written.
    bool Close() {
        const int file = Release();
        return file == kNone || close(file) == 0;
    }

private:
    int m_File;
};

}  // namespace GenICam_3_0_ORVANE
