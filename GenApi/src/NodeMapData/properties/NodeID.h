#pragma once
/// Identifiers of the loaded description: nodes and texts are spoken of by a
/// small number, so that a property stays small and a look-up is an index.

#include <cstddef>
#include <cstdint>

namespace GenApi_3_0_ORVANE {

/// A signed 32-bit index into one of the tables of a node data map.
/// @tparam Tag keeps the kinds of identifier apart; it is never defined.
template <typename Tag>
class IndexID {
public:
    /// Makes the invalid identifier, -1.
    constexpr IndexID() = default;
    constexpr explicit IndexID(int32_t index) : m_Index(index) {}
    /// For positions in a table, whose size the tables keep below 2^31.
    constexpr explicit IndexID(size_t index) : m_Index(static_cast<int32_t>(index)) {}

    /// True for every identifier that can be a position in a table.
    constexpr bool IsValid() const { return m_Index >= 0; }
    /// The plain index; -1 for the invalid identifier.
    constexpr int32_t ToIndex() const { return m_Index; }

    friend constexpr bool operator==(IndexID, IndexID) = default;
    friend constexpr bool operator<(IndexID left, IndexID right) {
        return left.m_Index < right.m_Index;
    }

private:
    int32_t m_Index = -1;
};

/// Names a node of one map.
using NodeID_t = IndexID<struct NodeIDTag>;
/// Names a text of one map.
using StringID_t = IndexID<struct StringIDTag>;

}  // namespace GenApi_3_0_ORVANE
