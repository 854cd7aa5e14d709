#pragma once
/// Writes the nodes of a module's numbers, whose registers of eight bytes follow each other.

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace OvProducer {

constexpr size_t kFeatureRegisterSize = 8;

/// Where the register of the feature with that place among the written ones is, from 0.
uint64_t FeatureRegisterAddress(size_t place);

/// What people read of a feature.
struct FeatureTexts {
    const char* name;
    const char* displayName;
    const char* description;
};

/// Write first a category, then its features, in the order of their registers.
class FeatureNodes {
public:
    /// @param port  the node of the module's port
    explicit FeatureNodes(std::string port) : m_port(std::move(port)) {}

    void Begin(const std::string& category, const std::string& toolTip);
    /// A number that can be set while no frames flow.
    void AddSetting(const FeatureTexts& texts, int64_t min, int64_t max, const std::string& unit);
    /// A number that is only read.
    void AddNumber(const FeatureTexts& texts, const std::string& unit);

    /// Lines with a `pFeature` for each category.
    const std::string& Root() const { return m_root; }
    /// All nodes; nothing can be added after that.
    std::string Take();

private:
    void Open(const std::string& kind, const FeatureTexts& texts);
    void AddRegister(const std::string& access, const std::string& unit);
    void AddUnit(const std::string& unit);
    void AddLine(const std::string& element, const std::string& value);
    void EndCategory();

    const std::string m_port;
    std::string m_root;
    std::string m_category;
    std::string m_nodes;
    size_t m_place = 0;
};

}  // namespace OvProducer
