#include "MadeUpMemory.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <vector>

#include "framework/Failure.h"

namespace OvTest {
namespace {

constexpr std::size_t kMostBytes = 1 << 20;

void RequireSane(std::size_t length) {
    if (length > kMostBytes) {
        throw OvProducer::Failure(GenTL::GC_ERR_INVALID_ADDRESS,
                                  "No camera has " + std::to_string(length) + " bytes there");
    }
}

/// Spreads the bits of a number over all bits.
std::uint64_t Mix(std::uint64_t number) {
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31);
}

/// The text between two others, or nothing. `text` then begins behind it.
std::optional<std::string_view> Take(std::string_view& text, std::string_view begin,
                                     std::string_view end) {
    const std::size_t first = text.find(begin);
    if (first == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t last = text.find(end, first + begin.size());
    if (last == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view found = text.substr(first + begin.size(), last - first - begin.size());
    text.remove_prefix(last + end.size());
    return found;
}

/// The number that stands in an element, or nothing.
std::optional<std::uint64_t> NumberIn(std::string_view node, const std::string& element) {
    auto digits = Take(node, "<" + element + ">", "</" + element + ">");
    if (!digits) {
        return std::nullopt;
    }
    const bool isHex = digits->starts_with("0x") || digits->starts_with("0X");
    digits->remove_prefix(isHex ? 2 : 0);
    std::uint64_t number = 0;
    const auto* const end = digits->data() + digits->size();
    const auto [stop, error] = std::from_chars(digits->data(), end, number, isHex ? 16 : 10);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace

std::byte MadeUpMemory::ByteAt(std::uint64_t address) const {
    const auto written = m_written.find(address);
    if (written != m_written.end()) {
        return written->second;
    }
    switch (m_fill) {
        case Fill::Small:
            return static_cast<std::byte>(address % 4 == 3 ? 1 : 0);
        case Fill::Ones:
            return std::byte{0xFF};
        default:
            return static_cast<std::byte>(Mix(address / 8 + 1) >> (8 * (address % 8)));
    }
}

void MadeUpMemory::Read(std::uint64_t address, std::span<std::byte> out) const {
    RequireSane(out.size());
    const std::lock_guard lock(m_mutex);
    std::ranges::generate(out, [&] { return ByteAt(address++); });
}

void MadeUpMemory::Write(std::uint64_t address, std::span<const std::byte> in) {
    RequireSane(in.size());
    const std::lock_guard lock(m_mutex);
    for (const std::byte byte : in) {
        m_written[address++] = byte;
    }
}

void WriteTexts(MadeUpMemory& memory, const std::string& description) {
    std::string_view rest = description;
    while (const auto node = Take(rest, "<StringReg ", "</StringReg>")) {
        const auto address = NumberIn(*node, "Address");
        const auto length = NumberIn(*node, "Length");
        const bool isWhole = node->find("<pAddress>") == std::string_view::npos;
        if (!address || !length || !isWhole) {
            continue;
        }
        constexpr std::string_view text = "Made-up";
        std::vector<std::byte> bytes(*length);
        std::transform(text.begin(), text.begin() + std::min(text.size(), *length), bytes.begin(),
                       [](char c) { return static_cast<std::byte>(c); });
        memory.Write(*address, bytes);
    }
}

}  // namespace OvTest
