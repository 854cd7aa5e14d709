#include "commands/FrameWriter.h"

#include <fstream>
#include <limits>
#include <string>

FrameWriter::FrameWriter(size_t memory, std::function<void(const TakenFrame&)> write)
    : m_memory(memory), m_write(std::move(write)), m_thread([this] { Run(); }) {}

FrameWriter::~FrameWriter() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        m_frames.clear();
    }
    m_changed.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

bool FrameWriter::HasRoomFor(size_t bytes) const {
    return m_waiting == 0 || (bytes <= m_memory && m_waiting <= m_memory - bytes);
}

bool FrameWriter::Put(TakenFrame frame) {
    std::unique_lock lock(m_mutex);
    const size_t bytes = frame.raw.bytes.size();
    m_changed.wait(lock, [&] { return m_failure || HasRoomFor(bytes); });
    if (m_failure) {
        return false;
    }
    m_waiting += bytes;
    m_frames.push_back(std::move(frame));
    m_changed.notify_all();
    return true;
}

void FrameWriter::Finish() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
}

void FrameWriter::Run() {
    try {
        while (WriteNext()) {
        }
    } catch (...) {
        const std::lock_guard lock(m_mutex);
        m_failure = std::current_exception();
        m_frames.clear();
        m_changed.notify_all();
    }
}

bool FrameWriter::WriteNext() {
    TakenFrame frame;
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_isEnding || !m_frames.empty(); });
        if (m_frames.empty()) {
            return false;
        }
        frame = std::move(m_frames.front());
        m_frames.pop_front();
    }
    m_write(frame);
    const std::lock_guard lock(m_mutex);
    m_waiting -= frame.raw.bytes.size();
    m_changed.notify_all();
    return true;
}

size_t MemoryForFrames() {
    // Without an answer it is as much as any machine with a camera has.
    constexpr size_t kByDefault = size_t{256} << 20;
    constexpr size_t kKibi = 1024;
    std::ifstream info("/proc/meminfo");
    for (std::string key; info >> key;) {
        size_t kibibytes = 0;
        if (key == "MemAvailable:" && info >> kibibytes) {
            return kibibytes * kKibi / 2;
        }
        info.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return kByDefault;
}
