#include "framework/Backend.h"

#include "framework/Failure.h"

namespace OvProducer {
namespace {

[[noreturn]] void ThrowNoAddresses() {
    throw Failure(GenTL::GC_ERR_NOT_IMPLEMENTED, "These devices have no network addresses");
}

}  // namespace

void InterfaceBackend::ForceAddress(DeviceBackend&, const NetworkAddress&) {
    ThrowNoAddresses();
}

void ProducerBackend::SetNamedAddresses(const std::string& addresses) {
    if (!addresses.empty()) {
        ThrowNoAddresses();
    }
}

}  // namespace OvProducer
