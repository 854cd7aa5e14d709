#pragma once
/// What a camera's frame can do to a chunk adapter and to the features that read
/// its chunks.

#include <algorithm>
#include <cstdint>
#include <list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "GenApi/ChunkAdapter.h"
#include "GenApi/IRegister.h"
#include "support/XmlNodeMap.h"

namespace ChunkFuzz {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
using GenICam_3_0_ORVANE::GenericException;
using Bytes = std::span<const uint8_t>;

/// A frame in memory of exactly its size, so that the sanitizer sees each access
/// beyond it.
class Frame {
public:
    explicit Frame(Bytes bytes)
        : m_Bytes(std::make_unique<uint8_t[]>(bytes.size())), m_Size(bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), m_Bytes.get());
    }

    uint8_t* Data() const { return m_Bytes.get(); }
    int64_t Size() const { return static_cast<int64_t>(m_Size); }

private:
    std::unique_ptr<uint8_t[]> m_Bytes;
    size_t m_Size;
};

/// Identifiers short and long, with and without leading zeros, copied and not;
/// registers at both ends of their chunks, and the chunk's place and length.
class Camera {
public:
    void ReadAll() {
        for (IRegister* const node : m_Registers) {
            // A failure takes longer than all the rest, so only the useful ones.
            if (node->GetAccessMode() == NA) {
                continue;
            }
            uint8_t bytes[8];
            try {
                node->Get(bytes, node->GetLength());
                if (node->GetAccessMode() == RW) {
                    node->Set(bytes, node->GetLength());
                }
            } catch (const GenericException&) {  // NOLINT(bugprone-empty-catch): not there
            }
        }
    }
    INodeMap* Map() { return &m_Nodes.Map(); }

private:
    static std::string Describe() {
        static constexpr const char* kIdentifiers[] = {
            "01",
            "00000001",
            "A1B2C3D4",
            "00",
            "A1B2C3D4E5F60718293A4B5C6D7E8F90",
            "A1B2C3D4E5F60718293A4B5C6D7E8F90A1B2C3D4E5F60718293A4B5C6D7E8F90"};
        static constexpr const char* kAddresses[] = {"0", "3", "0xFFFFFFFFFFFFFFFC",
                                                     "0x7FFFFFFFFFFFFFF0", "0x7FFFFFFFFFFFFFFF"};
        std::string text;
        int port = 0;
        for (const char* const identifier : kIdentifiers) {
            const std::string name = "Port" + std::to_string(port++);
            text += "<Port Name=\"" + name + "\"><ChunkID>" + identifier +
                    "</ChunkID><CacheChunkData>" + (port % 2 == 0 ? "Yes" : "No") +
                    "</CacheChunkData></Port>";
            for (const char* const address : kAddresses) {
                const bool isAboutChunk = std::string_view(address).starts_with("0x7");
                const std::string length = isAboutChunk ? "8" : "4";
                text += "<Register Name=\"" + name + "At" + address + "\"><Address>" + address +
                        "</Address><Length>" + length + "</Length><AccessMode>" +
                        (isAboutChunk ? "RO" : "RW") + "</AccessMode><pPort>" + name +
                        "</pPort></Register>";
            }
        }
        return text;
    }

    std::vector<IRegister*> Registers() {
        node_vector nodes;
        m_Nodes->GetNodes(nodes);
        std::vector<IRegister*> registers;
        for (INode* const node : nodes) {
            if (auto* const found = dynamic_cast<IRegister*>(node)) {
                registers.push_back(found);
            }
        }
        return registers;
    }

    EngineTest::XmlNodeMap m_Nodes{Describe()};
    std::vector<IRegister*> m_Registers = Registers();
};

inline Camera& TheCamera() {
    static Camera camera;
    return camera;
}

/// What frames that come one after the other do to one adapter.
class Stream {
public:
    /// @param detaches  whether each frame is given back before the next comes
    Stream(CChunkAdapter& adapter, bool detaches) : m_Adapter(adapter), m_Detaches(detaches) {}

    /// @param attach  binds the chunks of the frame
    template <class Attach>
    void Deliver(Bytes bytes, const Attach& attach) {
        const Frame& frame = m_Frames.emplace_back(bytes);
        AttachStatistics_t statistics;
        try {
            attach(frame, statistics);
            OV_ASSERT(statistics.NumAttachedChunks <=
                      int64_t{statistics.NumChunks} * statistics.NumChunkPorts);
            TheCamera().ReadAll();
            m_Adapter.UpdateBuffer(m_Frames.emplace_back(bytes).Data());
        } catch (const GenericException&) {  // NOLINT(bugprone-empty-catch): no chunks
        }
        TheCamera().ReadAll();
        if (m_Detaches) {
            Finish();
        }
    }
    void Finish() {
        m_Adapter.DetachBuffer();
        m_Frames.clear();
        TheCamera().ReadAll();
        m_Adapter.ClearCaches();
        TheCamera().ReadAll();
    }

private:
    CChunkAdapter& m_Adapter;
    bool m_Detaches;
    std::list<Frame> m_Frames;
};

/// The first byte says how, the second limits the private copies, the others are
/// one frame or two.
template <class Adapter>
int RunTrailer(Bytes input) {
    if (input.size() < 2) {
        return 0;
    }
    Adapter adapter(TheCamera().Map(), input[1] == 0xFF ? -1 : input[1]);
    Stream stream(adapter, (input[0] & 2) != 0);
    const Bytes frames = input.subspan(2);
    const size_t size = (input[0] & 1) != 0 ? frames.size() / 2 : frames.size();
    for (const Bytes bytes : {frames.first(size), frames.subspan(size)}) {
        stream.Deliver(bytes, [&](const Frame& frame, AttachStatistics_t& statistics) {
            adapter.AttachBuffer(frame.Data(), frame.Size(), &statistics);
        });
    }
    stream.Finish();
    return 0;
}

}  // namespace ChunkFuzz
