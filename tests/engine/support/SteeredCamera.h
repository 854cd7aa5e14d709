#pragma once
/// A camera of nothing but a description and plain memory, which a test brings
/// into the state that it needs.

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "FactorySupport.h"
#include "WriteGoal.h"

namespace EngineTest {

/// Memory at every address, of zeros in the beginning.
class PlainMemory : public IPort {
public:
    using Bytes = std::unordered_map<uint64_t, uint8_t>;

    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

    /// What is written to this address is a command, which is done at once.
    void FinishAtOnce(int64_t address) { m_DoneAtOnce.insert(address); }

    const Bytes& Content() const { return m_Bytes; }
    void SetContent(const Bytes& bytes) { m_Bytes = bytes; }

private:
    Bytes m_Bytes;
    std::unordered_set<int64_t> m_DoneAtOnce;
};

class SteeredCamera {
public:
    explicit SteeredCamera(const fs::path& file);

    INodeMap& Map() { return *m_Map.operator->(); }
    /// The nodes of the description, in its order.
    std::vector<INode*> Nodes();

    /// Sets what the goal's node gets its value, limits and rights from, until the goal
    /// is reached; memory alone where the goal holds its selectors, or else other
    /// features too. False, and all as it was, when nothing that is tried does it.
    bool Steer(const WriteGoal& goal);

    /// Gives the node a value that it takes, where it has another one.
    static void MakeValid(IValue& node);

private:
    /// Loading settings waits for these.
    void FinishAtOnce(INode& command);

    PlainMemory m_Memory;
    MapOwner m_Map;
};

}  // namespace EngineTest
