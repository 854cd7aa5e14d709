#include "framework/Zip.h"

#include <zlib.h>

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>

namespace OvProducer {
namespace {

// 1980-01-01, the format's first day, so that equal contents make equal archives.
constexpr uint16_t kDate = (1 << 5) | 1;
// The signatures of a file's header, of its entry in the directory, and of the end.
constexpr uint32_t kLocalHeader = 0x04034B50;
constexpr uint32_t kCentralHeader = 0x02014B50;
constexpr uint32_t kEndOfDirectory = 0x06054B50;
constexpr uint16_t kVersion = 20;
constexpr uint16_t kDeflated = 8;

class Writer {
public:
    void U16(std::initializer_list<size_t> values) { Put(values, 2); }
    void U32(std::initializer_list<size_t> values) { Put(values, 4); }
    void Bytes(std::string_view bytes) {
        const auto* first = reinterpret_cast<const std::byte*>(bytes.data());
        m_out.insert(m_out.end(), first, first + bytes.size());
    }
    std::vector<std::byte> Take() { return std::move(m_out); }
    size_t Position() const { return m_out.size(); }

private:
    void Put(std::initializer_list<size_t> values, unsigned bytes) {
        for (const size_t value : values) {
            for (unsigned i = 0; i < bytes; ++i) {
                m_out.push_back(static_cast<std::byte>(value >> (8 * i)));
            }
        }
    }

    std::vector<std::byte> m_out;
};

std::string Deflate(std::string_view content) {
    z_stream stream{};
    // Negative window bits: a bare deflate stream, without zlib's own header.
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("zlib can't start");
    }
    std::string out(deflateBound(&stream, static_cast<uLong>(content.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    const int status = deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    if (status != Z_STREAM_END) {
        throw std::runtime_error("zlib can't deflate");
    }
    return out;
}

}  // namespace

std::vector<std::byte> MakeZip(std::string_view name, std::string_view content) {
    const std::string packed = Deflate(content);
    const auto crc = static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(content.data()),
                                                 static_cast<uInt>(content.size())));

    Writer out;
    out.U32({kLocalHeader});
    out.U16({kVersion, 0, kDeflated, 0, kDate});
    out.U32({crc, packed.size(), content.size()});
    out.U16({name.size(), 0});
    out.Bytes(name);
    out.Bytes(packed);

    const size_t directory = out.Position();
    out.U32({kCentralHeader});
    out.U16({kVersion, kVersion, 0, kDeflated, 0, kDate});
    out.U32({crc, packed.size(), content.size()});
    out.U16({name.size(), 0, 0, 0, 0});
    out.U32({0, 0});
    out.Bytes(name);
    const size_t directorySize = out.Position() - directory;

    out.U32({kEndOfDirectory});
    out.U16({0, 0, 1, 1});
    out.U32({directorySize, directory});
    out.U16({0});
    return out.Take();
}

}  // namespace OvProducer
