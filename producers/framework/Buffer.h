#pragma once
/// An announced buffer and what is known of the frame in it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "framework/BufferCard.h"
#include "framework/FrameInfo.h"
#include "framework/Handles.h"

namespace OvProducer {

/// Guarded by the queues' lock, but for what the card tells.
struct Buffer : Object {
    std::byte* base = nullptr;
    size_t size = 0;
    void* userPointer = nullptr;
    std::vector<std::byte> ownMemory;  ///< empty when the consumer gave the memory
    /// State, frame, and all that the information calls tell.
    std::shared_ptr<BufferCard> card = BufferCard::Make();
    /// The queues were emptied while it was being filled: it goes to idle.
    bool discardWhenFilled = false;
    std::vector<GenTL::S_SINGLE_CHUNK_DATA> chunks;  ///< of the frame that the card shows

    std::span<std::byte> Memory() const { return {base, size}; }
};

}  // namespace OvProducer
