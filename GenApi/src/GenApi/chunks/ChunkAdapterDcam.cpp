#include "GenApi/ChunkAdapterDcam.h"

#include <array>

#include "Base/GCException.h"
#include "chunks/ChunkLayout.h"

namespace GenApi_3_0_ORVANE {

namespace {

constexpr int64_t kShortestWithCrc = 28;

constexpr std::array<uint16_t, 256> MakeCrcTable() {
    constexpr unsigned kPolynomial = 0x1021;
    std::array<uint16_t, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        unsigned rest = byte << 8;
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest << 1) ^ ((rest & 0x8000) != 0 ? kPolynomial : 0);
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

uint32_t WordBefore(const uint8_t* end, int64_t distance) {
    return ReadWord(end - distance, std::endian::little);
}

}  // namespace

bool CChunkAdapterDcam::HasCRC(const uint8_t* buffer, int64_t length) {
    RequireBuffer(buffer, length);
    if (length < kShortestWithCrc) {
        return false;
    }
    const uint8_t* const end = buffer + length;
    return WordBefore(end, 12) == ~WordBefore(end, 8);
}

uint16_t CChunkAdapterDcam::CRC16(const uint8_t* bytes, int64_t length) {
    unsigned crc = 0;
    for (int64_t i = 0; i < length; ++i) {
        crc = (crc << 8 ^ kCrcTable[(crc >> 8 ^ bytes[i]) & 0xFF]) & 0xFFFF;
    }
    return static_cast<uint16_t>(crc);
}

bool CChunkAdapterDcam::CheckBuffer(const uint8_t* buffer, int64_t length) {
    RequireBuffer(buffer, length);
    return length >= kCrcBytes &&
           WordBefore(buffer + length, kCrcBytes) == CRC16(buffer, length - kCrcBytes);
}

bool CChunkAdapterDcam::CheckCRC(const uint8_t* buffer, int64_t length) {
    if (!HasCRC(buffer, length)) {
        RUNTIME_EXCEPTION("The buffer does not have a CRC!");
    }
    return CheckBuffer(buffer, length);
}

}  // namespace GenApi_3_0_ORVANE
