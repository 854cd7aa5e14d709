#include "gige/control/CameraMemory.h"

#include <algorithm>
#include <array>

#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/Registers.h"

namespace OvGige {
namespace {

using OvProducer::Failure;

constexpr uint64_t kWord = 4;

[[noreturn]] void ThrowWrongAnswer() {
    throw Failure(GenTL::GC_ERR_IO, "The camera's answer to a read isn't what was asked for");
}

/// The whole words around an access.
struct Words {
    uint64_t first;
    uint64_t end;
};

Words WordsAround(uint64_t address, size_t length) {
    constexpr uint64_t kSpace = uint64_t{1} << 32;
    if (length > kSpace || address > kSpace - length) {
        throw Failure(GenTL::GC_ERR_INVALID_ADDRESS,
                      "A GigE Vision camera has addresses of 32 bits");
    }
    return {address / kWord * kWord, (address + length + kWord - 1) / kWord * kWord};
}

/// Calls `move(offset, length)` for each piece of `length` bytes that fits a command.
template <typename Move>
void InPieces(size_t length, size_t largest, const Move& move) {
    for (size_t offset = 0; offset < length; offset += largest) {
        move(offset, std::min(largest, length - offset));
    }
}

}  // namespace

uint32_t CameraMemory::ReadRegister(uint32_t address,
                                    std::optional<std::chrono::milliseconds> limit) {
    const auto answer = ParseNumbers(
        m_channel.Exchange(Command::ReadRegister, BuildNumbers(std::array{address}), 0, limit));
    if (!answer || answer->size() != 1) {
        ThrowWrongAnswer();
    }
    return answer->front();
}

uint32_t CameraMemory::ReadRegisterIfThere(uint32_t address) {
    try {
        return ReadRegister(address);
    } catch (const Refusal&) {
        return 0;
    }
}

void CameraMemory::WriteRegister(uint32_t address, uint32_t value) {
    const std::array writes{RegisterWrite{.address = address, .value = value}};
    m_channel.Exchange(Command::WriteRegister, BuildWrites(writes));
}

void CameraMemory::Read(uint64_t address, std::span<std::byte> out) {
    if (out.empty()) {
        return;
    }
    const Words words = WordsAround(address, out.size());
    const auto first = static_cast<uint32_t>(words.first);
    if (words.first == address && words.end == address + out.size()) {
        ReadWords(first, out);
        return;
    }
    Bytes around(words.end - words.first);
    ReadWords(first, around);
    std::copy_n(around.begin() + static_cast<ptrdiff_t>(address - words.first), out.size(),
                out.begin());
}

void CameraMemory::Write(uint64_t address, ByteView in) {
    if (in.empty()) {
        return;
    }
    const Words words = WordsAround(address, in.size());
    const auto first = static_cast<uint32_t>(words.first);
    if (words.first == address && words.end == address + in.size()) {
        WriteWords(first, in);
        return;
    }
    // Only the words at the two ends have bytes of others.
    Bytes around(words.end - words.first);
    const std::span<std::byte> all(around);
    ReadWords(first, all.first(kWord));
    if (all.size() > kWord) {
        ReadWords(static_cast<uint32_t>(words.end - kWord), all.last(kWord));
    }
    std::copy(in.begin(), in.end(), around.begin() + static_cast<ptrdiff_t>(address - words.first));
    WriteWords(first, around);
}

void CameraMemory::ReadWords(uint32_t address, std::span<std::byte> out) {
    InPieces(out.size(), kMemoryBlockMax, [&](size_t offset, size_t length) {
        const MemoryRange range{.address = static_cast<uint32_t>(address + offset),
                                .count = static_cast<uint16_t>(length)};
        const Bytes answer = m_channel.Exchange(Command::ReadMemory, BuildRange(range));
        const auto memory = ParseMemory(answer);
        if (!memory || memory->address != range.address || memory->bytes.size() != length) {
            ThrowWrongAnswer();
        }
        std::copy(memory->bytes.begin(), memory->bytes.end(),
                  out.begin() + static_cast<ptrdiff_t>(offset));
    });
}

void CameraMemory::WriteWords(uint32_t address, ByteView in) {
    if (Offers(kOffersWriteMemory)) {
        InPieces(in.size(), kMemoryBlockMax, [&](size_t offset, size_t length) {
            m_channel.Exchange(Command::WriteMemory,
                               BuildMemory({.address = static_cast<uint32_t>(address + offset),
                                            .bytes = in.subspan(offset, length)}));
        });
        return;
    }
    InPieces(in.size(), kWord, [&](size_t offset, size_t) {
        WriteRegister(static_cast<uint32_t>(address + offset),
                      ReadBig<uint32_t>(in.subspan(offset)));
    });
}

}  // namespace OvGige
