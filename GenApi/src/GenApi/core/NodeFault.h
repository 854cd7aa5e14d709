#pragma once

#include <string>
#include <utility>

namespace GenApi_3_0_ORVANE {

/// What a description gets wrong about one node. The node throws it while it takes its
/// properties, and keeps it: from then on it isn't available, and every use of it throws the
/// fault as an exception of the engine's family. All other nodes of the description work.
class NodeFault {
public:
    enum class Kind { Runtime, LogicalError };

    explicit NodeFault(std::string text, Kind kind = Kind::Runtime)
        : m_Text(std::move(text)), m_Kind(kind) {}

    const char* GetText() const { return m_Text.c_str(); }
    Kind GetKind() const { return m_Kind; }

private:
    std::string m_Text;
    Kind m_Kind;
};

}  // namespace GenApi_3_0_ORVANE
