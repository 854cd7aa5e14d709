#pragma once
/// Named files inside a device, by its file access features.

#include <ios>
#include <memory>

#include "Base/Export.h"
#include "GenApi/INodeMap.h"

namespace GenApi_3_0_ORVANE {

/// Reaches the files of a device; `name` is an entry of the device's
/// "FileSelector" in every operation.
struct OV_ENGINE_API IFileProtocolAdapter {
    /// Takes the nodes of a device, in place of those of an earlier one.
    /// @return whether the device offers all that files need
    virtual bool attach(INodeMap* map) = 0;
    /// @param mode  with std::ios_base::out the file is opened for writing, else
    ///              for reading
    /// @return whether the device did it; "FileOperationStatus" tells why not
    virtual bool openFile(const char* name, std::ios_base::openmode mode) = 0;
    /// @return whether the device did it
    virtual bool closeFile(const char* name) = 0;
    /// @param buffer  takes the bytes; holds at least `length` of them
    /// @param offset  in the file, in bytes
    /// @return the number of bytes read, less than `length` when the device has
    ///         no more or fails; what lies in the buffer behind them is void
    virtual int64_t read(char* buffer, int64_t offset, int64_t length, const char* name) = 0;
    /// What the device leaves of a piece without failing is offered to it again.
    /// @param offset  in the file, in bytes
    /// @return the number of bytes written, less than `length` when the device
    ///         fails
    virtual int64_t write(const char* buffer, int64_t offset, int64_t length, const char* name) = 0;
    /// How many bytes go over in one step, writing or reading.
    /// @param mode  as for openFile
    virtual int64_t getBufSize(const char* name, std::ios_base::openmode mode) = 0;
    /// @return whether the device did it
    virtual bool deleteFile(const char* name) = 0;
    virtual ~IFileProtocolAdapter() = default;
};

/// Works the file access features of a device one after the other.
///
/// Without a device all operations give 0 or false. Failures of nodes come as
/// they are: a name that the device doesn't know is an
/// InvalidArgumentException. An operation ends when the device says so; there is
/// no time-out.
///
/// Each step takes the map's lock for itself: other traffic on the same features
/// in between disturbs the operation. The map must outlive the adapter's use.
class OV_ENGINE_API FileProtocolAdapter : public IFileProtocolAdapter {
public:
    FileProtocolAdapter();
    ~FileProtocolAdapter() override;
    FileProtocolAdapter(const FileProtocolAdapter&) = delete;
    FileProtocolAdapter& operator=(const FileProtocolAdapter&) = delete;

    /// RuntimeException without a map.
    bool attach(INodeMap* map) override;
    bool openFile(const char* name, std::ios_base::openmode mode) override;
    bool closeFile(const char* name) override;
    /// Failures of nodes are written to the log before they go on.
    int64_t read(char* buffer, int64_t offset, int64_t length, const char* name) override;
    /// As for read. The device gets zeros behind a piece whose length is no
    /// multiple of four.
    int64_t write(const char* buffer, int64_t offset, int64_t length, const char* name) override;
    int64_t getBufSize(const char* name, std::ios_base::openmode mode) override;
    bool deleteFile(const char* name) override;

private:
    struct FileAccess;

    std::unique_ptr<FileAccess> m_pAccess;
};

}  // namespace GenApi_3_0_ORVANE
