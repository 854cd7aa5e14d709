#include <arpa/inet.h>
#include <unistd.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/IBoolean.h"
#include "GenApi/ICommand.h"
#include "GenApi/IInteger.h"
#include "GenApi/IString.h"
#include "camera/GenTLProducer.h"
#include "camera/ProducerNodes.h"
#include "camera/Session.h"
#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"
#include "support/Text.h"

namespace {

namespace Engine = GenApi_3_0_ORVANE;

int64_t AddressFrom(const std::string& text) {
    in_addr address{};
    if (inet_pton(AF_INET, text.c_str(), &address) != 1) {
        throw UsageError("\"" + text + "\" is no address; write it as 192.168.1.10");
    }
    return ntohl(address.s_addr);
}

std::string TextOf(int64_t address) {
    const in_addr number{htonl(static_cast<uint32_t>(address))};
    char text[INET_ADDRSTRLEN] = {};
    inet_ntop(AF_INET, &number, text, sizeof text);
    return text;
}

/// An interface that sends actions.
class ActionInterface {
public:
    ActionInterface(const GenTLProducer& producer, GenTL::IF_HANDLE iface)
        : m_producer(producer), m_iface(iface), m_nodes(producer, iface) {}

    bool SendsActions() const { return m_nodes.Has("ActionCommand"); }
    void Send(const ActionOptions& options) {
        Set("ActionDeviceKey", options.deviceKey);
        Set("ActionGroupKey", options.groupKey);
        Set("ActionGroupMask", options.groupMask);
        m_nodes.As<Engine::IBoolean>("ActionScheduledTimeEnable")
            .SetValue(options.time.has_value());
        if (options.time) {
            Set("ActionScheduledTime", static_cast<int64_t>(*options.time));
        }
        if (!options.destination.empty()) {
            Set("GevActionDestinationIPAddress", AddressFrom(options.destination));
        }
        Set("ActionAnswerTime", options.wait);
        m_nodes.As<Engine::ICommand>("ActionCommand").Execute();
    }
    /// Searches for the names of those who answered.
    Json Answers() {
        Json answers = Json::array();
        const int64_t count = Get("ActionAnswerCount");
        if (count > 0) {
            m_producer.DeviceIds(m_iface, kSearchTimeout);
        }
        for (int64_t i = 0; i < count; ++i) {
            Set("ActionAnswerSelector", i);
            answers.push_back({{"ip", TextOf(Get("ActionAnswerIPAddress"))},
                               {"camera", GetText("ActionAnswerDeviceID")},
                               {"status", Get("ActionAnswerStatus")},
                               {"text", GetText("ActionAnswerStatusText")}});
        }
        return answers;
    }

private:
    void Set(const std::string& name, int64_t value) {
        m_nodes.As<Engine::IInteger>(name).SetValue(value);
    }
    int64_t Get(const std::string& name) { return m_nodes.As<Engine::IInteger>(name).GetValue(); }
    std::string GetText(const std::string& name) {
        return m_nodes.As<Engine::IString>(name).GetValue().c_str();
    }

    const GenTLProducer& m_producer;
    const GenTL::IF_HANDLE m_iface;
    ProducerNodes m_nodes;
};

std::string IdOf(const GenTLProducer& producer, GenTL::IF_HANDLE iface) {
    const Json id = producer.Text([&](auto* type, void* buffer, size_t* size) {
        return producer.IFGetInfo(iface, GenTL::INTERFACE_INFO_ID, type, buffer, size);
    });
    return id.is_null() ? std::string() : id.get<std::string>();
}

/// An interface is called by its ID, or by the adapter's name that the ID begins with.
bool IsCalled(const std::string& id, const std::string& name) {
    return name.empty() || id == name || id.substr(0, name.size() + 1) == name + "_";
}

void SendBy(const GenTLProducer& producer, const ActionOptions& options, Json& interfaces) {
    producer.ForEachInterface(kSearchTimeout, [&](GenTL::IF_HANDLE handle) {
        const std::string id = IdOf(producer, handle);
        if (!IsCalled(id, options.interface)) {
            return;
        }
        ActionInterface iface(producer, handle);
        if (iface.SendsActions()) {
            iface.Send(options);
            interfaces.push_back({{"id", id}, {"answers", iface.Answers()}});
        }
    });
}

Json SendByAll(const ActionOptions& options) {
    Json interfaces = Json::array();
    for (const char* const name : kProducerFiles) {
        const std::string path = LibraryFolder() + "/" + name;
        if (access(path.c_str(), F_OK) == 0) {
            SendBy(GenTLProducer(path), options, interfaces);
        }
    }
    if (interfaces.empty()) {
        throw ToolError("there is no such interface that sends actions", ExitCode::NoCamera);
    }
    return interfaces;
}

void PrintInterface(const Json& iface, bool isAwaited) {
    const size_t count = iface["answers"].size();
    std::printf("%s: %s\n", Visible(iface["id"].get<std::string>()).c_str(),
                !isAwaited   ? "sent"
                : count == 1 ? "1 camera answered"
                             : (std::to_string(count) + " cameras answered").c_str());
    for (const Json& answer : iface["answers"]) {
        std::printf("  %s  %s  %s\n", ToText(answer["ip"]).c_str(),
                    ToText(answer["camera"]).c_str(), ToText(answer["text"]).c_str());
    }
}

size_t CountAnswers(const Json& interfaces) {
    size_t count = 0;
    for (const Json& iface : interfaces) {
        count += iface["answers"].size();
    }
    return count;
}

void SendAndTell(const ActionOptions& options, bool json) {
    const Json interfaces = SendByAll(options);
    const bool isAwaited = options.wait > 0;
    if (json) {
        PrintJson({{"interfaces", interfaces}});
    } else {
        for (const Json& iface : interfaces) {
            PrintInterface(iface, isAwaited);
        }
    }
    if (isAwaited && CountAnswers(interfaces) == 0) {
        throw ToolError(
            "no camera answered\nDo its keys and its mask fit, and has somebody opened it or "
            "switched on ActionUnconditionalMode?",
            ExitCode::TimedOut);
    }
}

}  // namespace

void SendAction(const ActionOptions& options, bool json) {
    try {
        SendAndTell(options, json);
    } catch (const GenICam_3_0_ORVANE::GenericException& error) {
        throw ToolError(std::string("can't send the action: ") + error.GetDescription());
    }
}
