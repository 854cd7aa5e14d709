#include "gige/device/DescriptionText.h"

#include <zlib.h>

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "framework/Failure.h"

namespace OvGige {
namespace {

using OvProducer::Failure;

/// No description is that long; an archive may pretend that it unpacks to it.
constexpr size_t kTextMax = size_t{256} << 20;

// The header before an archive's first entry, whose numbers are little-endian.
constexpr size_t kHeaderSize = 30;
constexpr size_t kMethodAt = 8;
constexpr size_t kStoredSizeAt = 18;
constexpr size_t kNameLengthAt = 26;
constexpr size_t kExtraLengthAt = 28;
constexpr unsigned kStored = 0;
constexpr unsigned kDeflated = 8;

[[noreturn]] void ThrowBroken() {
    throw Failure(GenTL::GC_ERR_NOT_AVAILABLE, "The camera's description can't be unpacked");
}

size_t NumberAt(const std::vector<std::byte>& file, size_t at, size_t bytes) {
    size_t value = 0;
    for (size_t i = bytes; i-- > 0;) {
        value = value << 8 | std::to_integer<size_t>(file[at + i]);
    }
    return value;
}

/// Unpacks without the sizes of the header: some archives have them only after the data.
std::string Inflate(std::span<const std::byte> packed) {
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
        ThrowBroken();
    }
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> end(&stream, &inflateEnd);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string text;
    std::array<char, 65536> piece;
    for (int result = Z_OK; result != Z_STREAM_END;) {
        stream.next_out = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_out = static_cast<uInt>(piece.size());
        result = inflate(&stream, Z_NO_FLUSH);
        text.append(piece.data(), piece.size() - stream.avail_out);
        if ((result != Z_OK && result != Z_STREAM_END) || text.size() > kTextMax) {
            ThrowBroken();
        }
    }
    return text;
}

std::string Unpack(const std::vector<std::byte>& file) {
    if (file.size() < kHeaderSize) {
        ThrowBroken();
    }
    const size_t begin =
        kHeaderSize + NumberAt(file, kNameLengthAt, 2) + NumberAt(file, kExtraLengthAt, 2);
    const size_t method = NumberAt(file, kMethodAt, 2);
    const size_t stored = NumberAt(file, kStoredSizeAt, 4);
    if (begin > file.size() || (method == kStored && stored > file.size() - begin)) {
        ThrowBroken();
    }
    const auto packed = std::span(file).subspan(begin);
    if (method == kStored) {
        return {reinterpret_cast<const char*>(packed.data()), stored};
    }
    return method == kDeflated ? Inflate(packed) : (ThrowBroken(), std::string());
}

}  // namespace

std::string ReadDescription(const OvProducer::Port& port) {
    const OvProducer::DescriptionUrl& url = port.UrlAt(0);
    std::vector<std::byte> file(url.size);
    port.Read(url.address, file);
    const bool isArchive =
        file.size() > 1 && file[0] == std::byte{'P'} && file[1] == std::byte{'K'};
    return isArchive ? Unpack(file)
                     : std::string(reinterpret_cast<const char*>(file.data()), file.size());
}

}  // namespace OvGige
