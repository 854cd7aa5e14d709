// Packets of a stream from anyone, in any order and at any time. Whatever comes, nothing is
// written past a buffer, every packet and every block is counted once, and all buffers come
// back.

#include <chrono>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "Base/OvAssert.h"
#include "gige/assembly/BlockAssembler.h"

namespace {

using namespace OvGige;

constexpr size_t kBufferSize = 600;
constexpr size_t kGuardSize = 64;
constexpr std::byte kGuard{0xA5};
constexpr size_t kBuffers = 3;

/// Buffers with a guard after each.
class Shelf : public BlockClient {
public:
    Shelf() {
        for (size_t i = 0; i < kBuffers; ++i) {
            auto buffer = std::make_shared<OvProducer::Buffer>();
            buffer->ownMemory.assign(kBufferSize + kGuardSize, kGuard);
            buffer->base = buffer->ownMemory.data();
            buffer->size = kBufferSize;
            m_free.push_back(std::move(buffer));
        }
    }
    size_t Free() const { return m_free.size(); }
    uint64_t Delivered() const { return m_delivered; }

    std::shared_ptr<OvProducer::Buffer> TakeBuffer() override {
        if (m_free.empty()) {
            return nullptr;
        }
        auto buffer = m_free.front();
        m_free.pop_front();
        return buffer;
    }
    void Deliver(const std::shared_ptr<OvProducer::Buffer>& buffer,
                 const OvProducer::FrameInfo& frame) override {
        OV_ASSERT(frame.sizeFilled <= kBufferSize);
        for (const GenTL::S_SINGLE_CHUNK_DATA& chunk : frame.chunks) {
            OV_ASSERT(static_cast<size_t>(chunk.ChunkOffset) + chunk.ChunkLength <=
                      frame.sizeFilled);
        }
        ++m_delivered;
        GiveBack(buffer);
    }
    void GiveBack(const std::shared_ptr<OvProducer::Buffer>& buffer) override {
        for (const std::byte byte : std::span(buffer->ownMemory).subspan(kBufferSize)) {
            OV_ASSERT(byte == kGuard);
        }
        m_free.push_back(buffer);
    }
    void AskAgain(const ResendRequest& request) override {
        OV_ASSERT(request.firstPacket <= request.lastPacket);
        const auto read = ParseResend(BuildResend(request), request.Flags());
        // A camera that changes to short headers in the middle of a block has short ids, too.
        const uint64_t mask = request.isExtended ? ~uint64_t{0} : kShortBlockIdMax;
        OV_ASSERT(read && read->blockId == (request.blockId & mask));
    }

private:
    std::deque<std::shared_ptr<OvProducer::Buffer>> m_free;
    uint64_t m_delivered = 0;
};

/// The input is a list of packets, each after two bytes: the time before it, and its length.
void Play(ByteView input, const AssemblerSettings& settings) {
    Shelf shelf;
    StreamAccount account;
    BlockAssembler assembler(settings, account, shelf);
    TimePoint now{std::chrono::hours(1)};
    uint64_t packets = 0;
    while (input.size() >= 2) {
        now += std::chrono::microseconds(100) * std::to_integer<int>(input[0]);
        const size_t length = std::min<size_t>(std::to_integer<size_t>(input[1]), input.size() - 2);
        assembler.Tick(now);
        OV_ASSERT(assembler.Due() > now);
        assembler.Take(input.subspan(2, length), now);
        ++packets;
        input = input.subspan(2 + length);
    }
    assembler.End(true);
    OV_ASSERT(!assembler.IsBusy());
    OV_ASSERT(shelf.Free() == kBuffers);
    OV_ASSERT(account.used.Value() + account.doubled.Value() + account.refused.Value() +
                  account.ignored.Value() ==
              packets);
    OV_ASSERT(account.complete.Value() + account.incomplete.Value() ==
              shelf.Delivered() + account.leftOut.Value());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) {
        return 0;
    }
    const ByteView input = std::as_bytes(std::span(data, size));
    AssemblerSettings settings;
    settings.packetSize = 64;
    settings.resends = (data[0] & 1) != 0;
    settings.deliversIncomplete = (data[0] & 2) != 0;
    settings.resendPercent = (data[0] & 4) != 0 ? 100 : 25;
    settings.resendsPerSecond = (data[0] & 8) != 0 ? 20 : 10'000;
    Play(input.subspan(1), settings);
    return 0;
}
