#pragma once

#include "GenApi/ChunkAdapterTrailer.h"

namespace GenApi_3_0_ORVANE {

/// Chunks of DCAM cameras on an IEEE 1394 bus. Each ends with a GUID and its little-endian
/// length; a CRC may follow the last one.
///
/// An identifier of a port is compared with as many bytes of the GUID as it has itself.
class OV_ENGINE_API CChunkAdapterDcam : public CChunkAdapterTrailer {
public:
    /// As for CChunkAdapter.
    explicit CChunkAdapterDcam(INodeMap* map = nullptr, int64_t maxChunkCacheSize = -1);

    /// Whether a CRC follows the last chunk.
    /// @throws RuntimeException for null and for a length below 1
    static bool HasCRC(const uint8_t* buffer, int64_t length);
    /// Whether the CRC fits the bytes before it. AttachBuffer doesn't check that.
    /// @throws RuntimeException as HasCRC, and for a buffer without a CRC
    static bool CheckCRC(const uint8_t* buffer, int64_t length);
    /// As CheckCRC, for a buffer that is known to have a CRC.
    static bool CheckBuffer(const uint8_t* buffer, int64_t length);
    /// Returns the CRC of the bytes: polynomial 0x1021, initial value 0, nothing reflected or
    /// inverted.
    static uint16_t CRC16(const uint8_t* bytes, int64_t length);
};

}  // namespace GenApi_3_0_ORVANE
