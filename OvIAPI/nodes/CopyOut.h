#pragma once
/// Results in the form of two calls: one for the size, one for the content.

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "Base/GCString.h"
#include "TLClassSupport/OvException.h"
#include "errors/Place.h"

/// Copies elements to the caller's memory, or only returns how many there are if that is null.
/// Throws if the memory is too small; then neither it nor the number is changed.
template <class T>
void CopyOut(const T* elements, size_t number, T* memory, size_t* pnNumber, const OvPlace& place) {
    if (memory != nullptr) {
        if (number > *pnNumber) {
            OV_RAISE_AT(CNeedMoreBufferError, place, "Need more buffer");
        }
        std::copy_n(elements, number, memory);
    }
    *pnNumber = number;
}

template <class T>
void CopyOut(const std::vector<T>& elements, T* memory, size_t* pnNumber, const OvPlace& place) {
    CopyOut(elements.data(), elements.size(), memory, pnNumber, place);
}

/// With the terminating zero.
inline void CopyOut(const std::string& text, char* memory, size_t* pnSize, const OvPlace& place) {
    CopyOut(text.c_str(), text.size() + 1, memory, pnSize, place);
}
inline void CopyOut(const GenICam_3_0_ORVANE::gcstring& text, char* memory, size_t* pnSize,
                    const OvPlace& place) {
    CopyOut(text.c_str(), text.size() + 1, memory, pnSize, place);
}
