/// @file The backend of the test producer, and the functions of GigE Vision producers
/// that aren't part of the standard.
#include <initializer_list>
#include <string>

#include "Base/EachFrame.h"
#include "TestWorld.h"
#include "framework/exports/Serve.h"

using OvTest::TestWorld;

namespace {

class TestProducerBackend : public OvProducer::ProducerBackend {
public:
    OvProducer::ProducerFacts Facts() override { return TestWorld::Instance().Facts(); }

    std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> Discover(std::uint64_t) override {
        return TestWorld::Instance().Present();
    }

    void Describe(OvProducer::ModuleKind kind, OvProducer::Port& port) override {
        TestWorld::Instance().Describe(kind, port, [&](OvProducer::Port& p) {
            OvProducer::ProducerBackend::Describe(kind, p);
        });
    }
};

/// Some calls allow a null text, which is recorded as an empty one.
std::string Or(const char* text) {
    return text != nullptr ? text : "";
}

GenTL::GC_ERROR Extension(OvProducer::Function function, GenTL::IF_HANDLE iface, const char* device,
                          std::initializer_list<std::string> arguments) {
    return OvProducer::ServeOn<OvProducer::Interface>(
        function, iface, [&](const OvProducer::Interface& found) {
            const std::string id = OvProducer::IdOf(device);
            found.DeviceNamed(id);
            std::string call(OvProducer::NameOf(function));
            call.append("|").append(id);
            for (const std::string& argument : arguments) {
                call.append("|").append(argument);
            }
            TestWorld::Instance().RecordExtension(call);
        });
}

}  // namespace

namespace OvProducer {

std::unique_ptr<ProducerBackend> MakeProducer() {
    return std::make_unique<TestProducerBackend>();
}

OV_EACH_FRAME CallObserver& Observer() {
    return TestWorld::Instance().faults;
}

}  // namespace OvProducer

OV_PRODUCER_EXPORT IFIpConfiguration(GenTL::IF_HANDLE hIface, const char* sDeviceID,
                                     std::int32_t iMode, const char* sIp, const char* sMask,
                                     const char* sGateway, const char* sUserID) {
    return Extension(OvProducer::Function::IFIpConfiguration, hIface, sDeviceID,
                     {std::to_string(iMode), Or(sIp), Or(sMask), Or(sGateway), Or(sUserID)});
}

OV_PRODUCER_EXPORT IFForceIp(GenTL::IF_HANDLE hIface, const char* sDeviceID, const char* sIp,
                             const char* sMask, const char* sGateway) {
    return Extension(OvProducer::Function::IFForceIp, hIface, sDeviceID,
                     {Or(sIp), Or(sMask), Or(sGateway)});
}

OV_PRODUCER_EXPORT IFResetDevice(GenTL::IF_HANDLE hIface, const char* sDeviceID,
                                 std::int32_t iMode) {
    return Extension(OvProducer::Function::IFResetDevice, hIface, sDeviceID,
                     {std::to_string(iMode)});
}
