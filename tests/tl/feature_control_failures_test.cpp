// What the engine and the port throw, through every operation on a feature.

#include <typeindex>

#include "FeatureNodes.h"
#include "TLClassSupport/EventCallback.h"
#include "TransportTest.h"

namespace OVTLClass {
namespace {

namespace Engine = GenICam_3_0_ORVANE;

// Each feature asks "Gate" whether it is there, and its limits and entries ask
// the camera, too: whatever is done to it reaches the port.
const std::string kGatedNodes =
    UncachedRegXml("Gate", 0) + UncachedRegXml("Low", 4) + UncachedRegXml("Raw", 8) +
    UncachedRegXml("Choice", 12) + UncachedRegXml("Switch", 16) + UncachedRegXml("Trigger", 20) +
    R"(<Integer Name="Width"><pIsImplemented>Gate</pIsImplemented><pValue>Raw</pValue>
         <pMin>Low</pMin><Max>100</Max></Integer>
       <Float Name="Gain"><pIsImplemented>Gate</pIsImplemented><pValue>Raw</pValue>
         <pMin>Low</pMin><Max>100</Max></Float>
       <Enumeration Name="Mode"><pIsImplemented>Gate</pIsImplemented>
         <EnumEntry Name="Off"><pIsAvailable>Gate</pIsAvailable><Value>0</Value></EnumEntry>
         <EnumEntry Name="On"><Value>1</Value></EnumEntry>
         <pValue>Choice</pValue></Enumeration>
       <Boolean Name="Active"><pIsImplemented>Gate</pIsImplemented>
         <pValue>Switch</pValue></Boolean>
       <StringReg Name="Name"><pIsImplemented>Gate</pIsImplemented><Address>32</Address>
         <Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
         <Cachable>NoCache</Cachable></StringReg>
       <Register Name="Table"><pIsImplemented>Gate</pIsImplemented><Address>64</Address>
         <Length>16</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
         <Cachable>NoCache</Cachable></Register>
       <Command Name="Run"><pIsImplemented>Gate</pIsImplemented><pValue>Trigger</pValue>
         <CommandValue>1</CommandValue></Command>)";

/// Memory whose n-th access throws what a test asks for.
class RaisingPort : public EngineTest::TestPort {
public:
    RaisingPort() { Put<int32_t>(0, 1); }

    void Read(void* buffer, int64_t address, int64_t length) override {
        RaiseWhenDue();
        TestPort::Read(buffer, address, length);
    }
    void Write(const void* buffer, int64_t address, int64_t length) override {
        RaiseWhenDue();
        TestPort::Write(buffer, address, length);
    }
    void RaiseAt(size_t access, void (*raise)()) {
        m_due = access;
        m_raise = raise;
    }

private:
    void RaiseWhenDue() {
        if (m_due != 0 && --m_due == 0) {
            m_raise();
        }
    }

    size_t m_due = 0;
    void (*m_raise)() = nullptr;
};

using Nodes = FeatureNodesOn<RaisingPort>;

// What may be raised, and what becomes of it.

template <class Error>
void RaiseEngine() {
    throw Error("The cause", "Port.cpp", 1);
}

template <class Error>
void RaiseTransport() {
    throw Error("The cause", "Port.cpp", 7, "Read");
}

void RaiseProducerCode() {
    throw CUnexpectedError("The cause", "Port.cpp", 7, "Read", -1009);
}

struct Failure {
    const char* name;
    void (*raise)();
    std::type_index fromGetter;
    std::type_index fromSetter;
    bool passesUnchanged = false;
    int32_t status = -1;
};

template <class Getter, class Setter = Getter>
Failure OfEngine(const char* name, void (*raise)()) {
    return {name, raise, typeid(Getter), typeid(Setter)};
}

template <class Error>
Failure OfTransport(const char* name, void (*raise)() = RaiseTransport<Error>,
                    int32_t status = -1) {
    return {name, raise, typeid(Error), typeid(Error), true, status};
}

const Failure kFailures[] = {
    OfEngine<CInvalidAccessError>("AccessException", RaiseEngine<Engine::AccessException>),
    OfEngine<CUnexpectedError, CInvalidParameterError>(
        "InvalidArgumentException", RaiseEngine<Engine::InvalidArgumentException>),
    OfEngine<CUnexpectedError, COutOfRangeError>("OutOfRangeException",
                                                 RaiseEngine<Engine::OutOfRangeException>),
    OfEngine<CUnexpectedError>("GenericException", RaiseEngine<Engine::GenericException>),
    OfEngine<CUnexpectedError>("BadAllocException", RaiseEngine<Engine::BadAllocException>),
    OfEngine<CUnexpectedError>("PropertyException", RaiseEngine<Engine::PropertyException>),
    OfEngine<CUnexpectedError>("RuntimeException", RaiseEngine<Engine::RuntimeException>),
    OfEngine<CUnexpectedError>("LogicalErrorException", RaiseEngine<Engine::LogicalErrorException>),
    OfEngine<CUnexpectedError>("TimeoutException", RaiseEngine<Engine::TimeoutException>),
    OfEngine<CUnexpectedError>("DynamicCastException", RaiseEngine<Engine::DynamicCastException>),
    OfTransport<CDeviceOfflineError>("CDeviceOfflineError"),
    OfTransport<CTimeoutError>("CTimeoutError"),
    OfTransport<CInvalidHandleError>("CInvalidHandleError"),
    OfTransport<CUnexpectedError>("CUnexpectedError"),
    OfTransport<CUnexpectedError>("CUnexpectedError of a producer", RaiseProducerCode, -1009),
};

struct Operation {
    const char* name;
    const char* feature;
    bool isSetter;
    void (*run)(const CFeatureControl& control);
};

using ControlRef = const CFeatureControl&;

const Operation kOperations[] = {
    {"DoIsImplemented", "Width", false, [](ControlRef c) { c.DoIsImplemented("Width"); }},
    {"DoIsReadable", "Width", false, [](ControlRef c) { c.DoIsReadable("Width"); }},
    {"DoIsWritable", "Width", false, [](ControlRef c) { c.DoIsWritable("Width"); }},
    {"DoGetIntRange", "Width", false, [](ControlRef c) { c.DoGetIntRange("Width"); }},
    {"DoGetInt", "Width", false, [](ControlRef c) { c.DoGetInt("Width"); }},
    {"DoSetInt", "Width", true, [](ControlRef c) { c.DoSetInt("Width", 4); }},
    {"DoGetFloatRange", "Gain", false, [](ControlRef c) { c.DoGetFloatRange("Gain"); }},
    {"DoGetFloat", "Gain", false, [](ControlRef c) { c.DoGetFloat("Gain"); }},
    {"DoSetFloat", "Gain", true, [](ControlRef c) { c.DoSetFloat("Gain", 4); }},
    {"DoGetEnumEntryNums", "Mode", false, [](ControlRef c) { c.DoGetEnumEntryNums("Mode"); }},
    {"DoGetEnumDescription", "Mode", false,
     [](ControlRef c) {
         std::vector<FEATURE_ENUM_ENTRY_INFORMATION> entries;
         c.DoGetEnumDescription("Mode", entries);
     }},
    {"DoGetEnum", "Mode", false, [](ControlRef c) { c.DoGetEnum("Mode"); }},
    {"DoSetEnum", "Mode", true, [](ControlRef c) { c.DoSetEnum("Mode", 1); }},
    {"DoGetEnumEntryValue", "Mode", false,
     [](ControlRef c) { c.DoGetEnumEntryValue("Mode", "On"); }},
    {"DoGetBool", "Active", false, [](ControlRef c) { c.DoGetBool("Active"); }},
    {"DoSetBool", "Active", true, [](ControlRef c) { c.DoSetBool("Active", true); }},
    {"DoGetMaxStringLength", "Name", false, [](ControlRef c) { c.DoGetMaxStringLength("Name"); }},
    {"DoGetString", "Name", false, [](ControlRef c) { c.DoGetString("Name"); }},
    {"DoSetString", "Name", true, [](ControlRef c) { c.DoSetString("Name", "Left"); }},
    {"DoGetBufferLength", "Table", false, [](ControlRef c) { c.DoGetBufferLength("Table"); }},
    {"DoGetBuffer", "Table", false,
     [](ControlRef c) {
         uint8_t bytes[16];
         c.DoGetBuffer("Table", sizeof bytes, bytes);
     }},
    {"DoSetBuffer", "Table", true,
     [](ControlRef c) {
         const uint8_t bytes[16] = {};
         c.DoSetBuffer("Table", sizeof bytes, bytes);
     }},
    {"DoSendCommand", "Run", true, [](ControlRef c) { c.DoSendCommand("Run"); }},
};

size_t AccessesOf(const Operation& operation) {
    Nodes nodes(kGatedNodes);
    operation.run(nodes.Control());
    return nodes.GetPort().GetAccesses().size();
}

class ControlFailures : public ::testing::TestWithParam<Operation> {
protected:
    static void ExpectRaised(const COvException& error, const Failure& failure) {
        const Operation& operation = GetParam();
        EXPECT_EQ(std::type_index(typeid(error)),
                  operation.isSetter ? failure.fromSetter : failure.fromGetter);
        EXPECT_EQ(error.GetDescription(), "The cause");
        if (failure.passesUnchanged) {
            EXPECT_EQ(error.GetFunction(), "Read");
            EXPECT_EQ(error.GetLine(), 7);
        } else {
            // A buffer is read after a look at its length.
            EXPECT_THAT(error.GetFunction(), ::testing::StartsWith(operation.name));
            EXPECT_THAT(error.GetFile(), ::testing::EndsWith("FeatureControl.cpp"));
        }
        if (const auto* const unexpected = dynamic_cast<const CUnexpectedError*>(&error)) {
            EXPECT_EQ(unexpected->GetStatus(), failure.status);
        }
    }
};

TEST_P(ControlFailures, BecomeTheModelsOwnAtEveryAccessToTheCamera) {
    const size_t accesses = AccessesOf(GetParam());
    ASSERT_GT(accesses, 0U);
    for (const Failure& failure : kFailures) {
        for (size_t access = 1; access <= accesses; ++access) {
            SCOPED_TRACE(failure.name + (" at access " + std::to_string(access)));
            Nodes nodes(kGatedNodes);
            nodes.GetPort().RaiseAt(access, failure.raise);
            try {
                GetParam().run(nodes.Control());
                ADD_FAILURE() << "nothing was raised";
            } catch (const COvException& error) {
                ExpectRaised(error, failure);
            }
        }
    }
}

TEST_P(ControlFailures, LeaveTheFeatureAsItWas) {
    Nodes nodes(kGatedNodes);
    nodes.GetPort().RaiseAt(1, RaiseTransport<CDeviceOfflineError>);
    EXPECT_RAISES(CDeviceOfflineError, "The cause", GetParam().run(nodes.Control()));
    EXPECT_NO_THROW(GetParam().run(nodes.Control()));
}

bool StartsWith(const std::string& text, const char* start) {
    return text.rfind(start, 0) == 0;
}

std::string NotImplemented(const std::string& name) {
    return "The feature \"" + name + "\" is not implemented";
}

TEST_P(ControlFailures, AreNotImplementedWhereThereIsNoSuchFeature) {
    Nodes nodes("");
    if (std::string(GetParam().name) == "DoIsImplemented") {
        EXPECT_FALSE(nodes->DoIsImplemented("Width"));
        return;
    }
    const auto error = Raised<CNotImplementedError>([&] { GetParam().run(nodes.Control()); });
    EXPECT_EQ(error.GetDescription(), NotImplemented(GetParam().feature));
}

TEST_P(ControlFailures, AreNotImplementedWhereTheCameraLacksIt) {
    Nodes nodes(kGatedNodes);
    nodes.GetPort().Put<int32_t>(0, 0);
    if (StartsWith(GetParam().name, "DoIs")) {
        EXPECT_NO_THROW(GetParam().run(nodes.Control()));
        return;
    }
    EXPECT_RAISES(CNotImplementedError, NotImplemented(GetParam().feature),
                  GetParam().run(nodes.Control()));
    EXPECT_EQ(nodes.GetPort().GetWrites(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Of, ControlFailures, ::testing::ValuesIn(kOperations),
                         [](const auto& test) { return std::string(test.param.name); });

class NoCallback : public IFeatureCallback {
public:
    explicit NoCallback(int& clones) : m_clones(clones) { ++m_clones; }
    ~NoCallback() override { --m_clones; }
    IFeatureCallback* Clone() const override { return new NoCallback(m_clones); }
    void operator()(GenApi_3_0_ORVANE::INode*) override {}

private:
    int& m_clones;
};

TEST(ControlWithoutNodes, DeniesWhatAsksForANode) {
    GenApi_3_0_ORVANE::CNodeMapRef nodes;
    const CFeatureControl control(&nodes);
    for (const Operation& operation : kOperations) {
        const auto error = Raised<CInvalidAccessError>([&] { operation.run(control); });
        EXPECT_THAT(error.GetFunction(), ::testing::StartsWith(operation.name));
    }
    EXPECT_EQ(Raised<CInvalidAccessError>([&] { control.DoExist("Width"); }).GetFunction(),
              "DoExist");
    EXPECT_EQ(Raised<CInvalidAccessError>([&] {
                  control.DoGetFeatureDisplayName("Width");
              }).GetFunction(),
              "DoGetFeatureDisplayName");
}

TEST(ControlWithoutNodes, TakesARegistrationForUnexpected) {
    GenApi_3_0_ORVANE::CNodeMapRef nodes;
    CFeatureControl control(&nodes);
    int callbacks = 0;
    const auto error = Raised<CUnexpectedError>(
        [&] { control.DoRegisterFeatureCallback("Width", NoCallback(callbacks)); });
    EXPECT_EQ(error.GetStatus(), -1);
    EXPECT_EQ(error.GetFunction(), "DoRegisterFeatureCallback");
    EXPECT_EQ(callbacks, 0) << "the clone has gone";
}

TEST(ControlClones, LiveAsLongAsTheirRegistration) {
    int callbacks = 0;
    {
        Nodes nodes(kGatedNodes);
        CFeatureControl& control = nodes.Control();
        auto* const handle = control.DoRegisterFeatureCallback("Width", NoCallback(callbacks));
        control.DoRegisterFeatureCallback("Width", NoCallback(callbacks));
        EXPECT_EQ(callbacks, 2);
        EXPECT_RAISES(CNotImplementedError, "The feature \"None\" is not implemented",
                      control.DoRegisterFeatureCallback("None", NoCallback(callbacks)));
        EXPECT_EQ(callbacks, 2);
        control.DoUnregisterFeatureCallback(reinterpret_cast<intptr_t>(handle));
        EXPECT_EQ(callbacks, 1);
    }
    EXPECT_EQ(callbacks, 0);
}

TEST(ControlEvents, EndTheSearchInACircle) {
    const std::string circle =
        R"(<Category Name="First"><pFeature>Second</pFeature></Category>
           <Category Name="Second"><pFeature>First</pFeature><pFeature>Leaf</pFeature></Category>
           <Integer Name="Leaf"><Value>1</Value></Integer>
           <Category Name="Ring"><pFeature>Bell</pFeature></Category>
           <Category Name="Bell"><pFeature>Ring</pFeature></Category>
           <Category Name="EventControl"><pFeature>Bell</pFeature></Category>)";
    FeatureNodes nodes(circle, 0);
    EXPECT_FALSE(nodes.Control().CheckEventNode("Leaf"));
    EXPECT_FALSE(nodes.Control().CheckEventNode("First"));
    EXPECT_TRUE(nodes.Control().CheckEventNode("Ring"));
}

}  // namespace
}  // namespace OVTLClass
