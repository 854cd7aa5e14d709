#pragma once
/// The producer: this machine's adapters as interfaces.

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "framework/Backend.h"
#include "gige/net/Adapters.h"
#include "gige/producer/GigeInterface.h"
#include "gige/producer/NamedAddresses.h"

namespace OvGige {

/// A machine without adapters, rights or sockets has no interfaces; that is a line in the log and
/// no failure.
class GigeProducer : public OvProducer::ProducerBackend {
public:
    /// @param adapters   as in `OV_GIGE_ADAPTERS`: which adapters are used
    /// @param addresses  as in `OV_GIGE_ADDRESSES`: where cameras are that no broadcast reaches
    GigeProducer(std::string_view adapters, const std::string& addresses);

    OvProducer::ProducerFacts Facts() override;
    std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> Discover(uint64_t timeout) override;
    /// Streams and interfaces have features beside those of all producers.
    void Describe(OvProducer::ModuleKind kind, OvProducer::Port& port) override;
    std::string NamedAddresses() override { return m_addresses->Text(); }
    void SetNamedAddresses(const std::string& addresses) override { m_addresses->Set(addresses); }

private:
    std::vector<Adapter> AllowedAdapters() const;
    std::shared_ptr<GigeInterface> InterfaceOf(const Adapter& adapter);
    void LogIfNone(bool isNone);

    const AdapterChoice m_choice;
    const std::shared_ptr<OvGige::NamedAddresses> m_addresses;
    std::mutex m_mutex;  // guards what follows
    /// All that were ever there: an adapter that comes back is the same interface, and its open
    /// cameras are still listed.
    std::map<std::string, std::shared_ptr<GigeInterface>> m_interfaces;
    bool m_isNoneLogged = false;
};

}  // namespace OvGige
