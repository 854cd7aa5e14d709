#include "TLClassXML/Zip.h"

#include <zlib.h>

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
constexpr size_t kCompressedSizeAt = 18;
constexpr size_t kSizeAt = 22;
constexpr size_t kNameLengthAt = 26;
constexpr size_t kExtraLengthAt = 28;
constexpr int kRawDeflate = -8;
/// The most that deflate can shrink data, which unmasks a size that lies.
constexpr uint64_t kBestRatio = 1032;

/// Little-endian number of `width` bytes at an offset; raises beyond the end.
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

bool InflateFirstEntry(const Bytes& archive, Bytes& out) {
    const uint64_t compressed = NumberAt(archive, kCompressedSizeAt, 4);
    const uint64_t size = NumberAt(archive, kSizeAt, 4);
    const size_t begin = kLocalHeaderSize + NumberAt(archive, kNameLengthAt, 2) +
                         NumberAt(archive, kExtraLengthAt, 2);
    if (begin > archive.size() || compressed > archive.size() - begin ||
        size > compressed * kBestRatio) {
        return false;
    }
    out.assign(size, 0);
    return InflateRaw(archive.data() + begin, compressed, out);
}

void Assign(Bytes& out, std::string_view text) {
    out.assign(text.begin(), text.end());
}

void UncompressZip(const Bytes& archive, Bytes& out) {
    if (!InflateFirstEntry(archive, out)) {
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
