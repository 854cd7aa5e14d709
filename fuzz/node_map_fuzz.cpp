#include "Base/GCException.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/NodeMapRef.h"
#include "description_fuzz.h"

namespace DescriptionFuzz {

namespace {

using GenICam_3_0_ORVANE::GenericException;

int64_t IntegerOf(const CNodeData& node, CPropertyID id, int64_t otherwise) {
    const CProperty* const property = node.FindProperty(id);
    return property == nullptr ? otherwise : property->Integer();
}

/// Bits that no register has, lengths that no number has, and registers of the
/// protocols' own that are used otherwise end the process.
bool EndsTheProcess(const CNodeData& node) {
    const auto isBit = [&](CPropertyID id) {
        const int64_t bit = IntegerOf(node, id, 0);
        return bit >= 0 && bit < 32;
    };
    switch (node.GetNodeType()) {
        case CNodeData::AdvFeatureLock_ID:
        case CNodeData::SmartFeature_ID:
            return true;
        case CNodeData::FloatReg_ID:
            return node.FindProperty(CPropertyID::pLength_ID) != nullptr;
        case CNodeData::MaskedIntReg_ID:
            return node.FindProperty(CPropertyID::pLength_ID) != nullptr ||
                   !isBit(CPropertyID::LSB_ID) || !isBit(CPropertyID::MSB_ID);
        default:
            return false;
    }
}

bool IsHarmless(const Input& input) {
    CNodeDataMap map;
    Parse(input, map);
    return !HasSelectors(map) && !HasNode(map, EndsTheProcess);
}

template <class Action>
void Attempt(const Action& action) {
    try {
        action();
    } catch (const GenericException&) {  // NOLINT(bugprone-empty-catch): refused
    }
}

template <class Interface, class Action>
void With(INode& node, const Action& action) {
    if (auto* const face = dynamic_cast<Interface*>(&node)) {
        Attempt([&] { action(*face); });
    }
}

/// What a viewer asks of each node.
void Use(INode& node) {
    Attempt([&] { node.GetAccessMode(); });
    With<IInteger>(node, [](IInteger& number) {
        number.GetMin();
        number.GetMax();
        number.GetInc();
        number.SetValue(number.GetValue());
    });
    With<IFloat>(node, [](IFloat& number) {
        number.GetMin();
        number.GetMax();
        number.SetValue(number.GetValue());
    });
    With<IEnumeration>(node, [](IEnumeration& enumeration) {
        node_vector entries;
        enumeration.GetEntries(entries);
        enumeration.SetIntValue(1);
    });
    With<IValue>(node, [](IValue& value) { value.FromString(value.ToString()); });
    Attempt([&] { node.InvalidateNode(); });
}

void Run(const Input& input) {
    if (!IsHarmless(input)) {
        return;
    }
    EngineTest::TestPort port(64);
    CNodeMapRef map("Device");
    map._LoadXMLFromString(input.document.c_str());
    map._Connect(&port);
    node_vector nodes;
    map._GetNodes(nodes);
    for (INode* const node : nodes) {
        Use(*node);
    }
}

}  // namespace

}  // namespace DescriptionFuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace DescriptionFuzz;  // NOLINT(google-build-using-namespace)
    if (size > 0) {
        Attempt([&] { Run({data, size}); });
    }
    return 0;
}
