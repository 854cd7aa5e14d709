/// @file
/// A producer's description as live nodes over its port.
#ifndef OV_TESTS_LIVE_DESCRIPTION_H
#define OV_TESTS_LIVE_DESCRIPTION_H

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "GenApi/ICategory.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "GenApi/IPort.h"
#include "GenApi/NodeMapFactory.h"
#include "GenApi/NodeVector.h"
#include "GenTLApi.h"

namespace GenApi = GenApi_3_0_ORVANE;

/// Registers through the flat functions; throws the code's text on failure.
class FlatPort : public GenApi::IPort {
public:
    FlatPort(const GenTLApi& api, GenTL::PORT_HANDLE port) : m_api(api), m_port(port) {}

    GenApi::EAccessMode GetAccessMode() override { return GenApi::RW; }

    void Read(void* buffer, int64_t address, int64_t length) override {
        auto size = static_cast<std::size_t>(length);
        OpenCamera::Check(
            m_api.GCReadPort(m_port, static_cast<std::uint64_t>(address), buffer, &size),
            "GCReadPort");
    }

    void Write(const void* buffer, int64_t address, int64_t length) override {
        auto size = static_cast<std::size_t>(length);
        OpenCamera::Check(
            m_api.GCWritePort(m_port, static_cast<std::uint64_t>(address), buffer, &size),
            "GCWritePort");
    }

private:
    const GenTLApi& m_api;
    const GenTL::PORT_HANDLE m_port;
};

/// Loads the description that the port serves, plain or zipped.
class LiveDescription {
public:
    LiveDescription(const GenTLApi& api, GenTL::PORT_HANDLE port) : m_port(api, port) {
        const auto number = [&](GenTL::URL_INFO_CMD command) {
            return GenTLApi::Number<std::uint64_t>([&](auto* type, void* out, std::size_t* size) {
                return api.GCGetPortURLInfo(port, 0, command, type, out, size);
            });
        };
        const auto text = [&](auto ask) { return GenTLApi::Text(ask); };
        std::vector<std::byte> file(number(GenTL::URL_INFO_FILE_SIZE));
        m_port.Read(file.data(),
                    static_cast<int64_t>(number(GenTL::URL_INFO_FILE_REGISTER_ADDRESS)),
                    static_cast<int64_t>(file.size()));
        const std::string name = text([&](auto* type, void* out, std::size_t* size) {
            return api.GCGetPortURLInfo(port, 0, GenTL::URL_INFO_FILENAME, type, out, size);
        });
        const auto form =
            name.ends_with(".zip") ? GenApi::ContentType_ZippedXml : GenApi::ContentType_Xml;
        m_map = GenApi::CNodeMapFactory(form, file.data(), file.size()).CreateNodeMap();
        const std::string portName = text([&](auto* type, void* out, std::size_t* size) {
            return api.GCGetPortInfo(port, GenTL::PORT_INFO_PORTNAME, type, out, size);
        });
        if (!m_map->Connect(&m_port, portName.c_str())) {
            throw std::runtime_error("No port node named " + portName);
        }
    }
    LiveDescription(const LiveDescription&) = delete;
    LiveDescription& operator=(const LiveDescription&) = delete;
    ~LiveDescription() { dynamic_cast<GenApi::IDestroy*>(m_map)->Destroy(); }

    GenApi::INodeMap& Map() const { return *m_map; }

    GenApi::INode* Node(const std::string& name) const { return m_map->GetNode(name.c_str()); }

    /// The node as `T`; throws when it is missing or something else.
    template <typename T>
    T& As(const std::string& name) const {
        auto* node = dynamic_cast<T*>(Node(name));
        if (node == nullptr) {
            throw std::runtime_error("No such node: " + name);
        }
        return *node;
    }

    bool Writable(const std::string& name) const {
        const GenApi::EAccessMode mode = As<GenApi::INode>(name).GetAccessMode();
        return mode == GenApi::RW || mode == GenApi::WO;
    }

    /// All features below a category, categories left out.
    std::vector<GenApi::IValue*> Features(const std::string& category = "Root") const {
        std::vector<GenApi::IValue*> found;
        GenApi::value_vector values;
        As<GenApi::ICategory>(category).GetFeatures(values);
        for (GenApi::IValue* value : values) {
            if (dynamic_cast<GenApi::ICategory*>(value) == nullptr) {
                found.push_back(value);
                continue;
            }
            const std::vector<GenApi::IValue*> below =
                Features(value->GetNode()->GetName().c_str());
            found.insert(found.end(), below.begin(), below.end());
        }
        return found;
    }

private:
    FlatPort m_port;
    GenApi::INodeMap* m_map = nullptr;
};

#endif
