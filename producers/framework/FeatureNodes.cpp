#include "framework/FeatureNodes.h"

#include <iomanip>
#include <sstream>

namespace OvProducer {
namespace {

constexpr uint64_t kFirstAddress = 0x1000;

std::string Hex(uint64_t value) {
    std::ostringstream text;
    text << "0x" << std::uppercase << std::hex << std::setw(4) << std::setfill('0') << value;
    return text.str();
}

}  // namespace

uint64_t FeatureRegisterAddress(size_t place) {
    return kFirstAddress + place * kFeatureRegisterSize;
}

void FeatureNodes::Begin(const std::string& category, const std::string& toolTip) {
    m_root.append("    <pFeature>").append(category).append("</pFeature>\n");
    EndCategory();
    m_category.assign("  <Category Name=\"").append(category);
    m_category.append("\" NameSpace=\"Custom\">\n    <ToolTip>").append(toolTip);
    m_category.append("</ToolTip>\n");
}

void FeatureNodes::AddSetting(const FeatureTexts& texts, int64_t min, int64_t max,
                              const std::string& unit) {
    const std::string name = texts.name;
    Open("Integer", texts);
    AddLine("pIsLocked", "TLParamsLocked");
    AddLine("pValue", name + "Reg");
    AddLine("Min", std::to_string(min));
    AddLine("Max", std::to_string(max));
    AddUnit(unit);
    m_nodes.append("  </Integer>\n\n  <IntReg Name=\"").append(name);
    m_nodes.append("Reg\" NameSpace=\"Custom\">\n");
    AddLine("Visibility", "Invisible");
    AddRegister("RW", "");
}

void FeatureNodes::AddNumber(const FeatureTexts& texts, const std::string& unit) {
    Open("IntReg", texts);
    AddRegister("RO", unit);
}

std::string FeatureNodes::Take() {
    EndCategory();
    return std::move(m_nodes);
}

void FeatureNodes::Open(const std::string& kind, const FeatureTexts& texts) {
    m_category.append("    <pFeature>").append(texts.name).append("</pFeature>\n");
    m_nodes.append("  <").append(kind).append(" Name=\"").append(texts.name);
    m_nodes.append("\" NameSpace=\"Custom\">\n");
    AddLine("ToolTip", texts.description);
    AddLine("Description", texts.description);
    AddLine("DisplayName", texts.displayName);
    AddLine("Visibility", "Expert");
}

void FeatureNodes::AddRegister(const std::string& access, const std::string& unit) {
    AddLine("Address", Hex(FeatureRegisterAddress(m_place++)));
    AddLine("Length", std::to_string(kFeatureRegisterSize));
    AddLine("AccessMode", access);
    AddLine("pPort", m_port);
    AddLine("Cachable", "NoCache");
    AddLine("Sign", "Signed");
    AddLine("Endianess", "LittleEndian");
    AddUnit(unit);
    m_nodes.append("  </IntReg>\n\n");
}

void FeatureNodes::AddUnit(const std::string& unit) {
    if (!unit.empty()) {
        AddLine("Unit", unit);
    }
}

void FeatureNodes::AddLine(const std::string& element, const std::string& value) {
    m_nodes.append("    <").append(element).append(">").append(value);
    m_nodes.append("</").append(element).append(">\n");
}

void FeatureNodes::EndCategory() {
    if (!m_category.empty()) {
        m_nodes.append(m_category).append("  </Category>\n\n");
    }
}

}  // namespace OvProducer
