#pragma once
/// An adapter with one of its addresses, and the cameras that it leads to.

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "framework/Backend.h"
#include "gige/discovery/AdapterSearch.h"
#include "gige/producer/ActionFeatures.h"
#include "gige/producer/GigeDevice.h"
#include "gige/producer/NamedAddresses.h"

namespace OvGige {

/// "eth0_192.168.1.10": with the address, so that one that changes makes another interface,
/// whose sockets are bound to the new address.
std::string IdOf(const Adapter& adapter);

class GigeInterface : public OvProducer::InterfaceBackend, private ActionHost {
public:
    GigeInterface(const Adapter& adapter, std::shared_ptr<const NamedAddresses> addresses);

    /// Takes over what has changed of an adapter that has the same ID.
    void SetAdapter(const Adapter& adapter);

    OvProducer::InterfaceFacts Facts() override;
    std::vector<std::shared_ptr<OvProducer::DeviceBackend>> Discover(uint64_t timeout) override;
    /// Reaches "IP::a.b.c.d", with ":port" where a camera doesn't listen at the usual one. Asks
    /// nobody if another adapter leads there.
    std::shared_ptr<OvProducer::DeviceBackend> Reach(const std::string& id) override;
    void SetSearchMode(int64_t mode) override;
    void StopDiscover() override;
    void ForceAddress(OvProducer::DeviceBackend& device,
                      const OvProducer::NetworkAddress& address) override;
    void AddRegisters(OvProducer::RegisterSpace& registers) override {
        m_actions.AddRegisters(registers);
    }

    /// Changes that reach a camera by way of this adapter. The answers to the searches that prove
    /// them count for the next list.
    ///@{
    /// Gives a camera another address until its next start; 0.0.0.0 makes it configure its
    /// address anew.
    void ForceIp(GigeDevice& device, Ipv4 ip, Ipv4 mask, Ipv4 gateway);
    /// Sets how a camera gets its address at its next start, and its name unless that is empty.
    void Configure(GigeDevice& device, const IpSettings& settings);
    ///@}

private:
    void WarnOfFilter(const Adapter& adapter);
    std::shared_ptr<AdapterSearch> Search() const;
    SearchTargets Targets() const;
    std::shared_ptr<GigeDevice> DeviceOf(const FoundCamera& camera);
    Adapter ActionAdapter() const override { return Search()->GetAdapter(); }
    std::vector<Endpoint> ActionTargets() const override { return m_addresses->List(); }
    std::string IdOfCamera(const Endpoint& place) const override;

    const std::shared_ptr<const NamedAddresses> m_addresses;
    std::atomic<SearchRange> m_range = SearchRange::Subnet;
    std::atomic<bool> m_isFilterLogged = false;
    FoundCameras m_found;
    mutable std::mutex m_mutex;  // guards what follows
    std::shared_ptr<AdapterSearch> m_search;
    /// Those that anybody has: the last list, or who has opened them.
    std::map<MacAddress, std::weak_ptr<GigeDevice>> m_devices;
    std::set<MacAddress> m_listed;  ///< those of the last list
    ActionFeatures m_actions{*this};
};

}  // namespace OvGige
