#pragma once
/// Named files in a device, by its file access features.

#include <ios>
#include <memory>

#include "Base/Export.h"
#include "GenApi/INodeMap.h"

namespace GenApi_3_0_ORVANE {

/// Reaches the files of a device. In every operation `name` is an entry of the device's
/// "FileSelector".
struct OV_ENGINE_API IFileProtocolAdapter {
    /// Uses the nodes of a device from now on.
    /// @return whether the device has all features that files need
    virtual bool attach(INodeMap* map) = 0;
    /// Opens a file.
    /// @param mode  with std::ios_base::out for writing, else for reading
    /// @return whether the device did it; "FileOperationStatus" says why not
    virtual bool openFile(const char* name, std::ios_base::openmode mode) = 0;
    /// Closes a file.
    /// @return whether the device did it
    virtual bool closeFile(const char* name) = 0;
    /// Reads from an open file.
    /// @param buffer  receives the bytes; has room for `length`
    /// @param offset  in the file, in bytes
    /// @return the number of bytes read; less than `length` if the file ends or the device fails.
    ///         The bytes of the buffer after them mean nothing
    virtual int64_t read(char* buffer, int64_t offset, int64_t length, const char* name) = 0;
    /// Writes to an open file. What the device doesn't take at once, without failing, is offered
    /// again, unless it takes nothing three times in a row.
    /// @param offset  in the file, in bytes
    /// @return the number of bytes written; less than `length` if the device fails or is full
    virtual int64_t write(const char* buffer, int64_t offset, int64_t length, const char* name) = 0;
    /// Returns how many bytes the device moves at most in one step.
    /// @param mode  as for openFile
    virtual int64_t getBufSize(const char* name, std::ios_base::openmode mode) = 0;
    /// Deletes a file.
    /// @return whether the device did it
    virtual bool deleteFile(const char* name) = 0;
    virtual ~IFileProtocolAdapter() = default;
};

/// Drives the file access features of a device.
///
/// Without a device all operations return 0 or false. What nodes throw passes through:
/// InvalidArgumentException for a name that the device doesn't know, for example. An operation
/// lasts as long as the device says so; there is no time-out.
///
/// Each step takes the map's lock for itself, so other users of the same features spoil the
/// operation. The map must outlive the adapter's use.
class OV_ENGINE_API FileProtocolAdapter : public IFileProtocolAdapter {
public:
    /// Makes an adapter without a device.
    FileProtocolAdapter();
    ~FileProtocolAdapter() override;
    FileProtocolAdapter(const FileProtocolAdapter&) = delete;
    FileProtocolAdapter& operator=(const FileProtocolAdapter&) = delete;

    /// As for IFileProtocolAdapter.
    /// @throws RuntimeException for null
    bool attach(INodeMap* map) override;
    bool openFile(const char* name, std::ios_base::openmode mode) override;
    bool closeFile(const char* name) override;
    /// As for IFileProtocolAdapter. What nodes throw is also written to the log.
    int64_t read(char* buffer, int64_t offset, int64_t length, const char* name) override;
    /// As for read. If the length of a piece isn't a multiple of four, the device receives zeros
    /// after it.
    int64_t write(const char* buffer, int64_t offset, int64_t length, const char* name) override;
    int64_t getBufSize(const char* name, std::ios_base::openmode mode) override;
    bool deleteFile(const char* name) override;

private:
    struct FileAccess;

    std::unique_ptr<FileAccess> m_pAccess;
};

}  // namespace GenApi_3_0_ORVANE
