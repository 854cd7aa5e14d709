#include "TLClassSupport/OvException.h"

#include "TLClassSupport/OvString.h"

namespace OVTLClass {

namespace {
constexpr int32_t kFormatWithLocation = 2;
}

int32_t COvException::m_emLogInfoFormat = kFormatWithLocation;

COvException::COvException(std::string description, const char* file, int line,
                           const char* function)
    : std::runtime_error(description),
      m_description(std::move(description)),
      m_file(file),
      m_line(line),
      m_function(function) {}

const char* COvException::what() const noexcept {
    try {
        // Composed here and not in the constructor: most exceptions are only compared by class.
        m_text =
            m_emLogInfoFormat == kFormatWithLocation
                ? "{" + m_function + ":line[" + std::to_string(m_line) + "]}{" + m_description + "}"
                : "{" + m_description + "}";
        return m_text.c_str();
    } catch (const std::bad_alloc&) {
        return std::runtime_error::what();
    }
}

}  // namespace OVTLClass
