/// @file
/// Facts on one frame, as whoever filled its buffer tells them.
#ifndef OV_PRODUCER_FRAME_INFO_H
#define OV_PRODUCER_FRAME_INFO_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "GenTL/GenTL.h"

namespace OvProducer {

struct FrameInfo {
    std::size_t width = 0;  ///< pixels
    std::size_t height = 0;
    std::size_t offsetX = 0;
    std::size_t offsetY = 0;
    std::size_t paddingX = 0;  ///< bytes behind each line
    std::size_t paddingY = 0;  ///< bytes behind the image
    std::size_t deliveredHeight = 0;
    std::size_t sizeFilled = 0;   ///< bytes written
    std::size_t imageOffset = 0;  ///< bytes
    std::uint64_t pixelFormat = 0;
    std::uint64_t frameId = 0;
    std::uint64_t timestamp = 0;    ///< camera ticks
    std::uint64_t timestampNs = 0;  ///< nanoseconds
    std::size_t payloadType = GenTL::PAYLOAD_TYPE_IMAGE;
    std::size_t chunkPayloadSize = 0;  ///< bytes
    std::uint64_t chunkLayoutId = 0;
    bool imagePresent = true;
    bool incomplete = false;
    bool largerThanBuffer = false;
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> chunks;
};

}  // namespace OvProducer

#endif
