#pragma once
/// The addresses of cameras that the user named.

#include <mutex>
#include <string>
#include <vector>

#include "gige/protocol/Address.h"

namespace OvGige {

/// Shared by all searches. Any thread may use it.
class NamedAddresses {
public:
    /// As the user wrote them.
    std::string Text() const;
    std::vector<Endpoint> List() const;

    /// Takes a list with commas or blanks.
    /// @throws OvProducer::Failure GC_ERR_INVALID_VALUE for an item that is no address; nothing
    ///         is changed then
    void Set(const std::string& text);

private:
    mutable std::mutex m_mutex;
    std::string m_text;
    std::vector<Endpoint> m_list;
};

}  // namespace OvGige
