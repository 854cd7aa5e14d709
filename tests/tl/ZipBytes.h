#pragma once
/// Archives for tests, down to the fields of their header.

#include <zlib.h>

#include <cstdint>
#include <string>
#include <vector>

namespace OVTLClass {

using Bytes = std::vector<unsigned char>;

inline Bytes ToBytes(const std::string& text) {
    return {text.begin(), text.end()};
}

inline std::string ToText(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

/// The content as zlib packs it: -15 is raw data as archives hold it, 15 a
/// stream with header and checksum.
inline Bytes Deflate(const std::string& content, int windowBits) {
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
    Bytes packed(deflateBound(&stream, content.size()));
    Bytes source = ToBytes(content);
    stream.next_in = source.data();
    stream.avail_in = static_cast<uInt>(source.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

/// One entry of an archive: its local header and data.
struct ZipEntry {
    explicit ZipEntry(const std::string& content)
        : size(static_cast<uint32_t>(content.size())), data(Deflate(content, -15)) {
        packedSize = static_cast<uint32_t>(data.size());
    }

    Bytes Build() const {
        Bytes bytes;
        const auto add = [&bytes](uint64_t number, int width) {
            for (int i = 0; i < width; ++i) {
                bytes.push_back(static_cast<unsigned char>(number >> (8 * i)));
            }
        };
        add(0x04034B50, 4);
        add(20, 2);  // version
        add(flags, 2);
        add(method, 2);
        add(0, 4);  // time and date
        add(0, 4);  // checksum
        add(packedSize, 4);
        add(size, 4);
        add(name.size(), 2);
        add(extra.size(), 2);
        bytes.insert(bytes.end(), name.begin(), name.end());
        bytes.insert(bytes.end(), extra.begin(), extra.end());
        bytes.insert(bytes.end(), data.begin(), data.end());
        bytes.insert(bytes.end(), descriptor.begin(), descriptor.end());
        return bytes;
    }

    /// Moves sizes and checksum of the content into a record after the data.
    void MoveSizesBehind(const std::string& content, bool hasMagic) {
        const auto add = [this](uint64_t number) {
            for (int i = 0; i < 4; ++i) {
                descriptor.push_back(static_cast<unsigned char>(number >> (8 * i)));
            }
        };
        if (hasMagic) {
            add(0x08074B50);
        }
        const Bytes bytes = ToBytes(content);
        add(crc32(crc32(0, nullptr, 0), bytes.data(), static_cast<uInt>(bytes.size())));
        add(packedSize);
        add(size);
        flags |= 8;
        packedSize = 0;
        size = 0;
    }
    /// Stores the content as it is.
    void Store(const std::string& content) {
        method = 0;
        data = ToBytes(content);
        packedSize = size;
    }

    uint16_t flags = 0;
    uint16_t method = 8;
    uint32_t packedSize = 0;
    uint32_t size;
    std::string name = "description.xml";
    std::string extra;
    Bytes data;
    Bytes descriptor;
};

}  // namespace OVTLClass
