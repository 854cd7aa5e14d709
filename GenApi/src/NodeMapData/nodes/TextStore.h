#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "properties/NodeID.h"

namespace GenApi_3_0_ORVANE {

/// The texts of a description by their numbers. A text never moves, and ends with a zero. Most are
/// short, so that a block of memory for many of them is quicker than one for each, and smaller.
class CTextStore {
public:
    /// Stores a text. Equal texts aren't merged: comparing each new one would cost more than the
    /// memory that it saves.
    StringID_t Add(std::string_view text) {
        char* const place = Reserve(text.size() + 1);
        if (!text.empty()) {
            std::memcpy(place, text.data(), text.size());
        }
        place[text.size()] = '\0';
        m_Texts.emplace_back(place, text.size());
        return StringID_t(m_Texts.size() - 1);
    }
    std::string_view operator[](size_t index) const { return m_Texts[index]; }
    size_t size() const { return m_Texts.size(); }
    auto begin() const { return m_Texts.begin(); }
    auto end() const { return m_Texts.end(); }
    void clear() {
        m_Texts.clear();
        m_Blocks.clear();
        m_Free = nullptr;
        m_NumFree = 0;
    }

private:
    static constexpr size_t kBlockBytes = 16384;

    char* Reserve(size_t size) {
        if (size > kBlockBytes / 4) {
            // Would waste too much of a block that others still fit into.
            return NewBlock(size);
        }
        if (size > m_NumFree) {
            m_Free = NewBlock(kBlockBytes);
            m_NumFree = kBlockBytes;
        }
        char* const place = m_Free;
        m_Free += size;
        m_NumFree -= size;
        return place;
    }
    char* NewBlock(size_t size) {
        return m_Blocks.emplace_back(std::make_unique_for_overwrite<char[]>(size)).get();
    }

    std::vector<std::string_view> m_Texts;
    std::vector<std::unique_ptr<char[]>> m_Blocks;
    char* m_Free = nullptr;
    size_t m_NumFree = 0;
};

}  // namespace GenApi_3_0_ORVANE
