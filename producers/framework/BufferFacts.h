#pragma once
/// The facts on an announced buffer, for readers without a lock.
///
/// A consumer asks several questions about each frame. If each of them took the locks of
/// the library, of the handles and of the queues, a frame would cost half as much CPU time
/// again, and the engine would wait for the consumer with the next frame.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "framework/FrameInfo.h"
#include "framework/InfoValue.h"

namespace OvProducer {

/// Where a buffer is. A delivered buffer is idle: it belongs to the consumer until it is
/// queued again.
enum class BufferState { Idle, Input, Filling, Output };

/// The facts on one buffer and on the frame in it. One thread at a time writes them; any
/// thread may read them at any time.
///
/// There is a frame from `SetFrame` to `ClearFrame`, and facts change only while there is
/// none. Each frame has a number of its own: a reader that finds the same number before
/// and after its reads has read facts that belong together.
class BufferFacts {
public:
    /// Empty facts. Their memory is never freed while the producer is loaded, but used
    /// for other buffers later: a reader may still look at it after the last owner.
    static std::shared_ptr<BufferFacts> Make();
    /// The facts that may be those of the handle's buffer, or null: the ones that were
    /// published last among handles that share a place of the table.
    static const BufferFacts* Find(const void* handle);

    /// Sets what is known of the buffer itself. There is no frame afterwards.
    void SetBuffer(std::byte* base, size_t size, void* userPointer, const std::string& tlType);
    /// Lets `Find` find the facts.
    void Publish(const void* stream, const void* handle);

    void SetFrame(const FrameInfo& frame);
    void ClearFrame() { Set(m_frameNumber, uint64_t{0}); }
    bool HasFrame() const { return m_frameNumber != 0; }

    void SetState(BufferState state) { Set(m_state, state); }
    BufferState State() const { return m_state; }
    void SetNewData(bool isNew) { Set(m_newData, isNew); }
    bool NewData() const { return m_newData; }
    uint64_t FrameId() const { return m_frame.frameId; }

    /// Whether these are the facts of that buffer, with a frame now.
    bool HasFrameOf(const void* stream, const void* handle) const {
        return HasFrame() && m_handle == handle && m_stream == stream;
    }

    /// Answers `DSGetBufferInfo`. Nobody may write meanwhile.
    InfoValue Answer(GenTL::BUFFER_INFO_CMD command) const;
    /// Like `Answer`, but another thread may write meanwhile. Returns nothing unless these
    /// are the facts of that buffer, with the same frame from beginning to end.
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

    // The number of the frame is stored last: a reader that sees it also sees what was
    // stored before. The default order would make each of these stores a locked one.
    template <typename T>
    static void Set(Cell<T>& cell, T value) {
        cell.store(value, std::memory_order_release);
    }

    Cell<uint64_t> m_frameNumber{0};  ///< 0 while there is no frame
    uint64_t m_lastFrameNumber = 0;   ///< only the writer uses it
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
