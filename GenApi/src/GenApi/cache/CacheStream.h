#pragma once
/// The bytes of a cache file, on their way out and back in. All numbers are
/// little-endian whatever the machine is.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace GenApi_3_0_ORVANE {

/// What a cache file begins with: three version numbers of two bytes and a text
/// with its zero. Another form of the file gets another version, and with it other
/// file names, since the names are hashes that take these bytes in: files of an old
/// form are never read, and written anew.
std::string_view GetCacheFileHeader();

/// No more texts and no more nodes than this fit in a cache file, which keeps
/// identifiers in two bytes.
constexpr size_t kCacheFileMaxCount = 65535;

/// Collects the bytes of a cache file.
class CCacheWriter {
public:
    /// @param bytes  of the number, from the low end
    void Number(uint64_t number, size_t bytes);
    void Text(std::string_view text) { m_Bytes.append(text).push_back('\0'); }
    void Raw(std::string_view bytes) { m_Bytes.append(bytes); }
    const std::string& GetBytes() const { return m_Bytes; }

private:
    std::string m_Bytes;
};

/// Reads the bytes of a cache file. It fails as a stream does: after the first failure all reads
/// return zeros, and the state says what it was. No file can make it read beyond its end.
class CCacheReader {
public:
    enum class State {
        Good,
        Foreign,  ///< not a file of this form
        Corrupt   ///< ends too soon or speaks of what it does not hold
    };

    explicit CCacheReader(std::string_view bytes) : m_Rest(bytes) {}

    /// @tparam Bytes  of the number, 1 to 8
    template <size_t Bytes>
    uint64_t Number() {
        if (m_Rest.size() < Bytes) [[unlikely]] {
            Fail(State::Corrupt);
            return 0;
        }
        uint64_t number = 0;
        for (size_t i = 0; i < Bytes; ++i) {
            number |= uint64_t{static_cast<uint8_t>(m_Rest[i])} << (8 * i);
        }
        m_Rest.remove_prefix(Bytes);
        return number;
    }
    /// Returns a text, without its zero. It lives as long as the file's bytes.
    std::string_view Text();
    /// Returns that many bytes, or none if there are fewer. They live as long as the file's.
    std::string_view Raw(size_t bytes) {
        if (m_Rest.size() < bytes) {
            Fail(State::Corrupt);
            return {};
        }
        const std::string_view raw = m_Rest.substr(0, bytes);
        m_Rest.remove_prefix(bytes);
        return raw;
    }
    /// Skips the header, or fails as Foreign.
    void Header();
    /// Returns how many bytes are left.
    size_t GetRest() const { return m_Rest.size(); }

    bool IsGood() const { return m_State == State::Good; }
    State GetState() const { return m_State; }
    /// Sets the state. Only the first failure counts.
    void Fail(State state);

private:
    std::string_view m_Rest;
    State m_State = State::Good;
};

}  // namespace GenApi_3_0_ORVANE
