#pragma once
/// A node through one of its interfaces.

#include "Base/GCException.h"
#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

/// Points to a node through its interface T; null where there is no node or the node has no such
/// interface. The node belongs to its map.
template <class T, class B = IBase>
class CPointer {
public:
    CPointer() = default;
    /// Takes the interface T of a node. The node may be null.
    CPointer(B* base)  // NOLINT(google-explicit-constructor): as for plain pointers
        : m_pT(dynamic_cast<T*>(base)) {}

    /// Whether there is a node with that interface.
    bool IsValid() const { return m_pT != nullptr; }
    /// Returns the node.
    /// @throws LogicalErrorException "NULL pointer dereferenced" for null
    T& operator*() const {
        if (m_pT == nullptr) {
            LOGICAL_ERROR_EXCEPTION("NULL pointer dereferenced");
        }
        return *m_pT;
    }
    /// Returns the node.
    /// @throws LogicalErrorException "NULL pointer dereferenced" for null
    T* operator->() const { return &**this; }
    /// Returns the node, or null.
    operator T*() const { return m_pT; }  // NOLINT(google-explicit-constructor)

private:
    T* m_pT = nullptr;
};

}  // namespace GenApi_3_0_ORVANE
