/// @file
/// An announced buffer and what is known of the frame in it.
#ifndef OV_PRODUCER_BUFFER_H
#define OV_PRODUCER_BUFFER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "framework/Handles.h"
#include "framework/InfoValue.h"

namespace OvProducer {

/// Facts on one frame, written by whoever filled the buffer.
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

/// Where a buffer is. A delivered buffer is idle: it belongs to the consumer
/// until it is queued again.
enum class BufferState { Idle, Input, Filling, Output };

/// Fields but `base`, `size` and `userPointer` are guarded by the queues' lock.
struct Buffer : Object {
    std::byte* base = nullptr;
    std::size_t size = 0;
    void* userPointer = nullptr;
    std::vector<std::byte> ownMemory;  ///< empty when the consumer gave the memory
    std::string tlType;

    BufferState state = BufferState::Idle;
    /// The queues were emptied while it was being filled: it goes to idle.
    bool discardWhenFilled = false;
    bool newData = false;
    bool hasFrame = false;  ///< `frame` is valid: from delivery to requeue
    FrameInfo frame;

    std::span<std::byte> Memory() const { return {base, size}; }
};

/// Answers `DSGetBufferInfo`; the queues' lock is held.
InfoValue BufferInfo(const Buffer& buffer, GenTL::BUFFER_INFO_CMD command);

}  // namespace OvProducer

#endif
