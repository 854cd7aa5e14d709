#pragma once
/// Zipped descriptions for tests.

#include <cstddef>
#include <cstdint>
#include <string>

namespace EngineTest {

/// The check sum of zip archives.
inline uint32_t Crc32(const std::string& data) {
    uint32_t crc = 0xFFFFFFFF;
    for (const char byte : data) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~crc;
}

inline void AppendLittleEndian(std::string& to, size_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        to += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

/// Writes archives byte by byte, so that tests can spoil each of them.
class ZipWriter {
public:
    enum Method { Stored = 0, Deflated = 8 };

    /// @param claimedSize  the unpacked size in the archive; by default the true one
    /// @param crcError     added to the check sum
    void Add(const std::string& name, const std::string& content, Method method = Stored,
             size_t claimedSize = std::string::npos, uint32_t crcError = 0) {
        const std::string packed = method == Stored ? content : Deflate(content);
        const size_t size = claimedSize == std::string::npos ? content.size() : claimedSize;
        std::string header;
        AppendLittleEndian(header, 20, 2);
        AppendLittleEndian(header, 0, 2);
        AppendLittleEndian(header, method, 2);
        AppendLittleEndian(header, 0x00210000, 4);
        AppendLittleEndian(header, Crc32(content) ^ crcError, 4);
        AppendLittleEndian(header, packed.size(), 4);
        AppendLittleEndian(header, size, 4);
        AppendLittleEndian(header, name.size(), 2);
        AppendLittleEndian(header, 0, 2);
        m_Directory += "PK\x01\x02";
        AppendLittleEndian(m_Directory, 20, 2);
        m_Directory += header + std::string(10, '\0');
        AppendLittleEndian(m_Directory, m_Entries.size(), 4);
        m_Directory += name;
        m_Entries += "PK\x03\x04" + header + name + packed;
        ++m_Count;
    }

    std::string Finish() const {
        std::string end = "PK\x05\x06" + std::string(4, '\0');
        AppendLittleEndian(end, m_Count, 2);
        AppendLittleEndian(end, m_Count, 2);
        AppendLittleEndian(end, m_Directory.size(), 4);
        AppendLittleEndian(end, m_Entries.size(), 4);
        AppendLittleEndian(end, 0, 2);
        return m_Entries + m_Directory + end;
    }

private:
    /// A deflated stream of one block that is not compressed.
    static std::string Deflate(const std::string& content) {
        std::string packed(1, '\x01');
        AppendLittleEndian(packed, content.size(), 2);
        AppendLittleEndian(packed, ~content.size(), 2);
        return packed + content;
    }

    std::string m_Entries;
    std::string m_Directory;
    size_t m_Count = 0;
};

/// An archive of one description.
inline std::string ZipOf(const std::string& content, ZipWriter::Method method = ZipWriter::Stored) {
    ZipWriter writer;
    writer.Add("description.xml", content, method);
    return writer.Finish();
}

}  // namespace EngineTest
