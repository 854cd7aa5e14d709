// A client's handle to a node map.

#include <fstream>
#include <functional>
#include <memory>

#include "GenApi/NodeMapRef.h"
#include "NodeGraph.h"

namespace EngineTest {

namespace {

gcstring RefDescription() {
    return XmlNodeMap::Describe(
               RegXml{.name = "Reg", .address = 0, .polling = "<PollingTime>10</PollingTime>"}())
        .c_str();
}

/// Tells whether the map that it is registered in still lives.
class LifeSign : public CNodeCallback {
public:
    LifeSign(INode* node, bool& isAlive) : CNodeCallback(node), m_IsAlive(isAlive) {
        m_IsAlive = true;
    }
    void operator()(ECallbackType /*type*/) const override {}
    void Destroy() override {
        m_IsAlive = false;
        delete this;
    }

private:
    bool& m_IsAlive;
};

class LoadedRef : public testing::Test {
protected:
    LoadedRef() {
        m_Ref._LoadXMLFromString(RefDescription());
        INode* const node = m_Ref._GetNode("Reg");
        node->RegisterCallback(new LifeSign(node, m_IsAlive));
    }

    bool m_IsAlive = false;
    CNodeMapRef m_Ref{"Camera"};
};

using RefUse = std::function<void(CNodeMapRef&)>;
class EmptyRef : public testing::TestWithParam<std::pair<const char*, RefUse>> {};

}  // namespace

TEST_P(EmptyRef, OffersNothing) {
    CNodeMapRef ref;
    EXPECT_EQ(DescriptionOf<AccessException>([&] { GetParam().second(ref); }),
              "Feature not present (reference not valid)");
}

INSTANTIATE_TEST_SUITE_P(
    Of, EmptyRef,
    testing::Values(
        std::pair<const char*, RefUse>{"GetDeviceName",
                                       [](CNodeMapRef& ref) { ref._GetDeviceName(); }},
        std::pair<const char*, RefUse>{"Poll", [](CNodeMapRef& ref) { ref._Poll(1); }},
        std::pair<const char*, RefUse>{"GetNodes",
                                       [](CNodeMapRef& ref) {
                                           node_vector list;
                                           ref._GetNodes(list);
                                       }},
        std::pair<const char*, RefUse>{"GetNode", [](CNodeMapRef& ref) { ref._GetNode("Reg"); }},
        std::pair<const char*, RefUse>{"InvalidateNodes",
                                       [](CNodeMapRef& ref) { ref._InvalidateNodes(); }},
        std::pair<const char*, RefUse>{"Connect", [](CNodeMapRef& ref) { ref._Connect(nullptr); }},
        std::pair<const char*, RefUse>{"ConnectByName",
                                       [](CNodeMapRef& ref) { ref._Connect(nullptr, "Device"); }},
        std::pair<const char*, RefUse>{"ParseSwissKnifes",
                                       [](CNodeMapRef& ref) { ref._ParseSwissKnifes(); }},
        std::pair<const char*, RefUse>{"GetSupportedSchemaVersions",
                                       [](CNodeMapRef& ref) {
                                           gcstring_vector list;
                                           ref._GetSupportedSchemaVersions(list);
                                       }}),
    [](const auto& example) { return example.param.first; });

TEST_F(LoadedRef, ForwardsToItsMap) {
    EXPECT_EQ(m_Ref._GetDeviceName(), "Camera");
    node_vector list;
    m_Ref._GetNodes(list);
    EXPECT_EQ(list.size(), 2U);
    EXPECT_EQ(m_Ref._GetNode("Reg"), m_Ref.GetMap()->GetNode("Reg"));
    EXPECT_EQ(m_Ref._GetNode("Missing"), nullptr);
    EXPECT_TRUE(m_Ref._ParseSwissKnifes());
    gcstring_vector versions;
    m_Ref._GetSupportedSchemaVersions(versions);
    ASSERT_EQ(versions.size(), 2U);
    EXPECT_EQ(versions[0], "1.0");
    EXPECT_EQ(versions[1], "1.1");
}

TEST_F(LoadedRef, ConnectsPollsAndInvalidates) {
    TestPort port;
    EXPECT_TRUE(m_Ref._Connect(&port));
    EXPECT_FALSE(m_Ref._Connect(&port, "Reg"));
    auto& reg = dynamic_cast<IInteger&>(*m_Ref._GetNode("Reg"));
    for (const auto& drop : {RefUse([](CNodeMapRef& ref) { ref._Poll(10); }),
                             RefUse([](CNodeMapRef& ref) { ref._InvalidateNodes(); })}) {
        reg.GetValue();
        EXPECT_TRUE(reg.IsValueCacheValid());
        drop(m_Ref);
        EXPECT_FALSE(reg.IsValueCacheValid());
    }
}

TEST_F(LoadedRef, RefusesASecondMap) {
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Ref._LoadXMLFromString(RefDescription()); }),
              "Node map already created");
    EXPECT_EQ(DescriptionOf<RuntimeException>([&] { m_Ref._LoadXMLFromFile("missing.xml"); }),
              "Node map already created");
    EXPECT_TRUE(m_IsAlive);
}

TEST_F(LoadedRef, ReleasesOnce) {
    m_Ref.Release();
    EXPECT_FALSE(m_IsAlive);
    EXPECT_EQ(m_Ref.GetMap(), nullptr);
    m_Ref.Release();
    EXPECT_THROW(m_Ref._GetDeviceName(), AccessException);
}

TEST_F(LoadedRef, ForgetsTheDeviceNameWithTheMap) {
    m_Ref.Release();
    m_Ref._LoadXMLFromString(RefDescription());
    EXPECT_EQ(m_Ref._GetDeviceName(), "Device");
}

TEST_F(LoadedRef, SharesTheMapWithItsCopies) {
    {
        CNodeMapRef copy(m_Ref);
        CNodeMapRef assigned;
        assigned = copy;
        EXPECT_EQ(copy.GetMap(), m_Ref.GetMap());
        EXPECT_EQ(assigned.GetMap(), m_Ref.GetMap());
        m_Ref.Release();
        EXPECT_TRUE(m_IsAlive);
        copy.Release();
        EXPECT_TRUE(m_IsAlive);
        EXPECT_EQ(assigned._GetDeviceName(), "Camera");
    }
    EXPECT_FALSE(m_IsAlive);
}

TEST_F(LoadedRef, SurvivesAssignmentToItself) {
    const CNodeMapRef& same = m_Ref;
    m_Ref = same;
    EXPECT_TRUE(m_IsAlive);
}

TEST_F(LoadedRef, GivesItsMapUpForAnother) {
    CNodeMapRef other("Other");
    other._LoadXMLFromString(RefDescription());
    m_Ref = other;
    EXPECT_FALSE(m_IsAlive);
    EXPECT_EQ(m_Ref._GetDeviceName(), "Other");
}

TEST(NodeMapRef, StaysEmptyWhenLoadingFails) {
    CNodeMapRef ref;
    EXPECT_THROW(ref._LoadXMLFromString("no description"), GenericException);
    EXPECT_EQ(ref.GetMap(), nullptr);
    ref._LoadXMLFromString(RefDescription());
    EXPECT_NE(ref.GetMap(), nullptr);
}

TEST(NodeMapRef, LoadsFromAFile) {
    const std::string path = testing::TempDir() + "nodemap_ref_test.xml";
    std::ofstream(path) << RefDescription().c_str();
    CNodeMapRef ref;
    ref._LoadXMLFromFile(path.c_str());
    EXPECT_NE(ref._GetNode("Reg"), nullptr);
    std::remove(path.c_str());
}

}  // namespace EngineTest
