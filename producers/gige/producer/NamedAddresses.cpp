#include "gige/producer/NamedAddresses.h"

#include "framework/Failure.h"
#include "gige/protocol/Gvcp.h"

namespace OvGige {

std::string NamedAddresses::Text() const {
    const std::lock_guard lock(m_mutex);
    return m_text;
}

std::vector<Endpoint> NamedAddresses::List() const {
    const std::lock_guard lock(m_mutex);
    return m_list;
}

void NamedAddresses::Set(const std::string& text) {
    std::vector<Endpoint> list;
    for (const std::string& item : ItemsOf(text)) {
        const auto endpoint = ParseEndpoint(item, kControlPort);
        if (!endpoint) {
            throw OvProducer::Failure(GenTL::GC_ERR_INVALID_VALUE,
                                      "\"" + item + "\" is no address of a camera");
        }
        list.push_back(*endpoint);
    }
    const std::lock_guard lock(m_mutex);
    m_text = text;
    m_list = std::move(list);
}

}  // namespace OvGige
