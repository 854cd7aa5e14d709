#pragma once
/// Reads the first entry of a zip archive, with whichever zip library there is.

#include <cstddef>
#include <memory>
#include <string>

namespace GenApi_3_0_ORVANE {

class CZipReader {
public:
    /// What may fail, in order.
    enum class Result { Done, NotOpened, NoEntry, NotExtracted };

    /// Unpacks the first entry, up to a zero byte in it.
    static Result ReadFile(const std::string& fileName, std::string& text);
    static Result ReadMemory(const void* data, size_t size, std::string& text);

private:
    struct Archive;

    CZipReader();
    ~CZipReader();
    CZipReader(const CZipReader&) = delete;
    CZipReader& operator=(const CZipReader&) = delete;

    bool OpenFile(const std::string& fileName);
    /// The memory is read until the reader is gone.
    bool OpenMemory(const void* data, size_t size);
    /// Whether there is a first entry; its unpacked size is known then.
    bool FindFirstEntry();
    bool Extract(std::string& text);
    Result ReadFirstEntry(std::string& text);

    std::unique_ptr<Archive> m_pArchive;
    size_t m_Size = 0;
};

}  // namespace GenApi_3_0_ORVANE
