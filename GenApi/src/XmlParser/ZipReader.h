#pragma once
/// Reads the first entry of a zip archive, with whichever zip library there is.

#include <cstddef>
#include <memory>
#include <string>

namespace GenApi_3_0_ORVANE {

class CZipReader {
public:
    CZipReader();
    ~CZipReader();
    CZipReader(const CZipReader&) = delete;
    CZipReader& operator=(const CZipReader&) = delete;

    bool OpenFile(const std::string& fileName);
    /// The memory is read until the reader is gone.
    bool OpenMemory(const void* data, size_t size);
    /// Whether there is a first entry; its unpacked size is known then.
    bool FindFirstEntry();
    /// Unpacks the first entry, up to a zero byte in it.
    bool Extract(std::string& text);

private:
    struct Archive;

    std::unique_ptr<Archive> m_pArchive;
    size_t m_Size = 0;
};

}  // namespace GenApi_3_0_ORVANE
