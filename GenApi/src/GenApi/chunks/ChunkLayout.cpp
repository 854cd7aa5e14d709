// The layouts of the transports, and the adapters that consist of nothing else.

#include "chunks/ChunkLayout.h"

#include "GenApi/ChunkAdapterDcam.h"
#include "GenApi/ChunkAdapterGEV.h"
#include "GenApi/ChunkAdapterU3V.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// An identifier is one GUID at most.
constexpr int64_t kGuidBytes = 16;

/// As bytes: the descriptions of these cameras write the identifier as the device sends it.
bool MatchesBytes(const CChunkPort& port, const uint8_t* identifier) {
    return port.CheckChunkID(identifier, 4);
}

/// As a number, because the device sends the low byte first.
bool MatchesNumber(const CChunkPort& port, const uint8_t* identifier) {
    return port.CheckChunkID(ReadWord(identifier, std::endian::little));
}

/// A port may name only the first bytes of a GUID. One that names more than there are
/// never matches.
bool MatchesGuid(const CChunkPort& port, const uint8_t* identifier) {
    const int64_t length = port.GetChunkIDLength();
    return length <= kGuidBytes && port.CheckChunkID(identifier, length);
}

/// A buffer that is only a trailer holds no chunk.
constexpr ChunkLayout kGEV = {.trailer = 8,
                              .shortestBuffer = 9,
                              .identifier = 8,
                              .lengthField = 4,
                              .complementField = 0,
                              .order = std::endian::big,
                              .isLengthOfAll = false,
                              .hasCRC = nullptr,
                              .matches = MatchesBytes,
                              .name = "parser"};

constexpr ChunkLayout kU3V = {.trailer = 8,
                              .shortestBuffer = 9,
                              .identifier = 8,
                              .lengthField = 4,
                              .complementField = 0,
                              .order = std::endian::little,
                              .isLengthOfAll = false,
                              .hasCRC = nullptr,
                              .matches = MatchesNumber,
                              .name = "parser"};

/// The length counts the trailer. It comes a second time, inverted, by which a trailer is
/// recognised.
constexpr ChunkLayout kDcam = {.trailer = 24,
                               .shortestBuffer = 24,
                               .identifier = 24,
                               .lengthField = 8,
                               .complementField = 4,
                               .order = std::endian::little,
                               .isLengthOfAll = true,
                               .hasCRC = CChunkAdapterDcam::HasCRC,
                               .matches = MatchesGuid,
                               .name = "adapter"};

}  // namespace

CChunkAdapterGEV::CChunkAdapterGEV(INodeMap* map, int64_t maxChunkCacheSize)
    : CChunkAdapterTrailer(kGEV, map, maxChunkCacheSize) {}

CChunkAdapterU3V::CChunkAdapterU3V(INodeMap* map, int64_t maxChunkCacheSize)
    : CChunkAdapterTrailer(kU3V, map, maxChunkCacheSize) {}

CChunkAdapterDcam::CChunkAdapterDcam(INodeMap* map, int64_t maxChunkCacheSize)
    : CChunkAdapterTrailer(kDcam, map, maxChunkCacheSize) {}

}  // namespace GenApi_3_0_ORVANE
