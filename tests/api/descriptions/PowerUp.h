#pragma once
/// Prepares the made-up memory of a camera as if the camera had just been switched on.

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "GenApi/INodeMap.h"
#include "GenApi/IPort.h"
#include "GenApi/IRegister.h"
#include "GenApi/IValue.h"
#include "producer/MadeUpMemory.h"

namespace GenApi = GenApi_3_0_ORVANE;

/// All nodes of a map with a value that applications see.
std::vector<GenApi::IValue*> FeaturesOf(GenApi::INodeMap& map);

/// Connects all ports of the device itself: chunks and events have their own.
void ConnectDevicePorts(GenApi::INodeMap& map, GenApi::IPort& port);

/// Made-up memory isn't like that of a camera: features aren't available, and values are
/// beyond their limits. This changes registers until as many features as possible are
/// available and have legal values, and the frame fits into memory.
class PowerUp {
public:
    /// @param map  connected to the memory
    PowerUp(GenApi::INodeMap& map, OvTest::MadeUpMemory& memory);

    void Run();

private:
    using Change = std::function<void()>;

    void ForEach(const std::function<void(GenApi::IValue&)>& run) const;
    int ScoreOf(GenApi::IValue& value) const;
    int Score() const;
    void Improve(GenApi::IValue& value, const Change& change, const Change& undo);
    void ImproveBy(GenApi::IValue& value, GenApi::IRegister& reg, int64_t number);
    void Search(GenApi::IValue& value, size_t mostRegisters);
    std::vector<GenApi::IRegister*> RegistersOf(GenApi::INode& node, const char* property) const;
    void PrepareProperties(const GenApi::node_vector& nodes);
    void PrepareValuesInLimits(const GenApi::node_vector& nodes);
    void Prepare();
    void Settle(GenApi::IValue& value, size_t mostRegisters);
    void SettleAll(GenApi::IValue& value);
    void LimitSelector(GenApi::IValue& value);
    void SettleSharedRegisters();
    void SetPayloadSize();

    GenApi::INodeMap& m_map;
    OvTest::MadeUpMemory& m_memory;
    const std::vector<GenApi::IValue*> m_features;
    /// The features that can be written in some state of the camera.
    std::set<GenApi::IValue*> m_writable;
    /// The registers from which each feature is read.
    std::map<GenApi::IValue*, std::vector<GenApi::IRegister*>> m_registers;
};
