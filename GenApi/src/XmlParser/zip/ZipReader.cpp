// Finds the entry by the directory at the end of the archive, where sizes and checksum are right
// whichever way it was written. A library for archives of all kinds would be loaded, with others
// that it needs for encryption, by every program that uses a camera.

#include "zip/ZipReader.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "nodes/DescriptionLimits.h"

namespace GenApi_3_0_ORVANE {

namespace {

using ZipBytes = std::vector<unsigned char>;

/// The little-endian number of `width` bytes at an offset that the caller knows to be there.
uint32_t NumberAt(const ZipBytes& data, size_t offset, size_t width) {
    uint32_t number = 0;
    for (size_t i = 0; i < width; ++i) {
        number |= static_cast<uint32_t>(data[offset + i]) << (8 * i);
    }
    return number;
}

/// The archive's bytes, wherever they are.
class IArchive {
public:
    virtual ~IArchive() = default;
    virtual uint64_t Size() const = 0;

    /// Whether `count` bytes could be read.
    bool Read(uint64_t offset, uint64_t count, ZipBytes& to) {
        if (offset > Size() || count > Size() - offset) {
            return false;
        }
        to.resize(count);
        return Copy(offset, to);
    }

private:
    /// Fills `to` with bytes that are within the size.
    virtual bool Copy(uint64_t offset, ZipBytes& to) = 0;
};

class CMemoryArchive : public IArchive {
public:
    CMemoryArchive(const void* data, size_t size)
        : m_pData(static_cast<const unsigned char*>(data)), m_Size(size) {}
    uint64_t Size() const override { return m_Size; }

private:
    bool Copy(uint64_t offset, ZipBytes& to) override {
        std::copy_n(m_pData + offset, to.size(), to.begin());
        return true;
    }

    const unsigned char* m_pData;
    size_t m_Size;
};

class CFileArchive : public IArchive {
public:
    /// What isn't a file that can be read is empty.
    explicit CFileArchive(const std::string& name) : m_File(name, std::ios::binary) {
        std::error_code failure;
        const uintmax_t size = std::filesystem::file_size(name, failure);
        m_Size = failure || !m_File ? 0 : size;
    }
    uint64_t Size() const override { return m_Size; }

private:
    /// Fails as well if the file has become shorter.
    bool Copy(uint64_t offset, ZipBytes& to) override {
        m_File.seekg(static_cast<std::streamoff>(offset));
        m_File.read(reinterpret_cast<char*>(to.data()), static_cast<std::streamsize>(to.size()));
        return m_File.good();
    }

    std::ifstream m_File;
    uint64_t m_Size = 0;
};

/// The record that ends an archive, before a comment.
struct ZipEnd {
    static constexpr uint32_t kMagic = 0x06054B50;
    static constexpr size_t kSize = 22;
    static constexpr size_t kMostComment = 0xFFFF;

    uint32_t entries = 0;
    uint32_t directoryBegin = 0;

    /// The last place where such a record fits.
    bool Find(IArchive& archive) {
        ZipBytes tail;
        const uint64_t size = std::min<uint64_t>(archive.Size(), kSize + kMostComment);
        if (size < kSize || !archive.Read(archive.Size() - size, size, tail)) {
            return false;
        }
        for (size_t at = tail.size() - kSize + 1; at-- > 0;) {
            if (NumberAt(tail, at, 4) == kMagic &&
                at + kSize + NumberAt(tail, at + 20, 2) <= tail.size()) {
                entries = NumberAt(tail, at + 10, 2);
                directoryBegin = NumberAt(tail, at + 16, 4);
                return true;
            }
        }
        return false;
    }
};

/// An entry as the directory describes it.
struct ZipEntry {
    static constexpr uint32_t kMagic = 0x02014B50;
    static constexpr size_t kSize = 46;
    static constexpr uint32_t kEncrypted = 1;
    static constexpr uint32_t kStored = 0;
    static constexpr uint32_t kDeflated = 8;

    uint32_t flags = 0;
    uint32_t method = 0;
    uint32_t checksum = 0;
    uint32_t packedSize = 0;
    uint32_t size = 0;
    uint32_t headerBegin = 0;

    bool Read(IArchive& archive, uint64_t offset) {
        ZipBytes record;
        if (!archive.Read(offset, kSize, record) || NumberAt(record, 0, 4) != kMagic) {
            return false;
        }
        flags = NumberAt(record, 8, 2);
        method = NumberAt(record, 10, 2);
        checksum = NumberAt(record, 16, 4);
        packedSize = NumberAt(record, 20, 4);
        size = NumberAt(record, 24, 4);
        headerBegin = NumberAt(record, 42, 4);
        return true;
    }
};

/// The entry's bytes as they are in the archive, after a header of its own.
bool ReadPacked(IArchive& archive, const ZipEntry& entry, ZipBytes& packed) {
    constexpr uint32_t kMagic = 0x04034B50;
    constexpr size_t kSize = 30;
    ZipBytes header;
    if (!archive.Read(entry.headerBegin, kSize, header) || NumberAt(header, 0, 4) != kMagic) {
        return false;
    }
    const uint64_t begin =
        uint64_t{entry.headerBegin} + kSize + NumberAt(header, 26, 2) + NumberAt(header, 28, 2);
    return archive.Read(begin, entry.packedSize, packed);
}

/// Whether raw deflated data fills the buffer and ends there.
bool Inflate(ZipBytes& packed, ZipBytes& unpacked) {
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
        return false;
    }
    unsigned char none = 0;
    stream.next_in = packed.data();
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = unpacked.empty() ? &none : unpacked.data();
    stream.avail_out = static_cast<uInt>(unpacked.size());
    const bool isAtEnd = inflate(&stream, Z_FINISH) == Z_STREAM_END;
    inflateEnd(&stream);
    return isAtEnd && stream.avail_out == 0;
}

bool UnpackEntry(const ZipEntry& entry, ZipBytes& packed, ZipBytes& unpacked) {
    switch (entry.method) {
        case ZipEntry::kStored:
            unpacked.swap(packed);
            return unpacked.size() == entry.size;
        case ZipEntry::kDeflated:
            unpacked.resize(entry.size);
            return Inflate(packed, unpacked);
        default:
            return false;
    }
}

/// The sizes are what the archive claims, so they are bounded before memory is taken. The text
/// ends at a zero byte, which no XML document holds.
bool ExtractText(IArchive& archive, const ZipEntry& entry, std::string& text) {
    ZipBytes packed;
    ZipBytes unpacked;
    if ((entry.flags & ZipEntry::kEncrypted) != 0 || entry.size > kMaxUnpackedBytes ||
        !ReadPacked(archive, entry, packed) || !UnpackEntry(entry, packed, unpacked) ||
        crc32_z(0, unpacked.data(), unpacked.size()) != entry.checksum) {
        return false;
    }
    text.assign(unpacked.begin(), std::find(unpacked.begin(), unpacked.end(), '\0'));
    return true;
}

/// The three failures have texts of their own.
CZipReader::Result ReadFirstEntry(IArchive& archive, std::string& text) {
    ZipEnd end;
    ZipEntry entry;
    if (!end.Find(archive)) {
        return CZipReader::Result::NotOpened;
    }
    if (end.entries == 0) {
        return CZipReader::Result::NoEntry;
    }
    if (!entry.Read(archive, end.directoryBegin)) {
        return CZipReader::Result::NotOpened;
    }
    return ExtractText(archive, entry, text) ? CZipReader::Result::Done
                                             : CZipReader::Result::NotExtracted;
}

}  // namespace

CZipReader::Result CZipReader::ReadFile(const std::string& fileName, std::string& text) {
    CFileArchive archive(fileName);
    return ReadFirstEntry(archive, text);
}

CZipReader::Result CZipReader::ReadMemory(const void* data, size_t size, std::string& text) {
    CMemoryArchive archive(data, size);
    return ReadFirstEntry(archive, text);
}

}  // namespace GenApi_3_0_ORVANE
