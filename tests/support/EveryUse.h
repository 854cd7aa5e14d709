#pragma once
/// Uses live nodes in every way that a client can, for descriptions of unknown content.
/// Exceptions of the engine are legal results.

#include <array>
#include <cstdint>

#include "Base/GCException.h"
#include "GenApi/ChunkAdapterGeneric.h"
#include "GenApi/EventAdapterGeneric.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICategory.h"
#include "GenApi/IChunkPort.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/INodeMap.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "GenApi/IString.h"
#include "GenApi/NodeMapFactory.h"
#include "GenApi/SelectorSet.h"

namespace EngineTest {

/// Calls all actions, even if some of them throw.
template <class... Action>
void AttemptEach(const Action&... actions) {
    const auto attempt = [](const auto& action) {
        try {
            action();
        } catch (const GenICam_3_0_ORVANE::GenericException&) {  // NOLINT(bugprone-empty-catch)
        }
    };
    (attempt(actions), ...);
}

template <class Number>
void UseNumber(Number& number) {
    AttemptEach([&] { number.GetMin(); }, [&] { number.GetMax(); }, [&] { number.GetInc(); },
                [&] { number.GetIncMode(); }, [&] { number.GetListOfValidValues(); },
                [&] { number.GetRepresentation(); }, [&] { number.GetUnit(); },
                [&] { number.SetValue(number.GetValue()); }, [&] { number.SetValue(1, false); },
                [&] { number.GetValue(true); }, [&] { number.GetValue(false, true); });
}

inline void Use(GenApi_3_0_ORVANE::IInteger& number) {
    UseNumber(number);
}

inline void Use(GenApi_3_0_ORVANE::IFloat& number) {
    UseNumber(number);
    AttemptEach([&] { number.HasInc(); }, [&] { number.GetDisplayNotation(); },
                [&] { number.GetDisplayPrecision(); });
}

inline void Use(GenApi_3_0_ORVANE::IBoolean& boolean) {
    AttemptEach([&] { boolean.SetValue(!boolean.GetValue()); }, [&] { boolean.GetValue(true); },
                [&] { boolean.SetValue(true, false); });
}

inline void Use(GenApi_3_0_ORVANE::IEnumeration& enumeration) {
    AttemptEach(
        [&] {
            GenApi_3_0_ORVANE::node_vector entries;
            enumeration.GetEntries(entries);
        },
        [&] {
            GenICam_3_0_ORVANE::gcstring_vector symbolics;
            enumeration.GetSymbolics(symbolics);
        },
        [&] { enumeration.GetCurrentEntry(); }, [&] { enumeration.GetIntValue(true, true); },
        [&] { enumeration.SetIntValue(1); }, [&] { enumeration.SetIntValue(0, false); });
}

inline void Use(GenApi_3_0_ORVANE::ICommand& command) {
    AttemptEach([&] { command.Execute(); }, [&] { command.IsDone(); },
                [&] { command.Execute(false); }, [&] { command.IsDone(false); });
}

inline void Use(GenApi_3_0_ORVANE::IString& text) {
    AttemptEach([&] { text.GetMaxLength(); }, [&] { text.SetValue(text.GetValue()); },
                [&] { text.SetValue("a", false); });
}

inline void Use(GenApi_3_0_ORVANE::IRegister& bytes) {
    std::array<uint8_t, 8> buffer{};
    AttemptEach([&] { bytes.GetAddress(); }, [&] { bytes.GetLength(); },
                [&] { bytes.Get(buffer.data(), buffer.size()); },
                [&] { bytes.Set(buffer.data(), buffer.size()); },
                [&] { bytes.Get(buffer.data(), 1, true, true); },
                [&] { bytes.Set(buffer.data(), 4, false); });
}

inline void Use(GenApi_3_0_ORVANE::ICategory& category) {
    AttemptEach([&] {
        GenApi_3_0_ORVANE::value_vector features;
        category.GetFeatures(features);
    });
}

inline void Use(GenApi_3_0_ORVANE::IChunkPort& port) {
    AttemptEach([&] { port.GetChunkID(); }, [&] { port.CacheChunkData(); });
}

inline void Use(GenApi_3_0_ORVANE::ISelector& selector) {
    AttemptEach([&] {
        GenApi_3_0_ORVANE::value_vector features;
        selector.GetSelectedFeatures(features);
        selector.GetSelectingFeatures(features);
    });
}

inline void Use(GenApi_3_0_ORVANE::IValue& value) {
    AttemptEach([&] { value.FromString(value.ToString()); }, [&] { value.ToString(true, true); },
                [&] { value.FromString("1", false); }, [&] { value.IsValueCacheValid(); });
}

template <class... Interfaces>
void UseAs(GenApi_3_0_ORVANE::INode& node) {
    const auto use = [](auto* face) {
        if (face != nullptr) {
            Use(*face);
        }
    };
    (use(dynamic_cast<Interfaces*>(&node)), ...);
}

/// The first step of a walk over the values of selectors.
inline void StepSelectors(GenApi_3_0_ORVANE::INode& node) {
    AttemptEach([&] {
        GenApi_3_0_ORVANE::CSelectorSet selectors(&node);
        AttemptEach([&] { selectors.SetFirst(); }, [&] { selectors.SetNext(); },
                    [&] { selectors.ToString(); }, [&] { selectors.Restore(); });
    });
}

inline void UseNode(GenApi_3_0_ORVANE::INode& node) {
    using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
    AttemptEach([&] { node.GetAccessMode(); }, [&] { node.GetCachingMode(); },
                [&] { node.IsAccessModeCacheable(); }, [&] { node.GetDisplayName(); },
                [&] { node.GetPrincipalInterfaceType(); }, [&] { node.GetAlias(); },
                [&] {
                    node_vector children;
                    node.GetChildren(children, ValueChildren);
                    node.GetParents(children);
                },
                [&] {
                    gcstring_vector names;
                    node.GetPropertyNames(names);
                    gcstring value;
                    gcstring attribute;
                    for (const gcstring& name : names) {
                        node.GetProperty(name, value, attribute);
                    }
                });
    UseAs<IInteger, IFloat, IBoolean, IEnumeration, ICommand, IString, IRegister, ICategory,
          IChunkPort, ISelector, IValue>(node);
    StepSelectors(node);
    AttemptEach([&] { node.InvalidateNode(); });
}

/// Calls that use all nodes at once.
inline void UseMap(GenApi_3_0_ORVANE::INodeMap& map) {
    using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)
    AttemptEach(
        [&] {
            gcstring_vector errors;
            map.ParseSwissKnifes(&errors);
        },
        [&] { CNodeMapFactory::CreateNodeDataFromNodeMap(&map).ToXml(); },
        [&] { const CChunkAdapterGeneric adapter(&map); },
        [&] { const CEventAdapterGeneric adapter(&map); }, [&] { map.Poll(1000); },
        [&] { map.InvalidateNodes(); });
}

/// Uses every node, and then the map.
inline void UseEverything(GenApi_3_0_ORVANE::INodeMap& map) {
    GenApi_3_0_ORVANE::node_vector nodes;
    map.GetNodes(nodes);
    for (GenApi_3_0_ORVANE::INode* const node : nodes) {
        UseNode(*node);
    }
    UseMap(map);
}

}  // namespace EngineTest
