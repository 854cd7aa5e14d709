#include "camera/ProducerNodes.h"

#include <nlohmann/json.hpp>
#include <vector>

#include "GenApi/NodeMapFactory.h"

namespace Engine = GenApi_3_0_ORVANE;

namespace {

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

}  // namespace

void NodeMapDestroyer::operator()(Engine::INodeMap* map) const {
    dynamic_cast<Engine::IDestroy&>(*map).Destroy();
}

NodeMap LoadNodes(const GenTLProducer& producer, GenTL::PORT_HANDLE port) {
    const auto ask = [&](GenTL::URL_INFO_CMD command) {
        return [&producer, port, command](auto* type, void* buffer, size_t* size) {
            return producer.GCGetPortURLInfo(port, 0, command, type, buffer, size);
        };
    };
    const Json name = producer.Text(ask(GenTL::URL_INFO_FILENAME));
    const Json address = producer.Number(ask(GenTL::URL_INFO_FILE_REGISTER_ADDRESS));
    const Json length = producer.Number(ask(GenTL::URL_INFO_FILE_SIZE));
    if (name.is_null() || address.is_null() || length.is_null()) {
        throw ToolError("the camera keeps its description elsewhere");
    }
    std::vector<char> file(length.get<size_t>());
    size_t size = file.size();
    producer.Require(producer.GCReadPort(port, address.get<uint64_t>(), file.data(), &size),
                     "GCReadPort");
    const auto form = EndsWith(name.get<std::string>(), ".zip") ? Engine::ContentType_ZippedXml
                                                                : Engine::ContentType_Xml;
    return NodeMap(Engine::CNodeMapFactory(form, file.data(), file.size()).CreateNodeMap());
}

ProducerNodes::ProducerNodes(const GenTLProducer& producer, GenTL::PORT_HANDLE port)
    : m_producer(producer), m_port(port), m_map(LoadNodes(producer, port)) {
    const Json name = producer.Text([&](auto* type, void* buffer, size_t* size) {
        return producer.GCGetPortInfo(port, GenTL::PORT_INFO_PORTNAME, type, buffer, size);
    });
    m_map->Connect(this, name.is_null() ? "Device" : name.get<std::string>().c_str());
}

bool ProducerNodes::Has(const std::string& name) const {
    Engine::INode* const node = m_map->GetNode(name.c_str());
    return node != nullptr && Engine::IsImplemented(node->GetAccessMode());
}

void ProducerNodes::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    m_producer.Require(m_producer.GCReadPort(m_port, static_cast<uint64_t>(address), buffer, &size),
                       "GCReadPort");
}

void ProducerNodes::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    m_producer.Require(
        m_producer.GCWritePort(m_port, static_cast<uint64_t>(address), buffer, &size),
        "GCWritePort");
}
