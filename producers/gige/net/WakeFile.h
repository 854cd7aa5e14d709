#pragma once
/// Ends waits for datagrams from another thread.

namespace OvGige {

/// A flag that a wait for files can watch. Any thread may use it.
class WakeFile {
public:
    /// @throws OvProducer::Failure GC_ERR_RESOURCE_EXHAUSTED if the process has no more files
    WakeFile();
    ~WakeFile();
    WakeFile(const WakeFile&) = delete;
    WakeFile& operator=(const WakeFile&) = delete;

    int File() const { return m_file; }
    /// Ends the waits that run and those to come, until `Clear`.
    void Signal() const;
    void Clear() const;
    bool IsSignalled() const;

private:
    const int m_file;
};

}  // namespace OvGige
