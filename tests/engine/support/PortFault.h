#pragma once
/// A camera with every kind of node over a port that can fail any one of its
/// accesses, for tests of what a failure leaves behind.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "GenApi/IDestroy.h"
#include "NodeGraph.h"

namespace EngineTest {

/// What a client's transport may throw: no exception of the engine's family.
struct PortFault {
    size_t access;
};

/// Counts every call and fails one of them. Which exception it is alternates
/// between one of the engine's and one that the engine has never heard of.
class FaultPort : public IPort {
public:
    explicit FaultPort(IPort& memory) : m_Memory(memory) {}

    EAccessMode GetAccessMode() override {
        Note();
        return m_Memory.GetAccessMode();
    }
    void Read(void* buffer, int64_t address, int64_t length) override {
        Note();
        m_Memory.Read(buffer, address, length);
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        Note();
        m_Memory.Write(buffer, address, length);
    }

    size_t GetAccesses() const { return m_Accesses; }
    /// Counts from here; the n-th access from 1 on fails, none for 0.
    void Restart(size_t failingAccess) {
        m_Accesses = 0;
        m_FailingAccess = failingAccess;
    }

private:
    void Note() {
        if (++m_Accesses != m_FailingAccess) {
            return;
        }
        if (m_Accesses % 2 == 0) {
            TIMEOUT_EXCEPTION("Access %zu failed", m_Accesses);
        }
        throw PortFault{m_Accesses};
    }

    IPort& m_Memory;
    size_t m_Accesses = 0;
    size_t m_FailingAccess = 0;
};

/// One live camera. All of them are alike and made of one description.
class FaultCamera {
public:
    explicit FaultCamera(bool isWarm);
    FaultCamera(const FaultCamera&) = delete;
    FaultCamera& operator=(const FaultCamera&) = delete;

    FaultPort& Port() { return m_Port; }
    INodeMap& Map() { return *m_Map; }
    INode& Get(const char* name) { return *m_Map->GetNode(name); }
    /// All bytes of the device.
    std::vector<uint8_t> Memory();
    /// The callbacks that ran since the last call, by name.
    NotingCallback::Calls TakeCalls() {
        std::sort(m_Calls.begin(), m_Calls.end());
        return std::exchange(m_Calls, {});
    }
    /// Reads all values, so that they are known.
    std::vector<std::string> ReadAll(bool ignoreCache);
    /// No write and no call is going on, and nobody holds the lock.
    void ExpectAtRest();
    /// What the nodes answer is what the device holds.
    void ExpectTruth();

private:
    struct Destroyer {
        void operator()(INodeMap* map) const { dynamic_cast<IDestroy&>(*map).Destroy(); }
    };

    TestPort m_Memory;
    FaultPort m_Port{m_Memory};
    NotingCallback::Calls m_Calls;
    std::unique_ptr<INodeMap, Destroyer> m_Map;
};

}  // namespace EngineTest
