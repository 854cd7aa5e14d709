#pragma once
/// Reads the first entry of a zip archive. Cameras keep their descriptions zipped, with one entry.

#include <cstddef>
#include <string>

namespace GenApi_3_0_ORVANE {

class CZipReader {
public:
    /// What may fail, in order.
    enum class Result { Done, NotOpened, NoEntry, NotExtracted };

    /// Unpacks the first entry, up to a zero byte in it.
    static Result ReadFile(const std::string& fileName, std::string& text);
    static Result ReadMemory(const void* data, size_t size, std::string& text);
};

}  // namespace GenApi_3_0_ORVANE
