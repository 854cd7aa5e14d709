#pragma once
/// A camera's registers and memory, by as many commands as an access takes.

#include <cstdint>
#include <span>

#include "gige/control/ControlChannel.h"

namespace OvGige {

/// All functions may be called from any thread. Failures are those of
/// `ControlChannel::Exchange`, and GC_ERR_IO for an answer that isn't one to the command.
class CameraMemory {
public:
    explicit CameraMemory(ControlChannel& channel) : m_channel(channel) {}

    /// What the camera's capability register says; nothing is used that isn't there. Until
    /// this call, no optional command is used.
    void SetCapability(uint32_t capability) { m_capability = capability; }
    uint32_t Capability() const { return m_capability; }

    /// @param limit  as in `ControlChannel::Exchange`
    uint32_t ReadRegister(uint32_t address, std::optional<std::chrono::milliseconds> limit = {});
    /// The value of a register that not every camera has; 0 if the camera refuses to be read there.
    uint32_t ReadRegisterIfThere(uint32_t address);
    void WriteRegister(uint32_t address, uint32_t value);

    Clock::time_point LastAnswer() const { return m_channel.LastAnswer(); }

    /// Reads bytes at any address: the words around them are read.
    /// @throws OvProducer::Failure GC_ERR_INVALID_ADDRESS beyond 32 bits
    void Read(uint64_t address, std::span<std::byte> out);
    /// Writes bytes at any address: of a word that isn't written as a whole, the other bytes
    /// are read first and written back.
    /// @throws OvProducer::Failure GC_ERR_INVALID_ADDRESS beyond 32 bits
    void Write(uint64_t address, ByteView in);

private:
    void ReadWords(uint32_t address, std::span<std::byte> out);
    void WriteWords(uint32_t address, ByteView in);
    bool Offers(uint32_t bit) const { return (m_capability & bit) != 0; }

    ControlChannel& m_channel;
    std::atomic<uint32_t> m_capability = 0;
};

}  // namespace OvGige
