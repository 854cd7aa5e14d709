#include "ReferenceMap.h"

#include <algorithm>
#include <set>

#include "Base/GCException.h"
#include "GenApi/FeatureBag.h"
#include "GenApi/IBoolean.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "GenApi/IString.h"
#include "GenApi/NodeMapFactory.h"
#include "GenApi/Pointer.h"
#include "GenApi/SelectorSet.h"
#include "support/ApiTest.h"

namespace {

using GenICam_3_0_ORVANE::gcstring;
using GenICam_3_0_ORVANE::GenericException;
using namespace GenApi;  // NOLINT(google-build-using-namespace)

/// Fails with the text that the library has for the same.
void RequireSuccess(OV_STATUS status) {
    if (status != OV_STATUS_SUCCESS) {
        RUNTIME_EXCEPTION("%s", LastError::Get().message.c_str());
    }
}

bool IsLegal(IInteger& feature) {
    const int64_t value = feature.GetValue();
    const int64_t min = feature.GetMin();
    const int64_t inc = feature.GetInc();
    return value >= min && value <= feature.GetMax() && inc != 0 && (value - min) % inc == 0;
}

bool IsLegal(IFloat& feature) {
    const double value = feature.GetValue();
    return value >= feature.GetMin() && value <= feature.GetMax();
}

bool IsLegal(IEnumeration& feature) {
    return feature.GetCurrentEntry() != nullptr;
}

bool IsLegal(IBoolean& feature) {
    feature.GetValue();
    return true;
}

bool IsLegal(IString& feature) {
    const gcstring text = feature.GetValue();
    return std::all_of(text.c_str(), text.c_str() + text.size(),
                       [](unsigned char c) { return c >= 0x20 && c < 0x7F; });
}

void MakeLegal(IInteger& feature) {
    feature.SetValue(feature.GetMin());
}

void MakeLegal(IFloat& feature) {
    feature.SetValue(feature.GetMin());
}

void MakeLegal(IEnumeration& feature) {
    gcstring_vector names;
    feature.GetSymbolics(names);
    if (!names.empty()) {
        feature = names[0];
    }
}

void MakeLegal(IBoolean& feature) {
    feature.SetValue(false);
}

void MakeLegal(IString& feature) {
    feature.SetValue("a");
}

template <class T>
bool IsLegalNow(T& feature) {
    try {
        return IsLegal(feature);
    } catch (const GenericException&) {
        return false;
    }
}

enum class Settled { Before, Now, Never };

template <class T>
Settled Settle(IValue& value) {
    const CPointer<T> feature(&value);
    if (!feature.IsValid() || IsLegalNow(*feature)) {
        return Settled::Before;
    }
    try {
        MakeLegal(*feature);
    } catch (const GenericException&) {
        return Settled::Never;
    }
    return IsLegalNow(*feature) ? Settled::Now : Settled::Never;
}

Settled SettleNow(IValue& value) {
    if (value.GetAccessMode() != RW) {
        return Settled::Before;
    }
    switch (value.GetNode()->GetPrincipalInterfaceType()) {
        case intfIInteger:
            return Settle<IInteger>(value);
        case intfIFloat:
            return Settle<IFloat>(value);
        case intfIEnumeration:
            return Settle<IEnumeration>(value);
        case intfIBoolean:
            return Settle<IBoolean>(value);
        case intfIString:
            return Settle<IString>(value);
        default:
            return Settled::Before;
    }
}

/// Under each combination of its selectors, or as many: the worst of what came of it.
Settled SettleAll(IValue& value) {
    constexpr int kMostCombinations = 64;
    Settled worst = Settled::Before;
    try {
        CSelectorSet selectors(&value);
        bool isThere = selectors.SetFirst();
        for (int i = 0; isThere && i < kMostCombinations; ++i) {
            worst = std::max(worst, SettleNow(value));
            isThere = selectors.SetNext();
        }
    } catch (const GenericException&) {
        return Settled::Never;
    }
    return worst;
}

FeatureValue ValueOf(IInteger& node) {
    return node.GetValue(false, true);
}

FeatureValue ValueOf(IFloat& node) {
    return node.GetValue(false, true);
}

FeatureValue ValueOf(IEnumeration& node) {
    return node.GetIntValue(false, true);
}

FeatureValue ValueOf(IBoolean& node) {
    return node.GetValue(false, true);
}

FeatureValue ValueOf(IString& node) {
    return std::string(node.GetValue(false, true).c_str());
}

FeatureValue ValueOf(IRegister& node) {
    std::vector<uint8_t> bytes(static_cast<size_t>(node.GetLength()));
    node.Get(bytes.data(), static_cast<int64_t>(bytes.size()), false, true);
    return bytes;
}

/// What an identifier of another type than the feature gives is the library's own
/// text.
template <class T>
FeatureValue ValueOfType(INode* node) {
    auto* const feature = dynamic_cast<T*>(node);
    if (feature == nullptr) {
        RUNTIME_EXCEPTION("Dynamic_cast failed");
    }
    return ValueOf(*feature);
}

FeatureValue ValueOf(INode* node, OV_FEATURE_TYPE type) {
    switch (type) {
        case OV_FEATURE_TYPE_INT:
            return ValueOfType<IInteger>(node);
        case OV_FEATURE_TYPE_FLOAT:
            return ValueOfType<IFloat>(node);
        case OV_FEATURE_TYPE_ENUM:
            return ValueOfType<IEnumeration>(node);
        case OV_FEATURE_TYPE_BOOL:
            return ValueOfType<IBoolean>(node);
        case OV_FEATURE_TYPE_STRING:
            return ValueOfType<IString>(node);
        default:
            return ValueOfType<IRegister>(node);
    }
}

/// A value, or the text of the engine's failure.
template <class T, class Call>
Answer<T> Ask(Call call) {
    Answer<T> answer;
    try {
        answer.value = call();
    } catch (const GenericException& failure) {
        answer.status = OV_STATUS_ERROR;
        answer.message = failure.GetDescription();
    }
    return answer;
}

/// The registers that a value comes from, and its limits and its access mode.
void FindRegisters(INode& node, std::set<INode*>& seen, std::vector<IRegister*>& found) {
    if (!seen.insert(&node).second) {
        return;
    }
    if (auto* const reg = dynamic_cast<IRegister*>(&node)) {
        found.push_back(reg);
    }
    node_vector children;
    node.GetChildren(children, ReadingChildren);
    for (INode* const child : children) {
        FindRegisters(*child, seen, found);
    }
}

/// A number as the bytes of a register, in one order or the other.
std::vector<uint8_t> BytesOf(int64_t number, size_t length, bool isBigEndian) {
    std::vector<uint8_t> bytes(length);
    for (size_t i = 0; i < length && i < sizeof number; ++i) {
        bytes[isBigEndian ? length - 1 - i : i] = static_cast<uint8_t>(number >> (8 * i));
    }
    return bytes;
}

INode& CurrentOrFirstEntry(IEnumeration& feature) {
    const int64_t value = feature.GetIntValue();
    node_vector entries;
    feature.GetEntries(entries);
    for (INode* const entry : entries) {
        if (CPointer<IEnumEntry>(entry)->GetValue() == value) {
            return *entry;
        }
    }
    return *entries[0];
}

}  // namespace

void RawPort::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    RequireSuccess(OVReadRemoteDevicePort(m_camera, static_cast<uint64_t>(address), buffer, &size));
}

void RawPort::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    RequireSuccess(
        OVWriteRemoteDevicePort(m_camera, static_cast<uint64_t>(address), buffer, &size));
}

ReferenceMap::ReferenceMap(OV_DEV_HANDLE camera, const std::string& description)
    : m_port(camera),
      m_map(CNodeMapFactory(ContentType_Xml, description.data(), description.size())
                .CreateNodeMap()) {
    node_vector nodes;
    m_map->GetNodes(nodes);
    for (INode* const node : nodes) {
        // Chunks and events have ports of their own.
        gcstring chunk;
        gcstring attribute;
        if (dynamic_cast<IPort*>(node) != nullptr && node->GetEventID().empty() &&
            !node->GetProperty("ChunkID", chunk, attribute)) {
            m_map->Connect(&m_port, node->GetName());
        }
    }
}

std::vector<IValue*> ReferenceMap::Features() const {
    node_vector nodes;
    m_map->GetNodes(nodes);
    std::vector<IValue*> features;
    for (INode* const node : nodes) {
        auto* const value = dynamic_cast<IValue*>(node);
        if (value != nullptr && node->IsFeature() &&
            node->GetPrincipalInterfaceType() != intfICategory) {
            features.push_back(value);
        }
    }
    return features;
}

Answer<EAccessMode> ReferenceMap::AccessMode(const Feature& feature) const {
    return Ask<EAccessMode>([&] {
        INode* const node = m_map->GetNode(feature.Name());
        return node == nullptr ? NI : node->GetAccessMode();
    });
}

Answer<FeatureValue> ReferenceMap::Read(const Feature& feature) const {
    return Ask<FeatureValue>(
        [&] { return ValueOf(m_map->GetNode(feature.Name()), feature.Type()); });
}

bool ReferenceMap::IsSelector(const Feature& feature) const {
    const CPointer<ISelector> selector(m_map->GetNode(feature.Name()));
    return selector.IsValid() && selector->IsSelector();
}

void ReferenceMap::SetPayloadSize(int64_t size) {
    INode* const node = m_map->GetNode("PayloadSize");
    const CPointer<IInteger> payload(node);
    if (payload.IsValid() && IsReadable(node->GetAccessMode())) {
        PutNumberBehind(*node, size, [&] { return payload->GetValue(false, true) == size; });
    }
}

void ReferenceMap::LimitSelector(IValue& value) {
    constexpr int64_t most = 3;
    const CPointer<IInteger> selector(&value);
    const CPointer<ISelector> chooses(&value);
    const auto isSmall = [&] {
        return selector->GetMax() - selector->GetMin() <= most && selector->GetInc() > 0;
    };
    if (selector.IsValid() && chooses->IsSelector() && value.GetAccessMode() == RW && !isSmall()) {
        PutNumberBehind(*value.GetNode(), most, isSmall);
    }
}

void ReferenceMap::OfferEntry(IValue& value) {
    constexpr int64_t allBits = -1;
    const CPointer<IEnumeration> feature(&value);
    if (!feature.IsValid() || value.GetAccessMode() != RW) {
        return;
    }
    INode& entry = CurrentOrFirstEntry(*feature);
    const auto isThere = [&] { return IsAvailable(entry.GetAccessMode()); };
    for (const int64_t number : {int64_t{1}, allBits}) {
        if (!isThere()) {
            PutNumberBehind(entry, number, isThere);
        }
    }
}

/// Registers that aren't the ones keep what they have.
void ReferenceMap::PutNumberBehind(INode& node, int64_t number,
                                   const std::function<bool()>& isDone) {
    std::set<INode*> seen;
    std::vector<IRegister*> registers;
    FindRegisters(node, seen, registers);
    for (IRegister* const reg : registers) {
        const int64_t length = reg->GetLength();
        std::vector<uint8_t> before(static_cast<size_t>(length));
        m_port.Read(before.data(), reg->GetAddress(), length);
        for (const bool isBigEndian : {false, true}) {
            m_port.Write(BytesOf(number, before.size(), isBigEndian).data(), reg->GetAddress(),
                         length);
            m_map->InvalidateNodes();
            if (Ask<bool>(isDone).value) {
                return;
            }
        }
        m_port.Write(before.data(), reg->GetAddress(), length);
        m_map->InvalidateNodes();
    }
}

std::set<std::string> ReferenceMap::PowerUp() {
    constexpr int kPasses = 3;  // limits may depend on what is settled after them
    ForEach([&](IValue& value) { LimitSelector(value); });
    ForEach([&](IValue& value) { OfferEntry(value); });
    std::set<std::string> never;
    bool isAtRest = false;
    for (int pass = 0; pass < kPasses && !isAtRest; ++pass) {
        isAtRest = true;
        never.clear();
        ForEach([&](IValue& value) {
            const Settled settled = SettleAll(value);
            isAtRest = isAtRest && settled == Settled::Before;
            if (settled == Settled::Never) {
                never.insert(value.GetNode()->GetName().c_str());
            }
        });
    }
    SettleSharedRegisters();
    return never;
}

void ReferenceMap::SettleSharedRegisters() {
    constexpr int kRounds = 3;
    Ask<bool>([&] {
        for (int round = 0; round < kRounds; ++round) {
            CFeatureBag bag;
            bag.StoreToBag(m_map.get());
            bag.LoadFromBag(m_map.get(), false);
        }
        return true;
    });
}

/// What can't even be asked stays as it is.
void ReferenceMap::ForEach(const std::function<void(IValue&)>& run) const {
    for (IValue* const value : Features()) {
        Ask<bool>([&] {
            run(*value);
            return true;
        });
    }
}

std::string ReferenceMap::FailureOfSaving() const {
    return Ask<bool>([&] {
               CPointer<IValue>(m_map->GetNode("DeviceModelName"))->ToString(false, true);
               CFeatureBag().StoreToBag(m_map.get());
               return true;
           })
        .message;
}
