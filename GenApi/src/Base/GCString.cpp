// A string with virtual operations, so that it may cross from a library built with one
// standard library to a program built with another. Its character pointer is a field of
// its own and must be refreshed after every change: short texts are stored in the string
// object.

#include "Base/GCString.h"

#include <stdexcept>

#include "Base/GCException.h"

namespace GenICam_3_0_ORVANE {

namespace {

/// Callers pass null for the empty text.
const char* NotNull(const char* text) {
    return text == nullptr ? "" : text;
}

/// Runs `make` and turns an allocation that fails into the engine's own exception.
template <class Make>
auto Allocating(const Make& make) {
    try {
        return make();
    } catch (const std::bad_alloc&) {
        ThrowBadAlloc(__FILE__, __LINE__);
    }
}

}  // namespace

/// Every change passes here: standard exceptions must not leave the engine, and the
/// pointer must not be forgotten.
template <class Change>
gcstring& gcstring::Mutate(const Change& change) {
    try {
        change();
    } catch (const std::bad_alloc&) {
        ThrowBadAlloc(__FILE__, __LINE__);
    } catch (const std::length_error&) {
        ThrowBadAlloc(__FILE__, __LINE__);
    }
    m_pText = m_Text.c_str();
    return *this;
}

gcstring::gcstring() : m_pText(nullptr) {
    m_pText = m_Text.c_str();
}

gcstring::gcstring(const char* text) : gcstring() {
    assign(text);
}

gcstring::gcstring(const char* text, size_t length) : gcstring() {
    assign(text, length);
}

gcstring::gcstring(size_t count, char character) : gcstring() {
    assign(count, character);
}

gcstring::gcstring(const gcstring& other) : gcstring() {
    assign(other);
}

gcstring::~gcstring() = default;

gcstring& gcstring::append(const gcstring& text) {
    return Mutate([&] { m_Text.append(text.m_Text); });
}

gcstring& gcstring::append(size_t count, char character) {
    return Mutate([&] { m_Text.append(count, character); });
}

gcstring& gcstring::assign(const gcstring& text) {
    return Mutate([&] { m_Text.assign(text.m_Text); });
}

gcstring& gcstring::assign(size_t count, char character) {
    return Mutate([&] { m_Text.assign(count, character); });
}

gcstring& gcstring::assign(const char* text) {
    return Mutate([&] { m_Text.assign(NotNull(text)); });
}

gcstring& gcstring::assign(const char* text, size_t length) {
    return Mutate([&] { m_Text.assign(NotNull(text), text == nullptr ? 0 : length); });
}

int gcstring::compare(const gcstring& text) const {
    return m_Text.compare(text.m_Text);
}

const char* gcstring::c_str() const {
    return m_pText;
}

bool gcstring::empty() const {
    return m_Text.empty();
}

size_t gcstring::find(char character, size_t offset) const {
    return m_Text.find(character, offset);
}

size_t gcstring::find(const gcstring& text, size_t offset) const {
    return m_Text.find(text.m_Text, offset);
}

size_t gcstring::find(const gcstring& text, size_t offset, size_t count) const {
    return m_Text.find(text.m_Text.c_str(), offset, count);
}

size_t gcstring::find(const char* text, size_t offset) const {
    return m_Text.find(NotNull(text), offset);
}

size_t gcstring::find(const char* text, size_t offset, size_t count) const {
    return m_Text.find(NotNull(text), offset, text == nullptr ? 0 : count);
}

size_t gcstring::length() const {
    return m_Text.length();
}

size_t gcstring::size() const {
    return m_Text.size();
}

void gcstring::resize(size_t count) {
    Mutate([&] { m_Text.resize(count); });
}

size_t gcstring::max_size() const {
    return m_Text.max_size();
}

/// std::out_of_range passes through: programs rely on it.
gcstring gcstring::substr(size_t offset, size_t count) const {
    const std::string piece = Allocating([&] { return m_Text.substr(offset, count); });
    return {piece.data(), piece.size()};
}

size_t gcstring::find_first_of(const gcstring& characters, size_t offset) const {
    return m_Text.find_first_of(characters.m_Text, offset);
}

size_t gcstring::find_first_not_of(const gcstring& characters, size_t offset) const {
    return m_Text.find_first_not_of(characters.m_Text, offset);
}

/// Short texts are inside the object, so both pointers change even where no memory does.
void gcstring::swap(gcstring& other) {
    m_Text.swap(other.m_Text);
    m_pText = m_Text.c_str();
    other.m_pText = other.m_Text.c_str();
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assign takes its own text
gcstring& gcstring::operator=(const gcstring& text) {
    return assign(text);
}

gcstring& gcstring::operator+=(const gcstring& text) {
    return append(text);
}

gcstring& gcstring::operator+=(const char* text) {
    return Mutate([&] { m_Text.append(NotNull(text)); });
}

gcstring& gcstring::operator+=(char character) {
    return append(1, character);
}

/// The memory comes from this library and goes back to it, whichever allocator the
/// program has.
void* gcstring::operator new(size_t size) {
    return Allocating([size] { return ::operator new(size); });
}

void gcstring::operator delete(void* memory) {
    ::operator delete(memory);
}

gcstring operator+(const gcstring& left, const gcstring& right) {
    gcstring sum(left);
    return sum.append(right);
}

gcstring operator+(const gcstring& left, const char* right) {
    gcstring sum(left);
    return sum += right;
}

gcstring operator+(const char* left, const gcstring& right) {
    gcstring sum(left);
    return sum.append(right);
}

}  // namespace GenICam_3_0_ORVANE
