#pragma once
/// The files inside a virtual camera, and the operations on them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace OvVirtual {

// Values as the registers hold them.
enum class FileName : int64_t { UserFile, FactoryCalibration, Count };
enum class FileOperation : int64_t { Open, Close, Read, Write, Delete, Count };
enum class FileOpenMode : int64_t { Read, Write, ReadWrite, Count };
enum class FileStatus : int64_t { Success, Failure };

struct FileRequest {
    FileName file = FileName::UserFile;
    FileOperation operation = FileOperation::Open;
    FileOpenMode mode = FileOpenMode::Read;  ///< of an opening
    int64_t offset = 0;                      ///< in the file, of a transfer, in bytes
    int64_t length = 0;                      ///< of a transfer, in bytes
};

struct FileOutcome {
    FileStatus status = FileStatus::Success;
    int64_t count = 0;  ///< bytes that were moved
};

/// The files of one camera: the user's, which is there when it was written, and
/// the factory's, which can only be read. Bytes go over by a buffer.
///
/// A request that can't be met fails and changes nothing. All operations may be
/// called from any thread.
class CameraFiles {
public:
    using Content = std::vector<std::byte>;

    static constexpr size_t kBufferLength = 4096;
    static constexpr size_t kUserFileMax = 65536;

    explicit CameraFiles(std::string_view factoryCalibration);

    /// Runs the operation; `Outcome` tells how it went.
    ///
    /// Reading moves as many bytes as the file has, none at its end or behind.
    /// Writing moves as many as the file has room for and fails when there is
    /// none, so that a host which offers the rest again comes to an end; a gap
    /// before the offset is filled with zeros. Neither moves more than the
    /// buffer holds. Opening for writing alone empties the file.
    void Execute(const FileRequest& request);
    FileOutcome Outcome() const;
    /// In bytes; 0 for a file that isn't there.
    size_t Size(FileName file) const;

    /// The buffer in part; what lies outside of it is a std::out_of_range.
    void ReadBuffer(size_t offset, std::span<std::byte> out) const;
    void WriteBuffer(size_t offset, std::span<const std::byte> in);

    /// As after power-on: nothing is open, the buffer is blank. Files stay.
    void Reset();

    /// Empty when the file isn't there.
    std::optional<Content> UserFile() const;
    /// For a camera without open files.
    /// @param content  no more than kUserFileMax bytes
    void SetUserFile(std::optional<Content> content);

private:
    struct File {
        std::optional<Content> content;
        std::optional<FileOpenMode> opened;
        bool readOnly = false;
    };

    File& At(FileName file);
    const File& At(FileName file) const;
    FileOutcome Run(const FileRequest& request);
    FileOutcome Read(const File& file, const FileRequest& request);
    FileOutcome Write(File& file, const FileRequest& request) const;

    mutable std::mutex m_mutex;
    std::array<File, static_cast<size_t>(FileName::Count)> m_files;
    std::array<std::byte, kBufferLength> m_buffer{};
    FileOutcome m_outcome;
};

}  // namespace OvVirtual
