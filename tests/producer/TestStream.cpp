#include <algorithm>

#include "TestCamera.h"

namespace OvTest {
namespace {

using OvProducer::FrameInfo;

std::int64_t ValueOr(const std::map<std::string, std::int64_t>& values, const std::string& key,
                     std::int64_t natural) {
    const auto found = values.find(key);
    return found == values.end() || found->second < 0 ? natural : found->second;
}

}  // namespace

OvProducer::StreamFacts TestStream::Facts() {
    const std::lock_guard lock(m_mutex);
    OvProducer::StreamFacts facts;
    facts.id = m_id;
    facts.tlType = m_camera.Facts().tlType;
    facts.announceMinimum = static_cast<std::size_t>(ValueOr(m_facts, "AnnounceMinimum", 1));
    facts.alignment = static_cast<std::size_t>(ValueOr(m_facts, "Alignment", 1));
    facts.chunksMax = static_cast<std::size_t>(ValueOr(m_facts, "ChunksMax", 0));
    return facts;
}

bool TestStream::WaitFrame(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait(lock, stop, [this] { return !m_lost && (m_due != 0 || m_freeRunning); });
}

std::size_t TestStream::FrameSize() {
    return m_camera.Number(CameraRegister::PayloadSize);
}

bool TestStream::WaitsForBuffer() {
    const std::lock_guard lock(m_mutex);
    return m_freeRunning;
}

FrameInfo TestStream::ReadFrame(std::span<std::byte> memory, const std::stop_token& abort) {
    std::uint64_t frame = 0;
    {
        const std::lock_guard lock(m_mutex);
        frame = m_frame++;
        m_due -= m_due == 0 ? 0 : 1;
    }
    Draw(memory, frame);
    const bool whole = WaitWhileHeld(abort);
    FrameInfo info = Describe(frame);
    info.incomplete = info.incomplete || !whole;
    return info;
}

void TestStream::Draw(std::span<std::byte> memory, std::uint64_t frame) const {
    {
        const std::lock_guard lock(m_mutex);
        if (ValueOr(m_frameValues, "Draw", 1) == 0) {
            return;
        }
    }
    const std::size_t width = m_camera.Number(CameraRegister::Width);
    const std::size_t size =
        std::min<std::size_t>(memory.size(), m_camera.Number(CameraRegister::PayloadSize));
    for (std::size_t i = 0; i < size; ++i) {
        memory[i] = static_cast<std::byte>(i % width + i / width + frame);
    }
}

void TestStream::DropFrame() {
    const std::lock_guard lock(m_mutex);
    ++m_frame;
    m_due -= m_due == 0 ? 0 : 1;
}

bool TestStream::WaitWhileHeld(const std::stop_token& abort) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait(lock, abort, [this] { return ValueOr(m_frameValues, "Hold", 0) == 0; });
}

FrameInfo TestStream::Describe(std::uint64_t frame) const {
    const std::lock_guard lock(m_mutex);
    const auto size = [&](const char* key, std::size_t reg) {
        return static_cast<std::size_t>(ValueOr(m_frameValues, key, m_camera.Number(reg)));
    };
    FrameInfo info;
    info.width = size("Width", CameraRegister::Width);
    info.height = size("Height", CameraRegister::Height);
    info.offsetX = size("OffsetX", CameraRegister::OffsetX);
    info.offsetY = size("OffsetY", CameraRegister::OffsetY);
    info.pixelFormat = size("PixelFormat", CameraRegister::PixelFormat);
    info.sizeFilled = size("SizeFilled", CameraRegister::PayloadSize);
    info.deliveredHeight = info.height;
    info.incomplete = ValueOr(m_frameValues, "Incomplete", 0) != 0;
    info.payloadType = static_cast<std::size_t>(ValueOr(
        m_frameValues, "PayloadType", static_cast<std::int64_t>(GenTL::PAYLOAD_TYPE_IMAGE)));
    info.frameId = frame;
    info.timestamp = static_cast<std::uint64_t>(
        ValueOr(m_frameValues, "Timestamp", static_cast<std::int64_t>(frame * 1000)));
    info.timestampNs = info.timestamp;
    info.chunks = m_chunks;
    for (const GenTL::S_SINGLE_CHUNK_DATA& chunk : m_chunks) {
        info.chunkPayloadSize += chunk.ChunkLength;
    }
    return info;
}

void TestStream::Trigger(std::uint64_t count) {
    const std::lock_guard lock(m_mutex);
    m_due += count;
    m_changed.notify_all();
}

void TestStream::SetFreeRunning(bool on) {
    const std::lock_guard lock(m_mutex);
    m_freeRunning = on;
    m_changed.notify_all();
}

void TestStream::RestartCount() {
    const std::lock_guard lock(m_mutex);
    m_frame = 0;
}

void TestStream::SetLost(bool lost) {
    const std::lock_guard lock(m_mutex);
    m_lost = lost;
    m_changed.notify_all();
}

bool TestStream::SetFrameValue(const std::string& key, std::int64_t value) {
    constexpr const char* keys[] = {"Width",       "Height",     "OffsetX",     "OffsetY",
                                    "PixelFormat", "Incomplete", "PayloadType", "Timestamp",
                                    "SizeFilled",  "Hold",       "Draw"};
    if (std::find(std::begin(keys), std::end(keys), key) == std::end(keys)) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    m_frameValues[key] = value;
    m_changed.notify_all();
    return true;
}

bool TestStream::SetFact(const std::string& key, std::int64_t value) {
    constexpr const char* keys[] = {"AnnounceMinimum", "Alignment", "ChunksMax"};
    if (std::find(std::begin(keys), std::end(keys), key) == std::end(keys)) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    m_facts[key] = value;
    return true;
}

void TestStream::AddChunk(const GenTL::S_SINGLE_CHUNK_DATA& chunk) {
    const std::lock_guard lock(m_mutex);
    m_chunks.push_back(chunk);
}

void TestStream::ClearChunks() {
    const std::lock_guard lock(m_mutex);
    m_chunks.clear();
}

}  // namespace OvTest
