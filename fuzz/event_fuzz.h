#pragma once
/// What a camera's messages can do to an event adapter and to the features that
/// read its events.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "GenApi/EventAdapter.h"
#include "GenApi/IRegister.h"
#include "support/XmlNodeMap.h"

namespace EventFuzz {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
using GenICam_3_0_ORVANE::GenericException;
using GenICam_3_0_ORVANE::RuntimeException;
using Bytes = std::span<const uint8_t>;

/// Identifiers short and long, with and without leading zeros, one of them twice
/// and once without a port; registers at the start and behind the end of events.
class Camera {
public:
    INodeMap* Map() { return &m_Nodes.Map(); }

    /// @param longest  bytes that no event can have more of
    void ReadAll(size_t longest) {
        for (const Event& event : m_Events) {
            // Without an event all reads would be refused alike, and slowly.
            if (event.port->GetAccessMode() == RO) {
                for (IRegister* const node : event.registers) {
                    Read(*node);
                }
                CheckEnd(*event.port, static_cast<int64_t>(longest));
            }
        }
    }

private:
    struct Event {
        IPort* port;
        std::vector<IRegister*> registers;
    };

    static void Read(IRegister& node) {
        uint8_t bytes[8];
        try {
            node.Get(bytes, sizeof(bytes));
        } catch (const GenericException&) {  // NOLINT(bugprone-empty-catch): too short
        }
    }
    static void CheckEnd(IPort& port, int64_t longest) {
        try {
            uint8_t byte = 0;
            port.Read(&byte, longest, 1);
            OV_ASSERT(!"An event is longer than what brought it");
        } catch (const GenericException&) {  // NOLINT(bugprone-empty-catch): as it must be
        }
    }

    std::vector<Event> Events() {
        std::vector<Event> events;
        for (size_t i = 0; i < std::size(kIdentifiers); ++i) {
            const std::string name = PortName(i);
            events.push_back({&m_Nodes.Get<IPort>(name.c_str()), {}});
            for (const char* const address : kAddresses) {
                events.back().registers.push_back(
                    &m_Nodes.Get<IRegister>((name + "At" + address).c_str()));
            }
        }
        return events;
    }
    static std::string PortName(size_t i) { return "Port" + std::to_string(i); }

    static std::string Describe() {
        std::string text =
            "<Integer Name=\"Count\"><EventID>01</EventID><Value>5</Value></Integer>";
        for (size_t i = 0; i < std::size(kIdentifiers); ++i) {
            const std::string port = PortName(i);
            text += "<Port Name=\"" + port + "\"><EventID>" + kIdentifiers[i] + "</EventID></Port>";
            for (const char* const address : kAddresses) {
                text += "<Register Name=\"" + port + "At" + address + "\"><Address>" + address +
                        "</Address><Length>8</Length><AccessMode>RO</AccessMode><pPort>" + port +
                        "</pPort></Register>";
            }
        }
        return text;
    }

    static constexpr const char* kIdentifiers[] = {
        "0000", "01", "00000001", "9C40", "FFFF", "11223344556677889900AABBCCDDEEFF"};
    static constexpr const char* kAddresses[] = {"0", "4", "12", "570", "0xFFFFFFFFFFFFFFFC"};

    EngineTest::XmlNodeMap m_Nodes{Describe()};
    std::vector<Event> m_Events = Events();
};

inline Camera& TheCamera() {
    static Camera camera;
    return camera;
}

/// Delivers from memory of exactly the message's size, so that the sanitizer sees
/// each access beyond it.
template <class Deliver>
void DeliverExact(Bytes message, const Deliver& deliver) {
    const auto exact = std::make_unique<uint8_t[]>(message.size());
    std::copy(message.begin(), message.end(), exact.get());
    try {
        deliver(exact.get(), static_cast<int64_t>(message.size()));
    } catch (const RuntimeException&) {  // NOLINT(bugprone-empty-catch): malformed
    }
}

/// The bytes that stand before each message in an input.
constexpr size_t kLengthBytes = 2;

/// Calls with each message of an input: a length in two bytes, low byte first, then
/// that many bytes or what there are.
template <class Take>
void ForEachMessage(Bytes input, const Take& take) {
    while (input.size() >= kLengthBytes) {
        const size_t length = input[0] | size_t{input[1]} << 8;
        input = input.subspan(kLengthBytes);
        const Bytes message = input.first(std::min(length, input.size()));
        take(message);
        input = input.subspan(message.size());
    }
}

/// An input for an adapter that knows the layout of its messages.
template <class Adapter>
int RunLayout(Bytes input) {
    Adapter adapter(TheCamera().Map());
    ForEachMessage(input, [&](Bytes message) {
        DeliverExact(message, [&](const uint8_t* bytes, int64_t length) {
            adapter.DeliverMessage(bytes, length);
        });
        TheCamera().ReadAll(input.size());
    });
    return 0;
}

}  // namespace EventFuzz
