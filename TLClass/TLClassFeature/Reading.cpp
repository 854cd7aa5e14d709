#include "TLClassFeature/Reading.h"

#include "TLClassFeature/EngineCall.h"

namespace OVTLClass {

CRefusal::CRefusal(CNotImplementedError error)
    : m_error(std::make_unique<const Error>(std::move(error))) {}

CRefusal::CRefusal(CInvalidAccessError error)
    : m_error(std::make_unique<const Error>(std::move(error))) {}

CRefusal::~CRefusal() = default;

const COvException& CRefusal::Get() const {
    return std::visit([](const COvException& error) -> const COvException& { return error; },
                      *m_error);
}

void CRefusal::Raise() const {
    if (const auto* const error = std::get_if<CNotImplementedError>(m_error.get())) {
        throw CNotImplementedError(*error);
    }
    throw CInvalidAccessError(std::get<CInvalidAccessError>(*m_error));
}

CRefusal NotReadable(const EnginePlace& place, const char* description) {
    return CInvalidAccessError(description, place.file, place.line, place.function);
}

}  // namespace OVTLClass
