#pragma once
/// An announced buffer, and the frame in it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "framework/BufferFacts.h"
#include "framework/FrameInfo.h"
#include "framework/Handles.h"

namespace OvProducer {

/// Guarded by the lock of the queues, except `facts`.
struct Buffer : Object {
    std::byte* base = nullptr;
    size_t size = 0;
    void* userPointer = nullptr;
    std::vector<std::byte> ownMemory;  ///< empty if the memory is the consumer's
    /// State, frame, and all other answers of the information calls.
    std::shared_ptr<BufferFacts> facts = BufferFacts::Make();
    /// The queues were emptied while it was being filled, so that it becomes idle when it
    /// is full.
    bool discardWhenFilled = false;
    // Of the present frame.
    bool hasWrongChunks = false;
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> chunks;
    std::string fileName;

    std::span<std::byte> Memory() const { return {base, size}; }
};

}  // namespace OvProducer
