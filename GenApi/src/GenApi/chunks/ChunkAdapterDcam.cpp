// The CRC that may follow the chunks of cameras on an IEEE 1394 bus. Their layout is in
// ChunkLayout.cpp.

#include "GenApi/ChunkAdapterDcam.h"

#include <array>

#include "Base/GCException.h"
#include "chunks/ChunkLayout.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// One empty chunk of 24 bytes, then the CRC.
constexpr int64_t kShortestWithCrc = 28;

/// A table for whole bytes, computed by the compiler: frames have millions of bytes.
constexpr std::array<uint16_t, 256> MakeCrcTable() {
    constexpr unsigned kPolynomial = 0x1021;
    constexpr unsigned kTopBit = 0x8000;
    std::array<uint16_t, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        unsigned rest = byte << 8;
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest << 1) ^ ((rest & kTopBit) != 0 ? kPolynomial : 0);
        }
        table[byte] = static_cast<uint16_t>(rest);
    }
    return table;
}

constexpr std::array<uint16_t, 256> kCrcTable = MakeCrcTable();

void RequireBuffer(const uint8_t* buffer, int64_t length) {
    if (buffer == nullptr) {
        RUNTIME_EXCEPTION("Invalid buffer passed to chunk adapter!");
    }
    if (length <= 0) {
        RUNTIME_EXCEPTION("Invalid buffer length passed to chunk adapter!");
    }
}

/// The places of this format count from the end of the buffer.
uint32_t WordBefore(const uint8_t* end, int64_t distance) {
    return ReadWord(end - distance, std::endian::little);
}

}  // namespace

/// No flag says whether there is a CRC, but the last words do: a chunk ends with its length and
/// the inverted length, and a CRC moves these one word away from the end.
bool CChunkAdapterDcam::HasCRC(const uint8_t* buffer, int64_t length) {
    RequireBuffer(buffer, length);
    if (length < kShortestWithCrc) {
        return false;
    }
    constexpr int64_t kLengthPlace = 8 + kCrcBytes;
    constexpr int64_t kComplementPlace = 4 + kCrcBytes;
    const uint8_t* const end = buffer + length;
    return WordBefore(end, kLengthPlace) == ~WordBefore(end, kComplementPlace);
}

/// The most significant bit first, without reflection.
uint16_t CChunkAdapterDcam::CRC16(const uint8_t* bytes, int64_t length) {
    unsigned crc = 0;
    for (int64_t i = 0; i < length; ++i) {
        crc = (crc << 8 ^ kCrcTable[(crc >> 8 ^ bytes[i]) & 0xFF]) & 0xFFFF;
    }
    return static_cast<uint16_t>(crc);
}

/// The CRC covers all bytes before it.
bool CChunkAdapterDcam::CheckBuffer(const uint8_t* buffer, int64_t length) {
    RequireBuffer(buffer, length);
    // The sum has 16 bits, the word 32: its upper half must be 0.
    return length >= kCrcBytes &&
           WordBefore(buffer + length, kCrcBytes) == CRC16(buffer, length - kCrcBytes);
}

/// A buffer without a CRC is neither right nor wrong.
bool CChunkAdapterDcam::CheckCRC(const uint8_t* buffer, int64_t length) {
    if (!HasCRC(buffer, length)) {
        RUNTIME_EXCEPTION("The buffer does not have a CRC!");
    }
    return CheckBuffer(buffer, length);
}

}  // namespace GenApi_3_0_ORVANE
