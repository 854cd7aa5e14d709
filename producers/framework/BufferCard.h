#pragma once
/// What is told of an announced buffer, for readers without a lock.
///
/// A consumer asks some twenty questions about each frame. Every one of them
/// would take the lock that the engine needs to carry the next frame.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "framework/FrameInfo.h"
#include "framework/InfoValue.h"

namespace OvProducer {

/// Where a buffer is. A delivered buffer is idle: it belongs to the consumer
/// until it is queued again.
enum class BufferState { Idle, Input, Filling, Output };

/// The facts on one buffer and on the frame in it. One thread at a time writes
/// them; any may read at any time.
///
/// The card shows a frame from `Show` to `Hide`, and all that it tells changes
/// only while it shows none. Each showing has a number of its own, so a reader
/// that finds the same one before and after has read what belongs together.
class BufferCard {
public:
    /// A blank card. Its memory stays for as long as the producer is loaded,
    /// and serves other buffers later: a reader may come late.
    static std::shared_ptr<BufferCard> Make();
    /// The card that was published last for a handle like this one, or null.
    static const BufferCard* Find(const void* handle);

    /// Puts the buffer's own facts on the card. No frame is shown.
    void SetBuffer(std::byte* base, size_t size, void* userPointer, const std::string& tlType);
    /// Lets `Find` find the card.
    void Publish(const void* stream, const void* handle);

    void Show(const FrameInfo& frame);
    void Hide() { Set(m_showing, uint64_t{0}); }
    bool HasFrame() const { return m_showing != 0; }

    void SetState(BufferState state) { Set(m_state, state); }
    BufferState State() const { return m_state; }
    void SetNewData(bool isNew) { Set(m_newData, isNew); }
    bool NewData() const { return m_newData; }
    uint64_t FrameId() const { return m_frame.frameId; }

    /// Whether it is the card of that buffer and shows a frame now.
    bool ShowsFrameOf(const void* stream, const void* handle) const {
        return HasFrame() && m_handle == handle && m_stream == stream;
    }

    /// Answers `DSGetBufferInfo`. The writer stands still.
    InfoValue Answer(GenTL::BUFFER_INFO_CMD command) const;
    /// As `Answer`, while the writer may write. Nothing unless this is the card
    /// of that buffer and shows a frame all the time.
    std::optional<InfoValue> TryAnswer(const void* stream, const void* handle,
                                       GenTL::BUFFER_INFO_CMD command) const;

private:
    struct Rows;

    template <typename T>
    using Cell = std::atomic<T>;

    /// The numbers of a `FrameInfo`.
    struct Frame {
        Cell<size_t> width;
        Cell<size_t> height;
        Cell<size_t> offsetX;
        Cell<size_t> offsetY;
        Cell<size_t> paddingX;
        Cell<size_t> paddingY;
        Cell<size_t> deliveredHeight;
        Cell<size_t> sizeFilled;
        Cell<size_t> imageOffset;
        Cell<uint64_t> pixelFormat;
        Cell<uint64_t> frameId;
        Cell<uint64_t> timestamp;
        Cell<uint64_t> timestampNs;
        Cell<size_t> payloadType;
        Cell<size_t> chunkPayloadSize;
        Cell<uint64_t> chunkLayoutId;
        Cell<bool> imagePresent;
        Cell<bool> incomplete;
        Cell<bool> largerThanBuffer;
        Cell<bool> hasChunks;
    };

    // Behind the mark of its showing, where a reader that sees it sees the rest;
    // the default order would lock the bus for each of them.
    template <typename T>
    static void Set(Cell<T>& cell, T value) {
        cell.store(value, std::memory_order_release);
    }

    Cell<uint64_t> m_showing{0};  ///< 0 while no frame is shown
    uint64_t m_showings = 0;      ///< the writer's
    Cell<const void*> m_stream{nullptr};
    Cell<const void*> m_handle{nullptr};
    Cell<const void*> m_base{nullptr};
    Cell<size_t> m_size{0};
    Cell<const void*> m_userPointer{nullptr};
    Cell<const std::string*> m_tlType{nullptr};
    Cell<BufferState> m_state{BufferState::Idle};
    Cell<bool> m_newData{false};
    Frame m_frame{};
};

}  // namespace OvProducer
