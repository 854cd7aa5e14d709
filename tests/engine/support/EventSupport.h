#pragma once
/// Cameras that send events, and the messages that they send.

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "GenApi/EventAdapter.h"
#include "GenApi/EventPort.h"
#include "NodeGraph.h"

namespace EngineTest {

using Bytes = std::vector<uint8_t>;

inline Bytes Join(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

inline Bytes Big16(size_t number) {
    return {static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number)};
}
inline Bytes Little16(size_t number) {
    return {static_cast<uint8_t>(number), static_cast<uint8_t>(number >> 8)};
}
/// Bytes that tell one event from another.
inline Bytes Filler(size_t length, uint8_t first = 1) {
    Bytes bytes(length);
    for (size_t i = 0; i < length; ++i) {
        bytes[i] = static_cast<uint8_t>(first + i);
    }
    return bytes;
}

inline constexpr const char* kTooSmall = "Malformed message - too small";

/// A message that an adapter refuses, and the text of the refusal.
struct EventFault {
    const char* name;
    Bytes message;
    std::string text;
};

/// A port node "E<id>" for each identifier, and "Size<id>", which is the first two
/// bytes of its event with the high byte first.
class EventCamera {
public:
    explicit EventCamera(const std::vector<std::string>& ids) : m_Map(Describe(ids)) {}

    XmlNodeMap& Map() { return m_Map; }
    /// What the port holds of its event, byte by byte.
    Bytes Event(const std::string& id) {
        Bytes bytes;
        auto& port = m_Map.Get<IPort>(("E" + id).c_str());
        for (uint8_t byte = 0; TryRead(port, byte, static_cast<int64_t>(bytes.size()));) {
            bytes.push_back(byte);
        }
        return bytes;
    }
    int64_t Size(const std::string& id) {
        return m_Map.Get<IInteger>(("Size" + id).c_str()).GetValue();
    }

    static std::string Describe(const std::vector<std::string>& ids) {
        std::string body;
        for (const std::string& id : ids) {
            using Parts = std::initializer_list<std::string_view>;
            for (const std::string_view part :
                 Parts{"<IntReg Name=\"Size", id, "\"><Address>0</Address><Length>2</Length>",
                       "<AccessMode>RO</AccessMode><pPort>E", id,
                       "</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>",
                       "<Port Name=\"E", id, "\"><EventID>", id, "</EventID></Port>"}) {
                body += part;
            }
        }
        return body;
    }

private:
    static bool TryRead(IPort& port, uint8_t& byte, int64_t address) {
        try {
            port.Read(&byte, address, 1);
        } catch (const RuntimeException&) {
            return false;
        }
        return true;
    }

    XmlNodeMap m_Map;
};

/// Delivers from memory that ends with the message, so that a sanitizer sees each
/// read beyond it.
template <class... Id>
void Deliver(auto& adapter, const Bytes& message, const Id&... id) {
    const auto exact = std::make_unique<uint8_t[]>(message.size());
    std::copy(message.begin(), message.end(), exact.get());
    adapter.DeliverMessage(exact.get(), static_cast<int64_t>(message.size()), id...);
}

/// The text of the failure to deliver a message; empty without one.
std::string FaultOf(auto& adapter, const Bytes& message) {
    return DescriptionOf<RuntimeException>([&] { Deliver(adapter, message); });
}

}  // namespace EngineTest
