#include "gige/producer/GigeProducer.h"

#include <algorithm>

#include "framework/Failure.h"
#include "gige/message/MessageFeatures.h"
#include "gige/stream/StreamFeatures.h"

namespace OvGige {

using OvProducer::Failure;
using OvProducer::LogWarning;

GigeProducer::GigeProducer(std::string_view adapters, const std::string& addresses)
    : m_choice(adapters), m_addresses(std::make_shared<OvGige::NamedAddresses>()) {
    try {
        m_addresses->Set(addresses);
    } catch (const Failure& failure) {
        LogWarning(std::string("OV_GIGE_ADDRESSES counts for nothing: ") + failure.what());
    }
}

OvProducer::ProducerFacts GigeProducer::Facts() {
    return {.id = "OvGVTL",
            .vendor = "oviapi",
            .model = "GigE Vision Cameras",
            .version = "1.0.0",
            .tlType = GenTL::TLTYPE_GEV,
            .displayName = "GigE Vision cameras"};
}

// The system lists adapters at once, so there is nothing to wait for.
std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> GigeProducer::Discover(uint64_t) {
    const std::vector<Adapter> adapters = AllowedAdapters();
    std::vector<std::shared_ptr<OvProducer::InterfaceBackend>> found;
    const std::lock_guard lock(m_mutex);
    for (const Adapter& adapter : adapters) {
        try {
            found.push_back(InterfaceOf(adapter));
        } catch (const Failure& failure) {
            LogWarning(adapter.name + " can't be used: " + failure.what());
        }
    }
    LogIfNone(found.empty());
    return found;
}

std::vector<Adapter> GigeProducer::AllowedAdapters() const {
    try {
        std::vector<Adapter> adapters = AllAdapters();
        std::erase_if(adapters,
                      [this](const Adapter& adapter) { return !m_choice.Allows(adapter); });
        return adapters;
    } catch (const Failure& failure) {
        LogWarning(failure.what());
        return {};
    }
}

// An adapter that was away may come back as another one of the same name and address. Whoever
// has its interface open keeps it, so the interface takes the new one over.
std::shared_ptr<GigeInterface> GigeProducer::InterfaceOf(const Adapter& adapter) {
    std::shared_ptr<GigeInterface>& iface = m_interfaces[IdOf(adapter)];
    if (iface) {
        iface->SetAdapter(adapter);
    } else {
        iface = std::make_shared<GigeInterface>(adapter, m_addresses);
    }
    return iface;
}

// Once, until there is one again: applications update their lists all the time.
void GigeProducer::LogIfNone(bool isNone) {
    if (isNone && !m_isNoneLogged) {
        LogWarning(
            "No network adapter can be used for GigE Vision cameras: none is up with an IPv4 "
            "address and allowed by OV_GIGE_ADAPTERS");
    }
    m_isNoneLogged = isNone;
}

void GigeProducer::Describe(OvProducer::ModuleKind kind, OvProducer::Port& port) {
    OvProducer::Description description = OvProducer::OwnDescription(kind);
    if (kind == OvProducer::ModuleKind::Stream) {
        description.name = "OvGigeStream_1_0_0";
        description.xml = WithStreamFeatures(std::move(description.xml));
    }
    if (kind == OvProducer::ModuleKind::Device) {
        description.name = "OvGigeDevice_1_0_0";
        description.xml = WithMessageFeatures(std::move(description.xml));
    }
    if (kind == OvProducer::ModuleKind::Interface) {
        description.name = "OvGigeInterface_1_0_0";
        description.xml = WithActionFeatures(std::move(description.xml));
    }
    port.AddDescription(description, OvProducer::kDescriptionAddress);
}

}  // namespace OvGige
