#pragma once
/// A camera of nothing but a description and plain memory, which a test brings
/// into the state that it needs.

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "factory_support.h"

namespace EngineTest {

/// Memory at every address, of zeros in the beginning.
class PlainMemory : public IPort {
public:
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

    /// What is written to this address is a command, which is done at once.
    void FinishAtOnce(int64_t address) { m_DoneAtOnce.insert(address); }

private:
    std::unordered_map<uint64_t, uint8_t> m_Bytes;
    std::unordered_set<int64_t> m_DoneAtOnce;
};

class SteeredCamera {
public:
    explicit SteeredCamera(const fs::path& file);

    INodeMap& Map() { return *m_Map.operator->(); }
    /// The nodes of the description, in its order.
    std::vector<INode*> Nodes();

    /// Tells how near a state is to the one that is looked for.
    using Score = std::function<int64_t()>;
    /// Sets what the node's value, limits and rights come from, until the score
    /// reaches the goal. False, and all as it was, when nothing that is tried
    /// does it.
    /// @param withFeatures  whether other features may be set, or memory alone
    bool Steer(INode& node, const Score& score, int64_t goal, bool withFeatures = true);
    /// Gives what the node's limits are read from numbers that a camera may have.
    void SetLimits(INode& node);

    /// Gives the node a value that it takes, where it has another one.
    static void MakeValid(IValue& node);

private:
    /// Loading settings waits for these.
    void FinishAtOnce(INode& command);

    PlainMemory m_Memory;
    MapOwner m_Map;
};

/// The value of a node as a number, whole ones of floats; 0 for texts.
int64_t NumberOf(IValue& node);
void SetNumber(IValue& node, int64_t number, bool verify);
/// What the node can be set to, in order: all entries that are there, or the
/// first whole numbers within its limits.
std::vector<int64_t> NumbersFor(IValue& node, size_t most);

}  // namespace EngineTest
