#include "framework/System.h"

#include <dlfcn.h>

#include <climits>
#include <cstdlib>

namespace OvProducer {
namespace {

std::string FileNameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

constexpr InfoRow<ProducerFacts> kSystemRows[] = {
    {GenTL::TL_INFO_ID, [](const auto& facts) { return InfoValue::Text(facts.id); }},
    {GenTL::TL_INFO_VENDOR, [](const auto& facts) { return InfoValue::Text(facts.vendor); }},
    {GenTL::TL_INFO_MODEL, [](const auto& facts) { return InfoValue::Text(facts.model); }},
    {GenTL::TL_INFO_VERSION, [](const auto& facts) { return InfoValue::Text(facts.version); }},
    {GenTL::TL_INFO_TLTYPE, [](const auto& facts) { return InfoValue::Text(facts.tlType); }},
    {GenTL::TL_INFO_NAME, [](const auto&) { return InfoValue::Text(FileNameOf(ProducerPath())); }},
    {GenTL::TL_INFO_PATHNAME, [](const auto&) { return InfoValue::Text(ProducerPath()); }},
    {GenTL::TL_INFO_DISPLAYNAME,
     [](const auto& facts) { return InfoValue::Text(facts.displayName); }},
    {GenTL::TL_INFO_CHAR_ENCODING,
     [](const auto&) { return InfoValue::Int32(GenTL::TL_CHAR_ENCODING_UTF8); }},
    {GenTL::TL_INFO_GENTL_VER_MAJOR, [](const auto&) { return InfoValue::Uint32(1); }},
    {GenTL::TL_INFO_GENTL_VER_MINOR, [](const auto&) { return InfoValue::Uint32(5); }},
};

PortFacts PortFactsOf(const ProducerFacts& facts) {
    return {facts.id, facts.vendor, facts.model, facts.tlType, "TLSystem", facts.version, "TLPort"};
}

}  // namespace

InfoValue ProducerInfo(const ProducerFacts& facts, GenTL::TL_INFO_CMD command) {
    return AnswerFrom(kSystemRows, command, facts);
}

std::string ProducerPath() {
    Dl_info info{};
    char resolved[PATH_MAX];
    if (dladdr(reinterpret_cast<const void*>(&ProducerPath), &info) == 0 ||
        info.dli_fname == nullptr || realpath(info.dli_fname, resolved) == nullptr) {
        throw Failure(GenTL::GC_ERR_ERROR, "The producer doesn't know its own file");
    }
    return resolved;
}

System::System(Session& session) : Module(session, PortFactsOf(session.facts)) {
    AddRegisters();
    AddInterfaceListRegisters();
    session.producer->Describe(ModuleKind::System, GetOwnPort());
}

void System::Close() {
    for (const std::shared_ptr<Interface>& iface : m_interfaces.TakeOpen()) {
        iface->Close();
    }
    Retire();
}

bool System::UpdateInterfaces(uint64_t timeout) {
    return m_interfaces.Update(GetSession().producer->Discover(timeout));
}

std::shared_ptr<InterfaceBackend> System::InterfaceNamed(const std::string& id) const {
    std::shared_ptr<InterfaceBackend> iface = m_interfaces.Find(id);
    if (!iface) {
        throw Failure(GenTL::GC_ERR_INVALID_ID, "The system has no interface '" + id + "'");
    }
    return iface;
}

std::shared_ptr<Interface> System::OpenInterface(const std::string& id) {
    const std::shared_ptr<InterfaceBackend> backend = InterfaceNamed(id);
    return m_interfaces.Open(id, [&] {
        auto iface = std::make_shared<Interface>(GetSession(), weak_from_this(), backend);
        GetSession().Add(iface);
        return iface;
    });
}

void System::CloseInterface(const std::shared_ptr<Interface>& iface) {
    m_interfaces.Remove(iface);
    iface->Close();
}

void System::AddRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    const ProducerFacts& facts = GetSession().facts;
    registers.AddText(0x0000, 128, [&facts] { return facts.id; });
    registers.AddText(0x0080, 128, [&facts] { return facts.vendor; });
    registers.AddText(0x0100, 128, [&facts] { return facts.model; });
    registers.AddText(0x0180, 128, [&facts] { return facts.version; });
    registers.AddText(0x0200, 128, [&facts] { return facts.displayName; });
    registers.AddText(0x0280, 128, [] { return FileNameOf(ProducerPath()); });
    registers.AddText(0x0400, 512, [] { return ProducerPath(); });
    registers.AddInteger(0x0600, 8, [&facts] { return TlTypeNumber(facts.tlType); });
}

void System::AddInterfaceListRegisters() {
    RegisterSpace& registers = GetOwnPort().Registers();
    registers.AddCommand(0x0700, [this] { UpdateInterfaces(kFeatureUpdateTimeout); });
    registers.AddInteger(
        0x0708, 8, [this] { return m_interfaces.Selected(); },
        [this](int64_t index) { m_interfaces.Select(index); });
    registers.AddInteger(0x0710, 8, [this] { return m_interfaces.LastIndex(); });
    const auto selected = [this] { return m_interfaces.SelectedBackend()->Facts(); };
    registers.AddInteger(0x0718, 8, [selected] { return TlTypeNumber(selected().tlType); });
    AddAddressRegisters(registers, 0x0720, [selected] { return selected().address; });
    registers.AddText(0x0780, 128, [selected] { return selected().id; });
    registers.AddText(0x0800, 128, [selected] { return selected().displayName; });
    ProducerBackend& producer = *GetSession().producer;
    registers.AddText(
        0x0880, 512, [&producer] { return producer.NamedAddresses(); },
        [&producer](const std::string& addresses) { producer.SetNamedAddresses(addresses); });
}

}  // namespace OvProducer
