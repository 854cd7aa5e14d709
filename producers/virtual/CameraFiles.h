#pragma once
/// The files in a virtual camera, and the operations on them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace OvVirtual {

// The values are those of the registers.
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

/// The files of one camera: the user's, which exists after it was written, and the
/// factory's, which can only be read. Transfers go through a buffer.
///
/// An operation that can't be done fails and changes nothing. Any thread may call all
/// operations.
class CameraFiles {
public:
    using Content = std::vector<std::byte>;

    static constexpr size_t kBufferLength = 4096;
    static constexpr size_t kUserFileMax = 65536;

    explicit CameraFiles(std::string_view factoryCalibration);

    /// Runs the operation. `Outcome` returns its result.
    ///
    /// A read moves as many bytes as the file has, none at or beyond its end. A write
    /// moves as many as the file has room for, and fails if there is no room, so that a
    /// host that repeats it with the rest doesn't do so for ever; a gap before the offset
    /// is filled with zeros. Neither moves more than the buffer holds. Opening only for
    /// writing empties the file.
    void Execute(const FileRequest& request);
    FileOutcome Outcome() const;
    /// Size of the file in bytes; 0 if it doesn't exist.
    size_t Size(FileName file) const;

    /// A part of the buffer. Throws std::out_of_range for bytes outside of it.
    void ReadBuffer(size_t offset, std::span<std::byte> out) const;
    void WriteBuffer(size_t offset, std::span<const std::byte> in);

    /// Closes all files and clears the buffer, as switching the camera on does. Files
    /// stay.
    void Reset();

    /// Empty if the file doesn't exist.
    std::optional<Content> UserFile() const;
    /// No file may be open.
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
