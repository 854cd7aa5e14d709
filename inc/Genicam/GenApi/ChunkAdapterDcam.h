#pragma once

#include "GenApi/ChunkAdapterTrailer.h"

namespace GenApi_3_0_ORVANE {

/// Chunks of DCAM cameras on an IEEE 1394 bus: little-endian lengths behind a
/// GUID, and perhaps a CRC behind the last chunk.
///
/// An identifier is compared with as many bytes of the GUID as it has itself.
class OV_ENGINE_API CChunkAdapterDcam : public CChunkAdapterTrailer {
public:
    /// As for CChunkAdapter.
    explicit CChunkAdapterDcam(INodeMap* map = nullptr, int64_t maxChunkCacheSize = -1);

    /// Whether the chunks are followed by a CRC. RuntimeException without a
    /// buffer or with a length below 1.
    static bool HasCRC(const uint8_t* buffer, int64_t length);
    /// Whether the CRC is that of the bytes before it; AttachBuffer doesn't ask.
    /// RuntimeException as above, and for a buffer without a CRC.
    static bool CheckCRC(const uint8_t* buffer, int64_t length);
    /// As CheckCRC, for a buffer that is known to have one.
    static bool CheckBuffer(const uint8_t* buffer, int64_t length);
    /// Polynomial 0x1021, starting from 0, nothing reflected or inverted.
    static uint16_t CRC16(const uint8_t* bytes, int64_t length);
};

}  // namespace GenApi_3_0_ORVANE
