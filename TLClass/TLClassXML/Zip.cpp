#include "TLClassXML/Zip.h"

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string_view>

#include "Base/GCException.h"

namespace OVTLClass {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr uint32_t kLocalHeaderMagic = 0x04034B50;
constexpr size_t kLocalHeaderSize = 30;
constexpr size_t kFlagsAt = 6;
constexpr size_t kMethodAt = 8;
constexpr size_t kCompressedSizeAt = 18;
constexpr size_t kSizeAt = 22;
constexpr size_t kNameLengthAt = 26;
constexpr size_t kExtraLengthAt = 28;
constexpr int kRawDeflate = -8;
/// The most that deflate can shrink data, which unmasks a size that lies.
constexpr uint64_t kBestRatio = 1032;
/// No description comes near it.
constexpr size_t kMostUnpacked = size_t{256} << 20;

enum class Method : uint32_t { Stored = 0, Deflated = 8 };
/// Sizes and checksum follow the data.
constexpr uint32_t kSizesFollow = 8;
constexpr uint32_t kDescriptorMagic = 0x08074B50;

/// Little-endian number of `width` bytes at an offset; throws beyond the end.
uint32_t NumberAt(const Bytes& data, size_t offset, size_t width) {
    uint32_t number = 0;
    for (size_t i = 0; i < width; ++i) {
        number |= static_cast<uint32_t>(data.at(offset + i)) << (8 * i);
    }
    return number;
}

/// Ends an inflation whatever happens.
struct InflateEnd {
    z_stream& stream;
    ~InflateEnd() { inflateEnd(&stream); }
};

/// Whether the raw deflate data came to its end within `out`.
bool InflateRaw(const unsigned char* data, size_t size, Bytes& out) {
    z_stream stream{};
    if (inflateInit2(&stream, kRawDeflate) != Z_OK) {
        return false;
    }
    const InflateEnd end{stream};
    stream.next_in = const_cast<unsigned char*>(data);
    stream.avail_in = static_cast<uInt>(size);
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(out.size());
    return inflate(&stream, Z_FINISH) == Z_STREAM_END;
}

/// As above, for data whose size only its end shows.
bool InflateToTheEnd(const unsigned char* data, size_t size, Bytes& out) {
    constexpr size_t kFirstGuess = 4;
    out.assign(std::min(size * kFirstGuess + 1, kMostUnpacked), 0);
    z_stream stream{};
    // Between two calls the output of the first is the window of the second.
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
        return false;
    }
    const InflateEnd end{stream};
    stream.next_in = const_cast<unsigned char*>(data);
    stream.avail_in = static_cast<uInt>(size);
    for (;;) {
        stream.next_out = out.data() + stream.total_out;
        stream.avail_out = static_cast<uInt>(out.size() - stream.total_out);
        const int status = inflate(&stream, Z_NO_FLUSH);
        if (status == Z_STREAM_END) {
            out.resize(stream.total_out);
            return true;
        }
        if (status != Z_OK || stream.avail_out != 0 || out.size() == kMostUnpacked) {
            return false;
        }
        out.resize(std::min(2 * out.size(), kMostUnpacked));
    }
}

/// Whether the record that follows stored data ends it at `end`.
bool IsDescriptor(const Bytes& archive, size_t end, size_t size, uint32_t checksum) {
    constexpr size_t kFieldSize = 4;
    constexpr size_t kFields = 3;
    const bool hasMagic = end + kFieldSize <= archive.size() &&
                          NumberAt(archive, end, kFieldSize) == kDescriptorMagic;
    const size_t fields = end + (hasMagic ? kFieldSize : 0);
    return fields + kFields * kFieldSize <= archive.size() &&
           NumberAt(archive, fields, kFieldSize) == checksum &&
           NumberAt(archive, fields + kFieldSize, kFieldSize) == size &&
           NumberAt(archive, fields + 2 * kFieldSize, kFieldSize) == size;
}

/// Stored data has no end of its own: it is where a record with its size and
/// its checksum follows.
bool CopyToTheDescriptor(const Bytes& archive, size_t begin, Bytes& out) {
    uLong checksum = crc32(0, nullptr, 0);
    for (size_t end = begin; end <= archive.size(); ++end) {
        if (IsDescriptor(archive, end, end - begin, static_cast<uint32_t>(checksum))) {
            out.assign(archive.begin() + static_cast<ptrdiff_t>(begin),
                       archive.begin() + static_cast<ptrdiff_t>(end));
            return true;
        }
        if (end < archive.size()) {
            checksum = crc32(checksum, archive.data() + end, 1);
        }
    }
    return false;
}

/// The first entry of an archive, as the header before it describes it.
struct Entry {
    explicit Entry(const Bytes& archive)
        : method(static_cast<Method>(NumberAt(archive, kMethodAt, 2))),
          compressed(NumberAt(archive, kCompressedSizeAt, 4)),
          size(NumberAt(archive, kSizeAt, 4)),
          begin(kLocalHeaderSize + NumberAt(archive, kNameLengthAt, 2) +
                NumberAt(archive, kExtraLengthAt, 2)),
          isSizeUnknown((NumberAt(archive, kFlagsAt, 2) & kSizesFollow) != 0 && compressed == 0) {}

    Method method;
    uint64_t compressed;
    uint64_t size;
    size_t begin;
    bool isSizeUnknown;
};

bool UnpackDeflated(const Bytes& archive, const Entry& entry, Bytes& out) {
    const unsigned char* const data = archive.data() + entry.begin;
    if (entry.isSizeUnknown) {
        return InflateToTheEnd(data, archive.size() - entry.begin, out);
    }
    if (entry.compressed > archive.size() - entry.begin ||
        entry.size > std::min<uint64_t>(entry.compressed * kBestRatio, kMostUnpacked)) {
        return false;
    }
    out.assign(entry.size, 0);
    return InflateRaw(data, entry.compressed, out);
}

bool CopyStored(const Bytes& archive, const Entry& entry, Bytes& out) {
    if (entry.isSizeUnknown) {
        return CopyToTheDescriptor(archive, entry.begin, out);
    }
    if (entry.size != entry.compressed || entry.size > archive.size() - entry.begin) {
        return false;
    }
    const auto first = archive.begin() + static_cast<ptrdiff_t>(entry.begin);
    out.assign(first, first + static_cast<ptrdiff_t>(entry.size));
    return true;
}

bool UnpackFirstEntry(const Bytes& archive, Bytes& out) {
    const Entry entry(archive);
    if (entry.begin > archive.size()) {
        return false;
    }
    switch (entry.method) {
        case Method::Stored:
            return CopyStored(archive, entry, out);
        case Method::Deflated:
            return UnpackDeflated(archive, entry, out);
        default:
            return false;
    }
}

void Assign(Bytes& out, std::string_view text) {
    out.assign(text.begin(), text.end());
}

void UncompressZip(const Bytes& archive, Bytes& out) {
    if (!UnpackFirstEntry(archive, out)) {
        Assign(out, "Unable to uncompress ZIP file");
    }
}

void UncompressStream(const Bytes& data, Bytes& out) {
    Bytes unpacked(100 * data.size() + 1, 0);
    uLongf size = unpacked.size() - 1;
    if (uncompress(unpacked.data(), &size, data.data(), data.size()) != Z_OK) {
        std::puts("Unable to uncompress XML data");
        out = data;
        return;
    }
    Assign(out, reinterpret_cast<const char*>(unpacked.data()));
}

bool IsZip(const Bytes& data) {
    return data.size() >= 4 && NumberAt(data, 0, 4) == kLocalHeaderMagic;
}

}  // namespace

bool CZip::Uncompress(const Bytes& in, Bytes& out) {
    try {
        if (IsZip(in)) {
            UncompressZip(in, out);
        } else {
            UncompressStream(in, out);
        }
        return true;
    } catch (const std::exception&) {
        return false;
    } catch (const GenICam_3_0_ORVANE::GenericException&) {
        return false;
    }
}

}  // namespace OVTLClass
