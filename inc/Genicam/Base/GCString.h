#pragma once
/// The engine's own text, which may cross a library boundary.

#include <cstddef>
#include <new>
#include <string>

#include "Base/Export.h"

namespace GenICam_3_0_ORVANE {

/// A text with the operations of std::string under the same names.
///
/// Users may be built with another standard library than the engine. So the layout (a copy of the
/// character pointer before the text itself) and the table of virtual operations never change. A
/// null character pointer counts as the empty text.
/// @throws BadAllocException  from every operation, if an allocation fails
class OV_ENGINE_API gcstring {
public:
    /// @name As in std::string
    /// @{
    static constexpr size_t npos = static_cast<size_t>(-1);
    static size_t _npos() { return npos; }

    gcstring();
    gcstring(const char* text);  // NOLINT(google-explicit-constructor): a text is a text
    gcstring(const char* text, size_t length);
    gcstring(size_t count, char character);
    gcstring(const gcstring& other);
    virtual ~gcstring();

    virtual gcstring& append(const gcstring& text);
    virtual gcstring& append(size_t count, char character);
    virtual gcstring& assign(const gcstring& text);
    virtual gcstring& assign(size_t count, char character);
    virtual gcstring& assign(const char* text);
    virtual gcstring& assign(const char* text, size_t length);
    virtual int compare(const gcstring& text) const;
    virtual const char* c_str() const;
    virtual bool empty() const;
    virtual size_t find(char character, size_t offset = 0) const;
    virtual size_t find(const gcstring& text, size_t offset = 0) const;
    virtual size_t find(const gcstring& text, size_t offset, size_t count) const;
    virtual size_t find(const char* text, size_t offset = 0) const;
    virtual size_t find(const char* text, size_t offset, size_t count) const;
    virtual size_t length() const;
    virtual size_t size() const;
    virtual void resize(size_t count);
    virtual size_t max_size() const;
    /// @throws std::out_of_range ("basic_string::substr") for an offset beyond the length
    virtual gcstring substr(size_t offset = 0, size_t count = npos) const;
    virtual size_t find_first_of(const gcstring& characters, size_t offset = 0) const;
    virtual size_t find_first_not_of(const gcstring& characters, size_t offset = 0) const;
    virtual void swap(gcstring& other);

    gcstring& operator=(const gcstring& text);
    gcstring& operator+=(const gcstring& text);
    gcstring& operator+=(const char* text);
    gcstring& operator+=(char character);
    bool operator==(const gcstring& text) const { return m_Text == text.m_Text; }
    bool operator==(const char* text) const { return m_Text == (text == nullptr ? "" : text); }
    bool operator!=(const gcstring& text) const { return !(*this == text); }
    bool operator!=(const char* text) const { return !(*this == text); }
    bool operator<(const gcstring& text) const { return m_Text < text.m_Text; }
    bool operator>(const gcstring& text) const { return m_Text > text.m_Text; }
    operator const char*() const { return m_pText; }  // NOLINT(google-explicit-constructor)

    /// @}
    /// @name Memory comes from the engine, whoever asks for it
    /// @{
    static void* operator new(size_t size);
    static void operator delete(void* memory);
    static void* operator new(size_t /*size*/, void* place) { return place; }
    static void operator delete(void* /*memory*/, void* /*place*/) {}
    /// @}

private:
    template <class Change>
    gcstring& Mutate(const Change& change);

    const char* m_pText;
    std::string m_Text;
};

OV_ENGINE_API gcstring operator+(const gcstring& left, const gcstring& right);
OV_ENGINE_API gcstring operator+(const gcstring& left, const char* right);
OV_ENGINE_API gcstring operator+(const char* left, const gcstring& right);

}  // namespace GenICam_3_0_ORVANE
