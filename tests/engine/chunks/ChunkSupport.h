#pragma once
/// Buffers with chunks as devices of several transports fill them, and nodes that
/// read them.

#include <cstddef>
#include <functional>
#include <memory>

#include "GenApi/ChunkAdapterDcam.h"
#include "GenApi/ChunkAdapterGEV.h"
#include "GenApi/ChunkAdapterGeneric.h"
#include "GenApi/ChunkAdapterU3V.h"
#include "GenApi/ChunkPort.h"
#include "NodeGraph.h"

namespace EngineTest {

using Bytes = std::vector<uint8_t>;

inline void Append(Bytes& buffer, const Bytes& bytes) {
    buffer.insert(buffer.end(), bytes.begin(), bytes.end());
}
inline Bytes LittleWord(uint32_t word) {
    return {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8),
            static_cast<uint8_t>(word >> 16), static_cast<uint8_t>(word >> 24)};
}
inline Bytes BigWord(uint32_t word) {
    const Bytes little = LittleWord(word);
    return {little.rbegin(), little.rend()};
}
/// The same bytes from 1 on, so that each tells its place.
inline Bytes CountUp(size_t size) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(i + 1);
    }
    return bytes;
}

/// A transport's way to write chunks.
struct Transport {
    const char* name;
    /// How its failures call the adapter.
    const char* noun;
    /// The digits of the identifier of a number below 256.
    std::function<std::string(uint8_t)> digits;
    std::function<void(Bytes&, uint8_t, const Bytes&)> append;
    std::function<std::unique_ptr<CChunkAdapter>(INodeMap*, int64_t)> make;
    /// How many bytes of the length count beside the data.
    uint32_t trailer;
};

inline void PrintTo(const Transport& transport, std::ostream* out) {
    *out << transport.name;
}

template <class Adapter>
std::unique_ptr<CChunkAdapter> MakeAdapter(INodeMap* map, int64_t maxChunkCacheSize) {
    return std::make_unique<Adapter>(map, maxChunkCacheSize);
}

inline std::string TwoDigits(uint8_t number) {
    constexpr char kDigits[] = "0123456789aBcDEf";
    return {kDigits[number >> 4], kDigits[number & 15]};
}

/// The trailer of a DCAM chunk whose data are already there.
inline void AppendDcamTrailer(Bytes& buffer, const Bytes& guid, uint32_t length) {
    Append(buffer, guid);
    Append(buffer, LittleWord(length));
    Append(buffer, LittleWord(~length));
}

inline Transport GigEVision() {
    return {"GigEVision",
            "parser",
            [](uint8_t number) { return "A00000" + TwoDigits(number); },
            [](Bytes& buffer, uint8_t number, const Bytes& data) {
                Append(buffer, data);
                Append(buffer, {0xA0, 0, 0, number});
                Append(buffer, BigWord(static_cast<uint32_t>(data.size())));
            },
            MakeAdapter<CChunkAdapterGEV>,
            0};
}
inline Transport Usb3Vision() {
    return {"Usb3Vision",
            "parser",
            [](uint8_t number) { return "A00000" + TwoDigits(number); },
            [](Bytes& buffer, uint8_t number, const Bytes& data) {
                Append(buffer, data);
                Append(buffer, LittleWord(0xA0000000U | number));
                Append(buffer, LittleWord(static_cast<uint32_t>(data.size())));
            },
            MakeAdapter<CChunkAdapterU3V>,
            0};
}
inline Transport Dcam() {
    return {"Dcam",
            "adapter",
            [](uint8_t number) { return "A0" + TwoDigits(number) + std::string(28, '7'); },
            [](Bytes& buffer, uint8_t number, const Bytes& data) {
                Bytes guid(16, 0x77);
                guid[0] = 0xA0;
                guid[1] = number;
                Append(buffer, data);
                AppendDcamTrailer(buffer, guid, static_cast<uint32_t>(data.size()) + 24);
            },
            MakeAdapter<CChunkAdapterDcam>,
            24};
}

constexpr char kLastFourBytes[] = "0xFFFFFFFFFFFFFFFC";

/// Four bytes of a chunk.
inline std::string ChunkRegXml(const std::string& name, const std::string& port,
                               const std::string& address = "0") {
    return RegXml{.name = name,
                  .caching = "",
                  .place = Element("Address", address),
                  .port = port,
                  .sign = "Unsigned",
                  .endianess = "BigEndian"}();
}

}  // namespace EngineTest
