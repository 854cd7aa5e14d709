#pragma once
/// The system module: the producer itself, and its interfaces.

#include <memory>

#include "framework/ChildList.h"
#include "framework/Interface.h"
#include "framework/Module.h"

namespace OvProducer {

class System : public Module, public std::enable_shared_from_this<System> {
public:
    explicit System(Session& session);

    void Close();

    /// Returns whether the set of interface IDs has changed.
    bool UpdateInterfaces(uint64_t timeout);
    ChildList<InterfaceBackend, Interface>& Interfaces() { return m_interfaces; }
    /// Fails with -1007 if there is no such interface.
    std::shared_ptr<InterfaceBackend> InterfaceNamed(const std::string& id) const;
    std::shared_ptr<Interface> OpenInterface(const std::string& id);
    void CloseInterface(const std::shared_ptr<Interface>& iface);

protected:
    bool OffersEvent(GenTL::EVENT_TYPE type) const override {
        static_cast<void>(type);
        return false;
    }

private:
    void AddRegisters();
    void AddInterfaceListRegisters();

    ChildList<InterfaceBackend, Interface> m_interfaces;
};

/// Answers `GCGetInfo` and `TLGetInfo`.
InfoValue ProducerInfo(const ProducerFacts& facts, GenTL::TL_INFO_CMD command);

/// Returns the full path of the producer's own file.
std::string ProducerPath();

}  // namespace OvProducer
