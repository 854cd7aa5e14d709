#pragma once
/// Answers of the information calls: a typed value that knows the two-call
/// protocol, and tables that map a command to the member that answers it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "GenTL/GenTL.h"
#include "framework/Failure.h"

namespace OvProducer {

/// The answer of an information call: its GenTL type and its bytes.
class InfoValue {
public:
    static InfoValue Text(std::string_view text);
    /// The texts of a string list: each with its NUL, and one more NUL at the end.
    static InfoValue TextList(std::span<const std::string> texts);
    static InfoValue Bytes(std::span<const std::byte> bytes);
    static InfoValue Int32(int32_t value) { return Raw(GenTL::INFO_DATATYPE_INT32, value); }
    static InfoValue Uint32(uint32_t value) { return Raw(GenTL::INFO_DATATYPE_UINT32, value); }
    static InfoValue Uint64(uint64_t value) { return Raw(GenTL::INFO_DATATYPE_UINT64, value); }
    static InfoValue Size(size_t value) { return Raw(GenTL::INFO_DATATYPE_SIZET, value); }
    static InfoValue Pointer(const void* value) { return Raw(GenTL::INFO_DATATYPE_PTR, value); }
    static InfoValue Bool(bool value) {
        return Raw(GenTL::INFO_DATATYPE_BOOL8, static_cast<GenTL::bool8_t>(value));
    }

    GenTL::INFO_DATATYPE Type() const { return m_type; }
    std::string_view Data() const {
        return m_bytes != nullptr ? std::string_view(*m_bytes)
                                  : std::string_view(m_number.data(), m_numberSize);
    }

    /// Copies the value to the caller. If `buffer` is null, only sets `*size`. `type` may
    /// be null.
    void CopyOut(GenTL::INFO_DATATYPE* type, void* buffer, size_t* size) const;

private:
    InfoValue(GenTL::INFO_DATATYPE type, std::string bytes)
        : m_type(type), m_bytes(std::make_unique<const std::string>(std::move(bytes))) {}
    explicit InfoValue(GenTL::INFO_DATATYPE type) : m_type(type) {}

    template <typename T>
    static InfoValue Raw(GenTL::INFO_DATATYPE type, T value) {
        InfoValue number(type);
        static_assert(sizeof value <= sizeof number.m_number);
        std::memcpy(number.m_number.data(), &value, sizeof value);
        number.m_numberSize = sizeof value;
        return number;
    }

    GenTL::INFO_DATATYPE m_type;
    /// Numbers have a place of their own: a consumer asks for several with each frame, and a
    /// text takes longer to make.
    size_t m_numberSize = 0;
    std::array<char, sizeof(uint64_t)> m_number{};
    std::unique_ptr<const std::string> m_bytes;  ///< null for a number
};

/// Fails with -1014, for a value that has no content at present.
[[noreturn]] void ThrowNotAvailable();

/// One row of a command table over `Object`.
template <typename Object>
struct InfoRow {
    int32_t command;
    InfoValue (*answer)(const Object&);
};

/// Returns the answer of the row with that command. Fails with -1003 if no row has it.
template <typename Object, size_t count>
InfoValue AnswerFrom(const InfoRow<Object> (&rows)[count], int32_t command, const Object& object) {
    for (const InfoRow<Object>& row : rows) {
        if (row.command == command) {
            return row.answer(object);
        }
    }
    throw Failure(GenTL::GC_ERR_NOT_IMPLEMENTED,
                  "Information command " + std::to_string(command) + " isn't offered");
}

}  // namespace OvProducer
