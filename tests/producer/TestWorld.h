/// @file The interfaces and cameras of the test producer, as a test has set them. There
/// is one world for each loaded file, and it survives `GCCloseLib`.
#ifndef OV_TEST_WORLD_H
#define OV_TEST_WORLD_H

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "TestCamera.h"
#include "TestFaults.h"
#include "framework/Backend.h"

namespace OvTest {

/// One adapter and the cameras on it.
class TestInterface : public OvProducer::InterfaceBackend {
public:
    TestInterface(const CameraSettings& settings, unsigned index, const std::string& tlType);

    OvProducer::InterfaceFacts Facts() override;
    std::vector<std::shared_ptr<OvProducer::DeviceBackend>> Discover(
        std::uint64_t timeout) override;
    /// "IP::" and the dotted address of a camera of this interface.
    std::shared_ptr<OvProducer::DeviceBackend> Reach(const std::string& id) override;
    void SetSearchMode(std::int64_t mode) override;
    void StopDiscover() override;

    // For the test.

    void ChangeFacts(const std::function<void(OvProducer::InterfaceFacts&)>& change);
    /// Cameras that stay are the same objects.
    void SetDeviceCount(unsigned count);
    void AddCamera(std::shared_ptr<TestCamera> camera);
    std::shared_ptr<TestCamera> Camera(unsigned device) const;
    void HoldSearch(bool on);
    void SetTlType(const std::string& tlType);
    std::int64_t SearchMode() const;
    std::int64_t StopCount() const;
    std::int64_t SearchTimeout() const;

    bool lost = false;  ///< guarded by the world

private:
    OvProducer::DeviceFacts FactsOfCamera(unsigned device) const;
    bool IsFound(const TestCamera& camera) const;

    const CameraSettings& m_settings;
    const unsigned m_index;
    mutable std::mutex m_mutex;
    OvProducer::InterfaceFacts m_facts;
    std::vector<std::shared_ptr<TestCamera>> m_cameras;
    std::condition_variable m_searchEnds;
    bool m_searchHeld = false;
    std::int64_t m_searchMode = 0;
    std::int64_t m_searchTimeout = -1;
    std::int64_t m_stopCount = 0;
};

class TestWorld : public CameraSettings {
public:
    static TestWorld& Instance();

    Faults faults;

    void Reset();
    OvProducer::ProducerFacts Facts() const;
    void ChangeFacts(const std::function<void(OvProducer::ProducerFacts&)>& change);
    void SetTlType(const std::string& tlType);
    void SetInterfaceCount(unsigned count);
    void SetInterfaceLost(TestInterface& iface, bool lost);
    /// Null when there is none.
    std::shared_ptr<TestInterface> Interface(unsigned index) const;
    std::shared_ptr<TestCamera> Camera(unsigned iface, unsigned device) const;
    std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> Present() const;

    /// Passes the overrides of the named module to `change`. Returns false if there is no
    /// such module.
    bool ChangeDescription(const std::string& module,
                           const std::function<void(DescriptionOverride&)>& change);
    void Describe(OvProducer::ModuleKind kind, OvProducer::Port& port,
                  const std::function<void(OvProducer::Port&)>& own) const;
    void DescribeRemote(OvProducer::Port& port) const override;

    bool OffersEvent(GenTL::EVENT_TYPE type) const override;
    void OfferEvent(GenTL::EVENT_TYPE type, bool on);

    void RecordExtension(const std::string& call);
    std::string ExtensionCall() const;

private:
    TestWorld();

    mutable std::mutex m_mutex;
    OvProducer::ProducerFacts m_facts;
    std::vector<std::shared_ptr<TestInterface>> m_interfaces;
    std::map<std::string, DescriptionOverride> m_descriptions;
    std::set<GenTL::EVENT_TYPE> m_events;
    std::string m_extensionCall;
};

}  // namespace OvTest

#endif
