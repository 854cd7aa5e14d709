#pragma once
/// The facts on one frame, from the source that filled its buffer.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "GenTL/GenTL.h"

namespace OvProducer {

struct FrameInfo {
    size_t width = 0;  ///< pixels
    size_t height = 0;
    size_t offsetX = 0;
    size_t offsetY = 0;
    size_t paddingX = 0;  ///< bytes after each line
    size_t paddingY = 0;  ///< bytes after the image
    size_t deliveredHeight = 0;
    size_t sizeFilled = 0;   ///< bytes written
    size_t imageOffset = 0;  ///< bytes
    uint64_t pixelFormat = 0;
    uint64_t frameId = 0;
    uint64_t timestamp = 0;    ///< camera ticks
    uint64_t timestampNs = 0;  ///< nanoseconds
    size_t payloadType = GenTL::PAYLOAD_TYPE_IMAGE;
    size_t chunkPayloadSize = 0;  ///< bytes
    uint64_t chunkLayoutId = 0;
    bool imagePresent = true;
    bool incomplete = false;
    bool largerThanBuffer = false;
    bool hasWrongChunks = false;  ///< nothing is missing, but where chunks are can't be told
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> chunks;
    std::string fileName;  ///< of a frame that is a file
};

}  // namespace OvProducer
