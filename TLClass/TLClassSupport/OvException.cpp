#include "TLClassSupport/OvException.h"

#include "TLClassSupport/OvString.h"

namespace OVTLClass {

namespace {
constexpr int32_t kFormatWithLocation = 2;
/// The characters of a text that come with none of its parts.
constexpr size_t kMostOfForm = sizeof "{:line[]}{}";
}  // namespace

int32_t COvException::m_emLogInfoFormat = kFormatWithLocation;

COvException::COvException(std::string description, const char* file, int line,
                           const char* function)
    : std::runtime_error(""),
      m_description(std::move(description)),
      m_file(file),
      m_line(line),
      m_function(function) {}

const char* COvException::what() const noexcept {
    try {
        // Composed here and not in the constructor: most exceptions are only compared by class.
        const std::string line = std::to_string(m_line);
        std::string text;
        text.reserve(kMostOfForm + m_function.size() + line.size() + m_description.size());
        if (m_emLogInfoFormat == kFormatWithLocation) {
            text.append("{").append(m_function).append(":line[").append(line).append("]}");
        }
        text.append("{").append(m_description).append("}");
        m_text = std::move(text);
        return m_text.c_str();
    } catch (const std::bad_alloc&) {
        return m_description.c_str();
    }
}

}  // namespace OVTLClass
