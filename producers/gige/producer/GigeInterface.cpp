#include "gige/producer/GigeInterface.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <iterator>
#include <optional>

#include "framework/Failure.h"
#include "gige/discovery/Inquiry.h"
#include "gige/net/Routes.h"
#include "gige/net/SourceFilter.h"
#include "gige/producer/AddressChange.h"

namespace OvGige {
namespace {

using OvProducer::DeviceBackend;
using OvProducer::Failure;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::string_view kAddressId = "IP::";

/// A search without end is one that somebody stops.
constexpr milliseconds kLongestSearch = std::chrono::hours{24};

milliseconds SearchTime(uint64_t timeout) {
    const auto longest = static_cast<uint64_t>(kLongestSearch.count());
    return milliseconds(static_cast<milliseconds::rep>(std::min(timeout, longest)));
}

Ipv4 AddressOf(int64_t value) {
    return {static_cast<uint32_t>(value)};
}

}  // namespace

std::string IdOf(const Adapter& adapter) {
    return adapter.name + "_" + TextOf(adapter.ip);
}

GigeInterface::GigeInterface(const Adapter& adapter,
                             std::shared_ptr<const NamedAddresses> addresses)
    : m_addresses(std::move(addresses)),
      m_search(std::make_shared<AdapterSearch>(adapter, kControlPort)) {}

void GigeInterface::SetAdapter(const Adapter& adapter) {
    const std::lock_guard lock(m_mutex);
    if (m_search->GetAdapter() != adapter) {
        m_search->Stop();
        m_search = std::make_shared<AdapterSearch>(adapter, kControlPort);
    }
}

OvProducer::InterfaceFacts GigeInterface::Facts() {
    const Adapter adapter = Search()->GetAdapter();
    const std::string address =
        TextOf(adapter.ip) + "/" + std::to_string(std::popcount(adapter.mask.value));
    return {.id = IdOf(adapter),
            .displayName = adapter.name + " (" + TextOf(adapter.ip) + ")",
            .tlType = GenTL::TLTYPE_GEV,
            .description = "Network adapter " + adapter.name + " with " + address,
            .address = {.mac = static_cast<int64_t>(adapter.mac.Value()),
                        .ip = adapter.ip.value,
                        .mask = adapter.mask.value,
                        .gateway = adapter.gateway.value}};
}

// What has been opened stays in the list for as long as the camera answers its owner: some
// cameras leave searches unanswered while they send frames. One that was opened by an address that
// no search finds doesn't come into the list by that.
std::vector<std::shared_ptr<DeviceBackend>> GigeInterface::Discover(uint64_t timeout) {
    const std::shared_ptr<AdapterSearch> search = Search();
    WarnOfFilter(search->GetAdapter());
    search->Run(SearchTime(timeout), Targets(), m_found);
    std::map<MacAddress, std::shared_ptr<DeviceBackend>> listed;
    const std::lock_guard lock(m_mutex);
    for (const FoundCamera& camera :
         m_found.List(search->GetAdapter(), m_range, steady_clock::now())) {
        listed[camera.identity.mac] = DeviceOf(camera);
    }
    std::erase_if(m_devices, [](const auto& entry) { return entry.second.expired(); });
    for (const auto& [mac, known] : m_devices) {
        const std::shared_ptr<GigeDevice> device = known.lock();
        if (device && device->IsConnected() && m_listed.contains(mac)) {
            listed[mac] = device;
        }
    }
    m_listed.clear();
    std::vector<std::shared_ptr<DeviceBackend>> devices;
    std::transform(listed.begin(), listed.end(), std::back_inserter(devices),
                   [this](const auto& entry) {
                       m_listed.insert(entry.first);
                       return entry.second;
                   });
    return devices;
}

std::shared_ptr<DeviceBackend> GigeInterface::Reach(const std::string& id) {
    if (!id.starts_with(kAddressId)) {
        return nullptr;
    }
    const auto endpoint =
        ParseEndpoint(std::string_view(id).substr(kAddressId.size()), kControlPort);
    const Adapter adapter = Search()->GetAdapter();
    if (!endpoint || !LeadsTo(adapter, endpoint->ip)) {
        return nullptr;
    }
    const auto camera = Inquire(adapter, *endpoint);
    if (!camera) {
        return nullptr;
    }
    const std::lock_guard lock(m_mutex);
    return DeviceOf(*camera);
}

void GigeInterface::SetSearchMode(int64_t mode) {
    if (mode != 0 && mode != 1) {
        throw Failure(GenTL::GC_ERR_INVALID_VALUE, "There is no such search mode");
    }
    m_range = mode == 0 ? SearchRange::Subnet : SearchRange::Network;
}

void GigeInterface::StopDiscover() {
    Search()->Stop();
}

void GigeInterface::ForceAddress(DeviceBackend& device, const OvProducer::NetworkAddress& address) {
    ForceIp(dynamic_cast<GigeDevice&>(device), AddressOf(address.ip), AddressOf(address.mask),
            AddressOf(address.gateway));
}

void GigeInterface::ForceIp(GigeDevice& device, Ipv4 ip, Ipv4 mask, Ipv4 gateway) {
    const FoundCamera camera = device.Camera();
    device.RequireClosed();
    ForceCameraAddress(Search()->GetAdapter(), camera,
                       {.mac = camera.identity.mac, .ip = ip, .mask = mask, .gateway = gateway},
                       m_found);
}

void GigeInterface::Configure(GigeDevice& device, const IpSettings& settings) {
    RequireSense(settings);
    device.Configure(settings);
    ProveSettings(Search()->GetAdapter(), device.Camera(), settings, m_found);
}

// Once: applications search all the time.
void GigeInterface::WarnOfFilter(const Adapter& adapter) {
    if (m_range == SearchRange::Network && DropsForeignSenders(adapter.name) &&
        !m_isFilterLogged.exchange(true)) {
        OvProducer::LogWarning("Cameras with addresses of other subnets aren't heard by " +
                               adapter.name +
                               ": the system drops their answers, as net.ipv4.conf.all.rp_filter "
                               "or net.ipv4.conf." +
                               adapter.name + ".rp_filter is 1; set both to 0");
    }
}

std::shared_ptr<AdapterSearch> GigeInterface::Search() const {
    const std::lock_guard lock(m_mutex);
    return m_search;
}

SearchTargets GigeInterface::Targets() const {
    return {.limitedBroadcast = m_range == SearchRange::Network,
            .directedBroadcast = true,
            .cameras = m_addresses->List()};
}

std::string GigeInterface::IdOfCamera(const Endpoint& place) const {
    const std::lock_guard lock(m_mutex);
    for (const auto& [mac, known] : m_devices) {
        const std::shared_ptr<GigeDevice> device = known.lock();
        if (device && device->Camera().endpoint == place) {
            return TextOf(mac);
        }
    }
    return {};
}

std::shared_ptr<GigeDevice> GigeInterface::DeviceOf(const FoundCamera& camera) {
    std::weak_ptr<GigeDevice>& known = m_devices[camera.identity.mac];
    std::shared_ptr<GigeDevice> device = known.lock();
    if (device) {
        device->SetCamera(m_search->GetAdapter(), camera);
    } else {
        device = std::make_shared<GigeDevice>(m_search->GetAdapter(), camera);
        known = device;
    }
    return device;
}

}  // namespace OvGige
