#include "framework/Event.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

#include "Base/EachFrame.h"

namespace OvProducer {
namespace {

// A year: longer than any real wait, and no overflow of the clock.
constexpr uint64_t kLongestWaitMs = 365ULL * 24 * 3600 * 1000;

struct EventFacts {
    GenTL::EVENT_TYPE type;
    size_t pending;
    uint64_t fired;
    size_t entrySizeMax;
    size_t infoSizeMax;
};

constexpr InfoRow<EventFacts> kEventRows[] = {
    {GenTL::EVENT_EVENT_TYPE, [](const EventFacts& e) { return InfoValue::Int32(e.type); }},
    {GenTL::EVENT_NUM_IN_QUEUE, [](const EventFacts& e) { return InfoValue::Size(e.pending); }},
    {GenTL::EVENT_NUM_FIRED, [](const EventFacts& e) { return InfoValue::Uint64(e.fired); }},
    {GenTL::EVENT_SIZE_MAX, [](const EventFacts& e) { return InfoValue::Size(e.entrySizeMax); }},
    {GenTL::EVENT_INFO_DATA_SIZE_MAX,
     [](const EventFacts& e) { return InfoValue::Size(e.infoSizeMax); }},
};

template <typename T>
T ReadNumber(std::span<const std::byte> entry) {
    if (entry.size() < sizeof(T)) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "The event entry is too short");
    }
    T value;
    std::memcpy(&value, entry.data(), sizeof value);
    return value;
}

InfoValue TextOf(std::span<const std::byte> entry) {
    const char* first = reinterpret_cast<const char*>(entry.data());
    const char* end = std::find(first, first + entry.size(), '\0');
    return InfoValue::Text({first, static_cast<size_t>(end - first)});
}

[[noreturn]] void ThrowNoSuchPart() {
    throw Failure(GenTL::GC_ERR_NOT_IMPLEMENTED, "The event has no such part");
}

InfoValue MessageInfo(std::span<const std::byte> entry, GenTL::EVENT_DATA_INFO_CMD command) {
    const auto id = ReadNumber<uint64_t>(entry);
    switch (command) {
        case GenTL::EVENT_DATA_ID: {
            char text[20];
            std::snprintf(text, sizeof text, "%04llX", static_cast<unsigned long long>(id));
            return InfoValue::Text(text);
        }
        case GenTL::EVENT_DATA_VALUE:
            return InfoValue::Bytes(entry.subspan(sizeof id));
        case GenTL::EVENT_DATA_NUMID:
            return InfoValue::Uint64(id);
        default:
            ThrowNoSuchPart();
    }
}

}  // namespace

OV_EACH_FRAME Event* Event::AsEvent() {
    return this;
}

OV_EACH_FRAME void Event::GetData(void* buffer, size_t* size, uint64_t timeout) {
    RequirePointer(size, "The size");
    std::unique_lock lock(m_mutex);
    if (!IsReady() && !Wait(lock, timeout)) {
        lock.unlock();
        CheckAfterTimeout();
        throw Failure(GenTL::GC_ERR_TIMEOUT, "No event within the time-out");
    }
    if (m_closed || m_kills != 0) {
        m_kills -= m_closed ? 0 : 1;
        throw Failure(GenTL::GC_ERR_ABORT, "The wait for an event was aborted");
    }
    const size_t needed = FrontSize();
    if (buffer != nullptr && *size < needed) {
        throw Failure(GenTL::GC_ERR_BUFFER_TOO_SMALL, "The event needs a larger buffer");
    }
    TakeFront(buffer);
    *size = needed;
}

OV_EACH_FRAME bool Event::Wait(std::unique_lock<std::mutex>& lock, uint64_t timeout) {
    if (timeout == 0) {
        return false;
    }
    const auto deadline = std::chrono::steady_clock::now() +
                          std::chrono::milliseconds(std::min(timeout, kLongestWaitMs));
    m_spin.Spin(lock);
    const auto ready = [this] { return IsReady(); };
    if (timeout == GenTL::GENTL_INFINITE) {
        m_wake.wait(lock, ready);
        return true;
    }
    return m_wake.wait_until(lock, deadline, ready);
}

void Event::Kill() {
    {
        const std::lock_guard lock(m_mutex);
        ++m_kills;
    }
    m_wake.notify_one();
}

void Event::Close() {
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        DropAll();
    }
    m_wake.notify_all();
}

void Event::Flush() {
    const std::lock_guard lock(m_mutex);
    DropAll();
}

InfoValue Event::Info(GenTL::EVENT_INFO_CMD command) const {
    const std::lock_guard lock(m_mutex);
    return AnswerFrom(kEventRows, command,
                      EventFacts{m_type, Pending(), m_fired, EntrySizeMax(), InfoSizeMax()});
}

void QueuedEvent::Post(std::span<const std::byte> entry) {
    {
        const std::lock_guard lock(m_queueMutex);
        if (Closed() || m_entries.size() >= kQueueMax) {
            return;
        }
        m_entries.emplace_back(entry.begin(), entry.end());
        Added();
    }
    Wake();
}

void QueuedEvent::TakeFront(void* buffer) {
    const std::vector<std::byte>& front = m_entries.front();
    if (buffer != nullptr && !front.empty()) {
        std::memcpy(buffer, front.data(), front.size());
    }
    m_entries.pop_front();
}

InfoValue QueuedEvent::DataInfo(std::span<const std::byte> entry,
                                GenTL::EVENT_DATA_INFO_CMD command) const {
    switch (Type()) {
        case GenTL::EVENT_REMOTE_DEVICE:
        case GenTL::EVENT_MODULE:
            return MessageInfo(entry, command);
        case GenTL::EVENT_FEATURE_INVALIDATE:
            if (command == GenTL::EVENT_DATA_ID) {
                return TextOf(entry);
            }
            ThrowNoSuchPart();
        case GenTL::EVENT_ERROR: {
            const auto code = ReadNumber<int32_t>(entry);
            if (command == GenTL::EVENT_DATA_ID) {
                return InfoValue::Int32(code);
            }
            if (command == GenTL::EVENT_DATA_VALUE) {
                return TextOf(entry.subspan(sizeof code));
            }
            ThrowNoSuchPart();
        }
        default:
            throw Failure(GenTL::GC_ERR_NO_DATA, "The event carries no data");
    }
}

std::vector<std::byte> MakeMessageEntry(uint64_t id, std::span<const std::byte> payload) {
    if (payload.size() > QueuedEvent::kPayloadMax) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, "The event payload is too long");
    }
    std::vector<std::byte> entry(sizeof id + payload.size());
    std::memcpy(entry.data(), &id, sizeof id);
    std::copy(payload.begin(), payload.end(), entry.begin() + sizeof id);
    return entry;
}

std::vector<std::byte> MakeFeatureEntry(std::string_view feature) {
    std::vector<std::byte> entry(feature.size() + 1);
    std::memcpy(entry.data(), feature.data(), feature.size());
    return entry;
}

std::vector<std::byte> MakeErrorEntry(GenTL::GC_ERROR code, std::string_view text) {
    std::vector<std::byte> entry(sizeof code + text.size() + 1);
    std::memcpy(entry.data(), &code, sizeof code);
    std::memcpy(entry.data() + sizeof code, text.data(), text.size());
    return entry;
}

}  // namespace OvProducer
