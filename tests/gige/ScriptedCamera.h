#pragma once
/// A camera of numbers in registers, at the other end of a scripted link.

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "ScriptedLink.h"
#include "gige/protocol/Registers.h"

/// Answers reads and writes of registers as a camera does. May be changed by a test while it
/// is used.
class ScriptedCamera {
public:
    /// A link to this camera, for one channel.
    std::unique_ptr<OvGige::DatagramLink> Link() {
        auto link = std::make_unique<ScriptedLink>();
        link->Answer([this](const OvGige::CommandPacket& command) {
            ++m_commands;
            return m_isSilent ? std::vector<ScriptedReply>()
                              : std::vector<ScriptedReply>{{{}, Serve(command)}};
        });
        return link;
    }

    uint32_t& operator[](uint32_t address) { return m_registers[address]; }
    std::vector<OvGige::RegisterWrite> Writes() const {
        const std::lock_guard lock(m_mutex);
        return m_writes;
    }
    int Commands() const { return m_commands; }

    void FallSilent() { m_isSilent = true; }
    /// Refuses writes of this register from now on.
    void Refuse(uint32_t address, OvGige::Status status) {
        const std::lock_guard lock(m_mutex);
        m_refused[address] = status;
    }
    /// Called after each write that was done, on the thread that made it.
    void Watch(std::function<void(const OvGige::RegisterWrite&)> watcher) {
        m_watcher = std::move(watcher);
    }
    void Set(uint32_t address, uint32_t value) {
        const std::lock_guard lock(m_mutex);
        m_registers[address] = value;
    }

private:
    OvGige::Bytes Serve(const OvGige::CommandPacket& command) {
        const std::lock_guard lock(m_mutex);
        if (command.command == OvGige::Command::WriteRegister) {
            const OvGige::RegisterWrite write = OvGige::ParseWrites(command.payload)->front();
            if (m_refused.contains(write.address)) {
                return AnswerOf(command, {}, m_refused[write.address]);
            }
            m_writes.push_back(write);
            m_registers[write.address] = write.value;
            if (m_watcher) {
                m_watcher(write);
            }
            return AnswerOf(command, OvGige::BuildCount(1));
        }
        const uint32_t address = OvGige::ParseNumbers(command.payload)->front();
        return AnswerOf(command, OvGige::BuildNumbers(std::array{m_registers[address]}));
    }

    mutable std::mutex m_mutex;
    std::map<uint32_t, uint32_t> m_registers;
    std::map<uint32_t, OvGige::Status> m_refused;
    std::vector<OvGige::RegisterWrite> m_writes;
    std::function<void(const OvGige::RegisterWrite&)> m_watcher;
    std::atomic<int> m_commands = 0;
    std::atomic<bool> m_isSilent = false;
};
