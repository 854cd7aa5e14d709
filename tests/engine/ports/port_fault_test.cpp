// Every port access of every operation fails once. The failure has to reach the
// client as it is, and must leave no trace but what was written before it.

#include <functional>

#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumEntry.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IPortConstruct.h"
#include "GenApi/IPortReplay.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "PortFault.h"
#include "ports/PortWriteList.h"

namespace EngineTest {

namespace {

/// A node and a value that it can take, different from that at the start.
struct Target {
    const char* name;
    const char* text;
    double number = 0;
};

void PrintTo(const Target& target, std::ostream* out) {
    *out << target.name;
}

constexpr Target kTargets[] = {
    {"Plain", "15", 15},
    {"Around", "15", 15},
    {"Uncached", "15", 15},
    {"Polled", "15", 15},
    {"Moving", "15", 15},
    {"LowBits", "15", 15},
    {"HighBits", "-15", -15},
    {"Single", "15", 15},
    {"Double", "15", 15},
    {"Text", "seven"},
    {"Raw", "0x01020304"},
    {"Both", "15", 15},
    {"Indexed", "15", 15},
    {"Sum", "15", 15},
    {"Flag", "true", 1},
    {"Start", "true"},
    {"Choice", "Once", 2},
    {"Nearest", "2", 2},
    {"Real", "15", 15},
    {"RealOfInteger", "15", 15},
    {"IntegerOfReal", "15", 15},
    {"Knife", "1", 1},
    {"IntKnife", "1", 1},
    {"Converted", "3", 3},
    {"IntConverted", "3", 3},
    {"Word", "seven"},
    {"Error", "None", 0},
    {"Root", ""},
    {"Device", ""},
};

/// An operation of a node, with its result as text.
struct NodeOperation {
    std::string name;
    std::function<bool(INode*)> applies;
    std::function<std::string(INode&, const Target&)> run;
};

std::string TextOf(const gcstring& text) {
    return text.c_str();
}
template <class Number>
std::string TextOf(Number number) {
    return std::to_string(number);
}
template <class List>
std::string TextOfList(const List& list) {
    std::string text;
    for (size_t i = 0; i < list.size(); ++i) {
        text += TextOf(list[i]) + ";";
    }
    return text;
}

class Operations {
public:
    /// @param run  gives something that TextOf makes a text of, or nothing
    template <class Interface, class Run>
    void Add(const std::string& name, const Run& run) {
        m_List.push_back({name,
                          [](INode* node) { return dynamic_cast<Interface*>(node) != nullptr; },
                          [run](INode& node, const Target& target) -> std::string {
                              auto& face = dynamic_cast<Interface&>(node);
                              if constexpr (std::is_void_v<decltype(run(face, target))>) {
                                  run(face, target);
                                  return "done";
                              } else {
                                  return TextOf(run(face, target));
                              }
                          }});
    }
    /// With and without verifying.
    template <class Interface, class Run>
    void AddWrite(const std::string& name, const Run& run) {
        for (const bool verify : {false, true}) {
            Add<Interface>(name + (verify ? " verified" : ""),
                           [run, verify](Interface& face, const Target& target) {
                               return run(face, target, verify);
                           });
        }
    }
    /// With and without verifying, from the cache and past it.
    template <class Interface, class Run>
    void AddRead(const std::string& name, const Run& run) {
        for (const bool ignoreCache : {false, true}) {
            AddWrite<Interface>(
                name + (ignoreCache ? " past the cache" : ""),
                [run, ignoreCache](Interface& face, const Target& /*target*/, bool verify) {
                    return run(face, verify, ignoreCache);
                });
        }
    }
    const std::vector<NodeOperation>& List() const { return m_List; }

private:
    std::vector<NodeOperation> m_List;
};

void AddNodeOperations(Operations& all) {
    all.Add<INode>("GetAccessMode",
                   [](INode& node, const Target&) { return int{node.GetAccessMode()}; });
    all.Add<INode>("IsAccessModeCacheable",
                   [](INode& node, const Target&) { return int{node.IsAccessModeCacheable()}; });
    all.Add<INode>("GetCachingMode",
                   [](INode& node, const Target&) { return int{node.GetCachingMode()}; });
    all.Add<INode>("InvalidateNode", [](INode& node, const Target&) { node.InvalidateNode(); });
    all.Add<INode>("Poll", [](INode& node, const Target&) { node.GetNodeMap()->Poll(10); });
    all.Add<INode>("InvalidateNodes",
                   [](INode& node, const Target&) { node.GetNodeMap()->InvalidateNodes(); });
    all.AddRead<IValue>("ToString", [](IValue& value, bool verify, bool ignoreCache) {
        return value.ToString(verify, ignoreCache);
    });
    all.AddWrite<IValue>("FromString", [](IValue& value, const Target& target, bool verify) {
        value.FromString(target.text, verify);
    });
    all.Add<IValue>("IsValueCacheValid", [](IValue& value, const Target&) {
        value.ToString();
        return int{value.IsValueCacheValid()};
    });
}

/// What integers and floats have alike.
template <class Interface, class Number>
void AddNumberOperations(Operations& all, const std::string& kind) {
    all.AddWrite<Interface>(kind + "::SetValue",
                            [](Interface& node, const Target& target, bool verify) {
                                node.SetValue(static_cast<Number>(target.number), verify);
                            });
    all.AddRead<Interface>(kind + "::GetValue", [](Interface& node, bool verify, bool ignoreCache) {
        return node.GetValue(verify, ignoreCache);
    });
    all.Add<Interface>(kind + "::GetMin",
                       [](Interface& node, const Target&) { return node.GetMin(); });
    all.Add<Interface>(kind + "::GetMax",
                       [](Interface& node, const Target&) { return node.GetMax(); });
    all.Add<Interface>(kind + "::GetInc",
                       [](Interface& node, const Target&) { return node.GetInc(); });
    all.Add<Interface>(kind + "::GetIncMode",
                       [](Interface& node, const Target&) { return int{node.GetIncMode()}; });
    for (const bool bounded : {false, true}) {
        all.Add<Interface>(
            kind + "::GetListOfValidValues", [bounded](Interface& node, const Target&) {
                return gcstring(TextOfList(node.GetListOfValidValues(bounded)).c_str());
            });
    }
    all.Add<Interface>(kind + "::GetRepresentation", [](Interface& node, const Target&) {
        return int{node.GetRepresentation()};
    });
    all.Add<Interface>(kind + "::GetUnit",
                       [](Interface& node, const Target&) { return node.GetUnit(); });
}

void AddValueOperations(Operations& all) {
    AddNumberOperations<IInteger, int64_t>(all, "Integer");
    AddNumberOperations<IFloat, double>(all, "Float");
    all.Add<IFloat>("Float::HasInc",
                    [](IFloat& node, const Target&) { return int{node.HasInc()}; });
    all.AddWrite<IBoolean>("Boolean::SetValue",
                           [](IBoolean& node, const Target& target, bool verify) {
                               node.SetValue(target.number != 0, verify);
                           });
    all.AddRead<IBoolean>("Boolean::GetValue", [](IBoolean& node, bool verify, bool ignoreCache) {
        return int{node.GetValue(verify, ignoreCache)};
    });
    all.AddWrite<IString>("String::SetValue", [](IString& node, const Target& target, bool verify) {
        node.SetValue(target.text, verify);
    });
    all.AddRead<IString>("String::GetValue", [](IString& node, bool verify, bool ignoreCache) {
        return node.GetValue(verify, ignoreCache);
    });
    all.Add<IString>("String::GetMaxLength",
                     [](IString& node, const Target&) { return node.GetMaxLength(); });
    all.AddWrite<ICommand>(
        "Execute", [](ICommand& node, const Target&, bool verify) { node.Execute(verify); });
    all.AddWrite<ICommand>("IsDone", [](ICommand& node, const Target&, bool verify) {
        return int{node.IsDone(verify)};
    });
}

void AddEnumerationOperations(Operations& all) {
    all.AddWrite<IEnumeration>("SetIntValue",
                               [](IEnumeration& node, const Target& target, bool verify) {
                                   node.SetIntValue(static_cast<int64_t>(target.number), verify);
                               });
    all.AddRead<IEnumeration>("GetIntValue", [](IEnumeration& node, bool verify, bool ignoreCache) {
        return node.GetIntValue(verify, ignoreCache);
    });
    all.AddRead<IEnumeration>("GetCurrentEntry",
                              [](IEnumeration& node, bool verify, bool ignoreCache) {
                                  return node.GetCurrentEntry(verify, ignoreCache)->GetSymbolic();
                              });
    all.Add<IEnumeration>("GetSymbolics", [](IEnumeration& node, const Target&) {
        gcstring_vector symbolics;
        node.GetSymbolics(symbolics);
        return gcstring(TextOfList(symbolics).c_str());
    });
}

void AddAccessOperations(Operations& all) {
    all.AddWrite<IRegister>("Set", [](IRegister& node, const Target&, bool verify) {
        const uint8_t bytes[] = {5, 0, 0, 0};
        node.Set(bytes, sizeof(bytes), verify);
    });
    all.AddRead<IRegister>("Get", [](IRegister& node, bool verify, bool ignoreCache) {
        uint8_t bytes[] = {0, 0, 0, 0};
        node.Get(bytes, sizeof(bytes), verify, ignoreCache);
        return int{bytes[0]};
    });
    all.Add<IRegister>("GetAddress",
                       [](IRegister& node, const Target&) { return node.GetAddress(); });
    all.Add<IRegister>("GetLength",
                       [](IRegister& node, const Target&) { return node.GetLength(); });
    all.Add<IPortConstruct>("Read", [](IPortConstruct& port, const Target&) {
        int32_t value = 0;
        port.Read(&value, 0x40, sizeof(value));
        return value;
    });
    all.Add<IPortConstruct>("Write", [](IPortConstruct& port, const Target&) {
        const int32_t value = 1;
        port.Write(&value, 0xA0, sizeof(value));
    });
    all.Add<IPortReplay>("Replay", [](IPortReplay& port, const Target&) {
        const int32_t value = 2;
        CPortWriteList list;
        list.Write(&value, 0xA0, sizeof(value));
        list.Write(&value, 0xA4, sizeof(value));
        port.Replay(&list, true);
    });
}

const std::vector<NodeOperation>& AllOperations() {
    static const Operations kAll = [] {
        Operations all;
        AddNodeOperations(all);
        AddValueOperations(all);
        AddEnumerationOperations(all);
        AddAccessOperations(all);
        return all;
    }();
    return kAll.List();
}

/// What an operation came to.
struct Outcome {
    std::string result;
    NotingCallback::Calls calls;
    std::vector<uint8_t> memory;
    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << outcome.result << testing::PrintToString(outcome.calls)
         << testing::PrintToString(outcome.memory);
}

/// The result of an operation, or the failure that it ended in.
std::string ResultOf(const NodeOperation& operation, INode& node, const Target& target) {
    try {
        return operation.run(node, target);
    } catch (const GenericException& failure) {
        return std::string("failed: ") + failure.GetDescription();
    } catch (const PortFault& fault) {
        return "fault " + std::to_string(fault.access);
    }
}

std::string ResultOfFault(size_t access) {
    const std::string number = std::to_string(access);
    return access % 2 == 0 ? "failed: Access " + number + " failed" : "fault " + number;
}

using Case = std::tuple<Target, bool>;

class PortFaultTest : public testing::TestWithParam<Case> {
protected:
    /// Nothing fails.
    Outcome Run(FaultCamera& camera, const NodeOperation& operation) {
        camera.Port().Restart(0);
        Outcome outcome;
        outcome.result = ResultOf(operation, camera.Get(m_Target.name), m_Target);
        outcome.calls = camera.TakeCalls();
        outcome.memory = camera.Memory();
        return outcome;
    }

    void RunWithFault(const NodeOperation& operation, size_t access, const Outcome& expected) {
        FaultCamera camera(m_IsWarm);
        camera.Port().Restart(access);
        // A sweep goes on, whatever becomes of one read.
        EXPECT_EQ(ResultOf(operation, camera.Get(m_Target.name), m_Target),
                  operation.name == "Poll" ? "done" : ResultOfFault(access));
        EXPECT_EQ(camera.TakeCalls(), NotingCallback::Calls());
        camera.ExpectAtRest();
        // Every other time the next attempt is the very next call.
        const bool retriesAtOnce = access % 2 == 0;
        if (!retriesAtOnce) {
            camera.ExpectTruth();
        }
        EXPECT_EQ(Run(camera, operation), expected);
        camera.ExpectAtRest();
        if (retriesAtOnce) {
            camera.ExpectTruth();
        }
    }

    const Target m_Target = std::get<0>(GetParam());
    const bool m_IsWarm = std::get<1>(GetParam());
};

TEST_P(PortFaultTest, PassesAndLeavesNoTrace) {
    size_t faults = 0;
    for (const NodeOperation& operation : AllOperations()) {
        FaultCamera camera(m_IsWarm);
        if (!operation.applies(&camera.Get(m_Target.name))) {
            continue;
        }
        const Outcome expected = Run(camera, operation);
        const size_t accesses = camera.Port().GetAccesses();
        for (size_t access = 1; access <= accesses; ++access, ++faults) {
            SCOPED_TRACE(operation.name + ", access " + std::to_string(access) + " of " +
                         std::to_string(accesses));
            RunWithFault(operation, access, expected);
        }
    }
    RecordProperty("Faults", static_cast<int>(faults));
}

INSTANTIATE_TEST_SUITE_P(All, PortFaultTest,
                         testing::Combine(testing::ValuesIn(kTargets), testing::Bool()),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param).name) +
                                    (std::get<1>(test.param) ? "Known" : "Fresh");
                         });

/// Reading the text of a command may find it done. Its callbacks have to wait
/// until nothing can fail any more, and must not wait for the next reading.
TEST(CommandText, ThatFailsRunsNoCallbackThenOrLater) {
    for (size_t access = 1;; ++access) {
        FaultCamera camera(true);
        NotingCallback::Calls calls;
        INode& start = camera.Get("Start");
        dynamic_cast<ICommand&>(start).Execute();
        const int32_t finished = 0;
        dynamic_cast<IPort&>(camera.Get("Device")).Write(&finished, 0x9C, sizeof(finished));
        const CallbackHandleType handle = NotingCallback::On(start, calls);
        camera.TakeCalls();
        camera.Port().Restart(access);
        const auto read = [&start] { return dynamic_cast<IValue&>(start).ToString(true); };
        try {
            EXPECT_EQ(read(), "0");
            EXPECT_EQ(calls.size(), 2U);
            EXPECT_GT(access, 1U);
            break;
        } catch (const GenericException&) {
            EXPECT_TRUE(calls.empty());
        } catch (const PortFault&) {
            EXPECT_TRUE(calls.empty());
        }
        camera.ExpectAtRest();
        EXPECT_EQ(camera.TakeCalls(), NotingCallback::Calls());
        start.DeregisterCallback(handle);
        EXPECT_EQ(read(), "0");
        EXPECT_TRUE(calls.empty());
    }
}

}  // namespace

}  // namespace EngineTest
