#pragma once
/// Small graphs of live nodes over a memory of bytes: described in a few lines,
/// linked up as those of a device are.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICategory.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IString.h"
#include "factory/NodeCreation.h"
#include "map/NodeMap.h"
#include "nodes/NodeDataMap.h"
#include "reader/NodeDataMapFactory.h"
#include "support/FailureText.h"
#include "support/NodeDataBuilder.h"
#include "support/NotingCallback.h"

namespace ValueTest {

using namespace GenApi_3_0_ORVANE;   // NOLINT(google-build-using-namespace)
using namespace GenICam_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
using NodeDataTest::AddNode;
using NodeDataTest::ID;
using NodeDataTest::Links;

/// A device of bytes that counts how often it is asked.
class MemoryPort : public IPort {
public:
    EAccessMode GetAccessMode() override { return RW; }
    void Read(void* buffer, int64_t address, int64_t length) override {
        ++reads;
        std::copy_n(At(address), length, static_cast<uint8_t*>(buffer));
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        if (failWrites) {
            RUNTIME_EXCEPTION("The device is gone");
        }
        ++writes;
        std::copy_n(static_cast<const uint8_t*>(buffer), length, At(address));
    }

    /// What the device does by itself, behind all caches.
    void Put(int64_t address, int32_t value) {
        std::copy_n(reinterpret_cast<const uint8_t*>(&value), sizeof(value), At(address));
    }
    int32_t Peek(int64_t address) {
        int32_t value = 0;
        std::copy_n(At(address), sizeof(value), reinterpret_cast<uint8_t*>(&value));
        return value;
    }

    int reads = 0;
    int writes = 0;
    bool failWrites = false;

private:
    uint8_t* At(int64_t address) { return m_Bytes.data() + address; }

    std::vector<uint8_t> m_Bytes = std::vector<uint8_t>(256);
};

class ValueGraph : public testing::Test {
protected:
    ValueGraph() {
        Add(CNodeData::RegisterDescription_ID, "_RegisterDescription");
        Add(CNodeData::Port_ID, "Device");
    }

    /// A property that is a link to a node by name.
    using Link = Links::value_type;

    /// Describes a node. The result, to which other properties are added, is valid until the
    /// next node is described.
    CNodeData& Add(CNodeData::ENodeType_t type, const char* name,
                   const std::vector<Link>& links = {}) {
        return AddNode(m_Data, type, name, links);
    }
    /// A register of four bytes.
    CNodeData& AddReg(const char* name, int64_t address, EAccessMode mode = RW,
                      ECachingMode caching = WriteThrough) {
        CNodeData& node = Add(CNodeData::IntReg_ID, name, {{ID::pPort_ID, "Device"}});
        node.AddProperty(ID::Address_ID, address);
        node.AddProperty(ID::Length_ID, 4);
        node.AddProperty(ID::AccessMode_ID, CProperty::EAccessMode_ID, mode);
        node.AddProperty(ID::Cachable_ID, CProperty::ECachingMode_ID, caching);
        node.AddProperty(ID::Sign_ID, CProperty::ESign_ID, Signed);
        return node;
    }
    CNodeData& AddInteger(const char* name, const std::vector<Link>& links = {}) {
        return Add(CNodeData::Integer_ID, name, links);
    }
    CNodeData& AddEntry(const char* symbolic, int64_t value, const std::vector<Link>& links = {}) {
        CNodeData& node = Add(CNodeData::EnumEntry_ID, symbolic, links);
        node.AddProperty(ID::Symbolic_ID, symbolic);
        node.AddProperty(ID::Value_ID, value);
        return node;
    }
    /// Qualifies the last property of a node by an index.
    static void AtIndex(CNodeData& node, int64_t index) {
        node.GetProperties().back().SetAttribute(
            std::make_unique<CProperty>(node.GetNodeDataMap(), CPropertyID(ID::Index_ID), index));
    }

    /// Makes live nodes of all that was described.
    void Build() {
        CNodeDataMapFactory::PreProcessNodeDataMap(&m_Data);
        const auto count = static_cast<int32_t>(m_Data.GetNumNodeIDs());
        m_Map->SetNumNodes(static_cast<size_t>(count));
        for (int32_t i = 0; i < count; ++i) {
            const CNodeData& data = *m_Data.GetNodeData(NodeID_t(i));
            const bool isNode = data.GetNodeType() != CNodeData::RegisterDescription_ID;
            m_Map->RegisterNode(isNode ? CreateNode(data.GetNodeType()).release() : nullptr,
                                data.GetNodeType(), NodeID_t(i));
        }
        ForEachNode([](INodePrivate& node, const CNodeData& data) {
            for (const CProperty& property : data.GetProperties()) {
                node.SetProperty(property);
            }
            node.SetClosure(data.GetClosure().dependents, data.GetClosure().terminals);
        });
        ForEachNode([](INodePrivate& node, const CNodeData&) { node.FinalConstruct(); });
        m_Map->FinalConstruct();
        m_Map->Connect(&m_Port);
    }

    template <class Interface>
    Interface& Get(const char* name) {
        return dynamic_cast<Interface&>(*m_Map->GetNode(name));
    }
    void Record(const char* name) {
        INode* const node = m_Map->GetNode(name);
        node->RegisterCallback(new EngineTest::NotingCallback(node, m_Calls));
    }

    struct Destroyer {
        void operator()(CNodeMap* map) const { map->Destroy(); }
    };
    CNodeDataMap m_Data;
    MemoryPort m_Port;
    std::vector<std::string> m_Calls;
    std::unique_ptr<CNodeMap, Destroyer> m_Map{new CNodeMap("Device")};

private:
    template <class Action>
    void ForEachNode(const Action& action) {
        for (int32_t i = 1; i < static_cast<int32_t>(m_Data.GetNumNodeIDs()); ++i) {
            action(*m_Map->GetNodeByID(NodeID_t(i)), *m_Data.GetNodeData(NodeID_t(i)));
        }
    }
};

}  // namespace ValueTest
